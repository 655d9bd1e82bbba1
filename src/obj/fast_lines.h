// The common shapes of "f", "v", "vt" and "vn" lines read in one pass, straight from the line
// source's window, where a '\n' always follows the text so that no scan checks bounds.
//
// Each function reads one shape only: single-keyword lines whose tokens are all of the plain form
// (corners of unsigned indices of at most 9 digits, numbers of the short decimal form), with
// nothing else on the line. It returns where the line's '\n' is, or nullptr for any other line,
// which the reader then takes through its general rules. Where a function accepts a line, its
// values are those the general rules give for it.
#pragma once

#include "facet/obj_import.h"
#include "obj/numbers.h"

namespace obj_import::detail {

inline const char* skip_blanks(const char* p) {
    while (is_blank(*p)) ++p;
    return p;
}

/// An index field of at most 9 digits (so that no overflow check is needed) at `p`: its number
/// less one (-1 for an empty field), and `p` moved behind it. False for a longer field.
inline bool read_index_field(const char*& p, int& index) {
    const char* s = p;
    int value = 0;
    while (is_digit(*s) && s - p < 9) value = value * 10 + (*s++ - '0');
    if (is_digit(*s)) return false;
    index = value - 1;
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
