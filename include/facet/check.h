// The always-on precondition check.
//
// FACET_CHECK(expr) is active in every build type, Release included. A failed check is a
// programming error on the caller's side, not a recoverable condition: it prints the failed
// expression with the source file and line to stderr and aborts the process.
#pragma once

#include <cstdio>
#include <cstdlib>

namespace facet::detail {

/// Reports a failed precondition on stderr ("file:line: precondition failed: expr") and aborts.
[[noreturn]] inline void check_failed(const char* expression, const char* file, int line) noexcept {
    std::fprintf(stderr, "%s:%d: precondition failed: %s\n", file, line, expression);
    std::fflush(stderr);
    std::abort();
}

}  // namespace facet::detail

#define FACET_CHECK(expr) \
    ((expr) ? static_cast<void>(0) : ::facet::detail::check_failed(#expr, __FILE__, __LINE__))
