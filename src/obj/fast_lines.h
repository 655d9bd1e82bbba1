// The common shapes of "f", "v", "vt" and "vn" lines read in one pass, straight from the line
// source's window, where a '\n' always follows the text so that no scan checks bounds.
//
// Each function reads one shape only: single-keyword lines whose tokens are all of the plain form
// (corners of unsigned indices of at most 9 digits, numbers of the short decimal form), with
// nothing else on the line. It returns where the line's '\n' is, or nullptr for any other line,
// which the reader then takes through its general rules. Where a function accepts a line, its
// values are those the general rules give for it.
#pragma once

#include <cstdint>

#include "facet/obj_import.h"
#include "obj/numbers.h"

namespace obj_import::detail {

/// The short form ([+][-]digits[.digits], 1 to 19 digits in all) at `pos`: true, `value` and
/// `pos` moved behind it when the token is exactly that form and exact_short_decimal computes
/// it. Otherwise false and `pos` is left alone; parse_number then gives the value. Where both
/// succeed they give the same value.
template <class T>
bool parse_short_number(const char*& pos, T& value) {
    const char* p = pos;
    if (*p == '+') ++p;
    const bool negative = *p == '-';
    if (negative) ++p;
    std::uint64_t mantissa = 0;
    const char* s = p;
    for (; is_digit(*s); ++s) mantissa = mantissa * 10 + static_cast<unsigned>(*s - '0');
    const char* const point = s;
    int fraction = 0;
    if (*s == '.') {
        for (++s; is_digit(*s); ++s) mantissa = mantissa * 10 + static_cast<unsigned>(*s - '0');
        fraction = static_cast<int>(s - point) - 1;
    }
    const long digit_count = (point - p) + fraction;
    if (digit_count == 0 || digit_count > 19 || !is_delimiter(*s)) return false;
    if (!exact_short_decimal(mantissa, fraction, negative, value)) return false;
    pos = s;
    return true;
}

inline const char* skip_blanks(const char* p) {
    while (is_blank(*p)) ++p;
    return p;
}

/// An index field of at most 9 digits (so that no overflow check is needed) at `p`: its number
/// less one (-1 for an empty field), and `p` moved behind it. False for a longer field.
inline bool read_index_field(const char*& p, int& index) {
    const char* s = p;
    std::uint32_t value = 0;  // wraps for more than 9 digits, which are refused
    for (; is_digit(*s); ++s) value = value * 10 + static_cast<std::uint32_t>(*s - '0');
    if (s - p > 9) return false;
    index = static_cast<int>(value) - 1;
    p = s;
    return true;
}

/// One corner "v", "v/t", "v/t/n" or with empty t or n fields, followed by a delimiter.
inline bool read_corner(const char*& p, idx& corner) {
    const char* s = p;
    if (!is_digit(*s) || !read_index_field(s, corner.vertex)) return false;
    if (*s == '/') {
        ++s;
        if (!read_index_field(s, corner.texcoord)) return false;
        if (*s == '/') {
            ++s;
            if (!read_index_field(s, corner.normal)) return false;
        }
    }
    if (!is_delimiter(*s)) return false;
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
