// Huge-page advice for the reader's large vectors.
#include "obj/growth.h"

#include <cstdint>

#if defined(__linux__)
#include <sys/mman.h>
#endif

namespace obj_import::detail {

void advise_huge_pages(const void* data, std::size_t bytes) {
#if defined(__linux__) && defined(MADV_HUGEPAGE)
    constexpr std::uintptr_t huge_page = std::uintptr_t(1) << 21;
    const auto address = reinterpret_cast<std::uintptr_t>(data);
    const std::uintptr_t first = (address + huge_page - 1) & ~(huge_page - 1);
    const std::uintptr_t last = (address + bytes) & ~(huge_page - 1);
    // A failure (no huge pages here) leaves the memory as it is.
    if (last > first) madvise(reinterpret_cast<void*>(first), last - first, MADV_HUGEPAGE);
#else
    (void)data;
    (void)bytes;
#endif
}

}  // namespace obj_import::detail
