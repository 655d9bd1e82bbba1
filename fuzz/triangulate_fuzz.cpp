// Fuzz harness: triangulate() of arbitrary outlines against the textbook ear clipper kept in the
// tests (tests/support/reference_triangulate.h). Both must append the same triangles in the same
// order and fail the same way; area() must agree bit for bit.
//
// Input: each coordinate is read from one byte b. Below 0xf8 it is the integer b - 124 (a
// coarse grid, so repeated, collinear and touching points are common); from 0xf8 on it is a
// special value: NaN, +inf, -inf, the largest finite double and its negative, a tiny value,
// -0.0, or the 8 bytes that follow taken as a raw double. At most 160 points are used, which
// keeps the cubic worst case of the oracle fast.
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <stdexcept>
#include <string>
#include <vector>

#include <facet/triangulate.h>

#include "support/reference_triangulate.h"

namespace {

constexpr std::size_t max_points = 160;

/// Reads coordinates from the fuzzer's bytes as described at the top of the file.
class coordinate_reader {
public:
    coordinate_reader(const uint8_t* data, std::size_t size) : m_data(data), m_size(size) {}

    bool more() const { return m_pos < m_size; }

    double next() {
        if (m_pos >= m_size) return 0.0;
        const uint8_t b = m_data[m_pos++];
        if (b < 0xf8) return static_cast<double>(b) - 124.0;
        switch (b) {
            case 0xf8:
                return std::numeric_limits<double>::quiet_NaN();
            case 0xf9:
                return std::numeric_limits<double>::infinity();
            case 0xfa:
                return -std::numeric_limits<double>::infinity();
            case 0xfb:
                return std::numeric_limits<double>::max();
            case 0xfc:
                return -std::numeric_limits<double>::max();
            case 0xfd:
                return 1e-300;
            case 0xfe:
                return -0.0;
            default:
                break;
        }
        double raw = 0.0;
        if (m_size - m_pos >= sizeof raw) {
            std::memcpy(&raw, m_data + m_pos, sizeof raw);
            m_pos += sizeof raw;
        }
        return raw;
    }

private:
    const uint8_t* m_data;
    std::size_t m_size;
    std::size_t m_pos = 0;
};

/// The outcome of one triangulation: the triangles appended and the error message, if any.
struct outcome {
    std::vector<unsigned> triangles;
    bool failed = false;
    std::string message;
};

template <class Triangulate>
outcome run(const std::vector<vector2d>& outline, Triangulate triangulate_fn) {
    outcome o;
    o.triangles.push_back(7u);  // the result is appended to, never cleared
    try {
        triangulate_fn(outline, o.triangles);
    } catch (const std::runtime_error& e) {
        o.failed = true;
        o.message = e.what();
    }
    return o;
}

[[noreturn]] void fail(const char* what, std::size_t points) {
    std::fprintf(stderr, "triangulate_fuzz: %s (%zu points)\n", what, points);
    std::abort();
}

bool same_bits(double a, double b) { return std::memcmp(&a, &b, sizeof a) == 0; }

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    coordinate_reader reader(data, size);
    std::vector<vector2d> outline;
    while (reader.more() && outline.size() < max_points) {
        const double x = reader.next();
        const double y = reader.next();
        outline.emplace_back(x, y);
    }

    if (!same_bits(area(outline), reference::area(outline)))
        fail("area differs from the oracle", outline.size());
    if (outline.size() >= 4 &&
        inside_triangle(outline[0], outline[1], outline[2], outline[3]) !=
            reference::inside_triangle(outline[0], outline[1], outline[2], outline[3]))
        fail("inside_triangle differs from the oracle", outline.size());

    const outcome fast = run(outline, [](const std::vector<vector2d>& c, std::vector<unsigned>& r) {
        triangulate(c, r);
    });
    const outcome slow = run(outline, [](const std::vector<vector2d>& c, std::vector<unsigned>& r) {
        reference::triangulate(c, r);
    });
    if (fast.failed != slow.failed || fast.message != slow.message)
        fail("the error differs from the oracle", outline.size());
    if (fast.triangles != slow.triangles)
        fail("the triangles differ from the oracle", outline.size());
    for (std::size_t i = 1; i < fast.triangles.size(); ++i)
        if (fast.triangles[i] >= outline.size())
            fail("a triangle index is out of range", outline.size());
    return 0;
}
