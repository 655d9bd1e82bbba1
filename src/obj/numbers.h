// The reader's tokens and numbers: a character class for the token delimiters, base-10 indices
// and decimal numbers, each read from a position inside one line and leaving that position
// behind what it consumed.
//
// Decimal numbers of the common short form ([-]digits[.digits], at most 19 digits, ending the
// token) are computed directly as m / 10^k with both operands exact in the target type, which
// gives the correctly rounded value, the same that std::from_chars gives; every other token
// goes to std::from_chars.
#pragma once

#include <charconv>
#include <cstdint>
#include <limits>
#include <system_error>

namespace obj_import::detail {

/// The byte classes of the reader: bytes inside tokens, the blanks between them (space, tab,
/// carriage return) and the line feed that ends a line.
enum class byte_class : unsigned char { token, blank, newline };

inline byte_class class_of(char c) {
    struct table {
        byte_class of[256] = {};
        constexpr table() {
            of[static_cast<unsigned char>(' ')] = byte_class::blank;
            of[static_cast<unsigned char>('\t')] = byte_class::blank;
            of[static_cast<unsigned char>('\r')] = byte_class::blank;
            of[static_cast<unsigned char>('\n')] = byte_class::newline;
        }
    };
    static constexpr table classes;
    return classes.of[static_cast<unsigned char>(c)];
}

/// True for the bytes that separate tokens: space, tab, carriage return and line feed.
inline bool is_delimiter(char c) { return class_of(c) != byte_class::token; }

/// True for the delimiters other than the line feed.
inline bool is_blank(char c) { return class_of(c) == byte_class::blank; }

inline bool is_digit(char c) { return static_cast<unsigned>(c - '0') < 10u; }

/// Moves `p` over delimiters, at most to `last`.
inline const char* skip_delimiters(const char* p, const char* last) {
    while (p != last && is_delimiter(*p)) ++p;
    return p;
}

/// Moves `p` to the end of its token, at most to `last`.
inline const char* skip_token(const char* p, const char* last) {
    while (p != last && !is_delimiter(*p)) ++p;
    return p;
}

/// A base-10 integer with an optional sign at `first` (reading no further than `last`). Sets
/// `end` behind the digits and returns the value, or 0 when there are none or |n| > INT_MAX (the
/// digits are consumed all the same). `digits` tells whether any digit was read; without any,
/// `end` is `first`.
inline int parse_int(const char* first, const char* last, const char*& end, bool& digits) {
    const char* p = first;
    bool negative = false;
    if (p != last && (*p == '+' || *p == '-')) {
        negative = *p == '-';
        ++p;
    }
    constexpr long long limit = std::numeric_limits<int>::max();
    long long value = 0;
    const char* const digits_begin = p;
    for (; p != last && is_digit(*p); ++p) {
        if (value <= limit) value = value * 10 + (*p - '0');
    }
    digits = p != digits_begin;
    if (!digits) {
        end = first;
        return 0;
    }
    end = p;
    if (value > limit) return 0;
    return static_cast<int>(negative ? -value : value);
}

/// The limits of the direct computation per type: a mantissa of at most `max_mantissa` and
/// at most `max_fraction` decimals, so that both m and 10^k are exact.
template <class T>
struct exact_decimal;

template <>
struct exact_decimal<float> {
    static constexpr std::uint64_t max_mantissa = std::uint64_t(1) << 24;
    static constexpr int max_fraction = 10;
    static float power(int k) {
        static constexpr float powers[] = {1e0f, 1e1f, 1e2f, 1e3f, 1e4f, 1e5f,
                                           1e6f, 1e7f, 1e8f, 1e9f, 1e10f};
        return powers[k];
    }
};

template <>
struct exact_decimal<double> {
    static constexpr std::uint64_t max_mantissa = std::uint64_t(1) << 53;
    static constexpr int max_fraction = 22;
    static double power(int k) {
        static constexpr double powers[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                            1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                            1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
        return powers[k];
    }
};

/// The value of the short form: `mantissa` / 10^`fraction`, negated if `negative`, when both
/// operands are exact in T once trailing zeros of the fraction are dropped; false otherwise.
template <class T>
bool exact_short_decimal(std::uint64_t mantissa, int fraction, bool negative, T& value) {
    using exact = exact_decimal<T>;
    while (mantissa > exact::max_mantissa && fraction > 0 && mantissa % 10 == 0) {
        mantissa /= 10;
        --fraction;
    }
    if (mantissa > exact::max_mantissa || fraction > exact::max_fraction) return false;
    const T magnitude = static_cast<T>(mantissa) / exact::power(fraction);
    value = negative ? -magnitude : magnitude;
    return true;
}

/// The number token at `pos` (which lies on a token's first byte, inside the line ending at
/// `last`) as T (float or double), and `pos` moved to the end of the token. A decimal number at
/// the start of the token is read, whatever follows it in the token; the result is 0 when the
/// token does not start with one ("inf", "nan", hexadecimal and bare "." included) or its value
/// is beyond the range of T.
template <class T>
T parse_number(const char*& pos, const char* last) {
    const char* p = pos;
    if (p != last && *p == '+') ++p;
    const bool negative = p != last && *p == '-';
    const char* const q = negative ? p + 1 : p;

    // The short form, read directly.
    std::uint64_t mantissa = 0;
    int digit_count = 0;
    int fraction = 0;
    const char* s = q;
    for (; s != last && is_digit(*s) && digit_count < 19; ++s, ++digit_count) {
        mantissa = mantissa * 10 + static_cast<unsigned>(*s - '0');
    }
    if (s != last && *s == '.') {
        for (++s; s != last && is_digit(*s) && digit_count < 19; ++s, ++digit_count, ++fraction) {
            mantissa = mantissa * 10 + static_cast<unsigned>(*s - '0');
        }
    }
    if (digit_count > 0 && (s == last || is_delimiter(*s))) {
        T value;
        if (exact_short_decimal(mantissa, fraction, negative, value)) {
            pos = s;
            return value;
        }
    }

    // Everything else: the longest number at the start of the token, if it starts with one.
    const char* const end = skip_token(q, last);
    pos = end;
    if (q == end || !(is_digit(*q) || *q == '.')) return T(0);
    T value = T(0);
    const auto result = std::from_chars(p, end, value, std::chars_format::general);
    if (result.ec != std::errc()) return T(0);
    return value;
}

}  // namespace obj_import::detail
