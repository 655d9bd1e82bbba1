// The common shapes of "f", "v", "vt" and "vn" lines read in one pass, straight from the line
// source's window, where a '\n' always follows the text so that no scan checks bounds, and at
// least 8 more bytes may be read behind it, so that digits are read 8 at a time.
//
// Each function reads one shape only: single-keyword lines whose tokens are all of the plain form
// (corners of unsigned indices of at most 9 digits, numbers of the short decimal form), with
// nothing else on the line. It returns where the line's '\n' is, or nullptr for any other line,
// which the reader then takes through its general rules. Where a function accepts a line, its
// values are those the general rules give for it.
#pragma once

#include <cstdint>
#include <cstring>

#include "facet/obj_import.h"
#include "obj/numbers.h"

namespace obj_import::detail {

/// The number that 8 digit values (0 to 9, one per byte, the first digit in the lowest byte)
/// spell: pairs, then groups of four, then all eight, each step with one multiplication.
inline std::uint64_t eight_digits(std::uint64_t v) {
    v = v * 10 + (v >> 8);
    return (((v & 0x000000FF000000FFu) * (100 + (std::uint64_t(1000000) << 32))) +
            (((v >> 16) & 0x000000FF000000FFu) * (1 + (std::uint64_t(10000) << 32)))) >>
           32;
}

/// Appends the run of decimal digits at `p` to `value` (value * 10^n + the run's number, modulo
/// 2^64, which is exact as long as there are at most 19 digits in all), moves `p` behind the run,
/// sets `stop` to the byte there and returns the run's length n. Reads 8 bytes at a time, as a
/// little-endian word, so the byte behind the run comes without another read.
inline std::size_t read_digit_run(const char*& p, std::uint64_t& value, char& stop) {
    static constexpr std::uint64_t powers[8] = {1, 10, 100, 1000, 10000, 100000, 1000000, 10000000};
    const char* const start = p;
    for (;;) {
        std::uint64_t chunk;
        std::memcpy(&chunk, p, sizeof chunk);
        // Per byte, exact up to the first byte that is no digit: its value less '0', and its
        // high bit set by that byte (below '0' borrows, above '9' carries into the high bit, and
        // bytes from 0x80 have it already).
        const std::uint64_t digits = chunk - 0x3030303030303030u;
        const std::uint64_t stops =
            (chunk | digits | (chunk + 0x4646464646464646u)) & 0x8080808080808080u;
        if (stops == 0) {
            value = value * 100000000 + eight_digits(digits);
            p += 8;
            continue;
        }
        const int n = __builtin_ctzll(stops) >> 3;
        if (n > 0) {
            // The n digits moved to the top bytes, zeros (leading zero digits) below them.
            value = value * powers[n] + eight_digits(digits << (64 - 8 * n));
            p += n;
        }
        stop = static_cast<char>(chunk >> (8 * n));
        return static_cast<std::size_t>(p - start);
    }
}

/// The short form ([+][-]digits[.digits], 1 to 19 digits in all) at `pos`: true, `value` and
/// `pos` moved behind it when the token is exactly that form and exact_short_decimal computes
/// it. Otherwise false and `pos` is left alone; parse_number then gives the value. Where both
/// succeed they give the same value.
template <class T>
bool parse_short_number(const char*& pos, T& value) {
    const char* s = pos;
    if (*s == '+') ++s;
    const bool negative = *s == '-';
    if (negative) ++s;
    std::uint64_t mantissa = 0;
    char stop = 0;
    std::size_t digit_count = read_digit_run(s, mantissa, stop);
    std::size_t fraction = 0;
    if (stop == '.') {
        ++s;
        fraction = read_digit_run(s, mantissa, stop);
        digit_count += fraction;
    }
    if (digit_count == 0 || digit_count > 19 || !is_delimiter(stop)) return false;
    if (!exact_short_decimal(mantissa, static_cast<int>(fraction), negative, value)) return false;
    pos = s;
    return true;
}

inline const char* skip_blanks(const char* p) {
    while (is_blank(*p)) ++p;
    return p;
}

/// An index field of at most 9 digits (so that no overflow check is needed) at `p`: its number
/// less one (-1 for an empty field), `p` moved behind it and `stop` the byte there. False for a
/// longer field.
inline bool read_index_field(const char*& p, int& index, char& stop) {
    std::uint64_t value = 0;
    if (read_digit_run(p, value, stop) > 9) return false;
    index = static_cast<int>(value) - 1;
    return true;
}

/// One corner "v", "v/t", "v/t/n" or with empty t or n fields, followed by a delimiter.
inline bool read_corner(const char*& p, idx& corner) {
    const char* s = p;
    char stop = 0;
    if (!read_index_field(s, corner.vertex, stop) || s == p) return false;
    if (stop == '/') {
        ++s;
        if (!read_index_field(s, corner.texcoord, stop)) return false;
        if (stop == '/') {
            ++s;
            if (!read_index_field(s, corner.normal, stop)) return false;
        }
    }
    if (!is_delimiter(stop)) return false;
    p = s;
    return true;
}

/// The corners of a face line from `p` (behind the keyword): three or four of them.
inline const char* read_face_corners(const char* p, face& f) {
    for (;;) {
        p = skip_blanks(p);
        if (*p == '\n') return f.corner_count >= 3 ? p : nullptr;
        if (f.corner_count == 4) return nullptr;
        if (!read_corner(p, f.corners[static_cast<std::size_t>(f.corner_count)])) return nullptr;
        ++f.corner_count;
    }
}

/// Exactly `count` short-form numbers from `p` (behind the keyword).
template <class T, std::size_t count>
const char* read_number_line(const char* p, T (&values)[count]) {
    for (T& value : values) {
        p = skip_blanks(p);
        if (!parse_short_number(p, value)) return nullptr;
    }
    p = skip_blanks(p);
    return *p == '\n' ? p : nullptr;
}

}  // namespace obj_import::detail
