// Signed area, the triangle and ear tests, and the pinned results of small outlines.
#include <gtest/gtest.h>

#include <facet/triangulate.h>

#include <cmath>
#include <limits>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include "support/reference_triangulate.h"

namespace {

using outline = std::vector<vector2d>;
using indices = std::vector<unsigned>;

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
const outline square = {{0, 0}, {1, 0}, {1, 1}, {0, 1}};

TEST(AreaAndInsideTriangle, MatchTheReferenceBitForBit) {
    // Signed, summed from the last edge on (integer points for exact ties, others for rounding);
    // counter-clockwise triangles hold their edges and corners, clockwise ones nothing, NaN is
    // never inside, a degenerate triangle holds its line.
    std::mt19937 rng(3);
    std::uniform_int_distribution<int> coord(-3, 3), special(0, 9);
    std::uniform_real_distribution<double> real(-3, 3);
    const double values[] = {nan, 1e300, -1e-300, 0.1, -0.7};
    outline o(8);
    for (int trial = 0; trial < 20000; ++trial) {
        for (vector2d& p : o) {
            p = trial % 2 ? vector2d(coord(rng), coord(rng)) : vector2d(real(rng), real(rng));
            if (special(rng) == 0) p.x = values[special(rng) % 5];
        }
        const outline part(o.begin(), o.begin() + trial % 9);
        const double a = area(part), r = reference::area(part);
        ASSERT_TRUE(a == r || (std::isnan(a) && std::isnan(r))) << trial;
        ASSERT_EQ(inside_triangle(o[0], o[1], o[2], o[3]),
                  reference::inside_triangle(o[0], o[1], o[2], o[3]))
            << trial;
    }
    EXPECT_TRUE(inside_triangle({2, 2}, {0, 0}, {4, 0}, {0, 4}));
    EXPECT_FALSE(inside_triangle({1, 1}, {0, 0}, {0, 4}, {4, 0}));
}

TEST(IsEar, ConvexCornerWithoutOtherPositionsInside) {
    const outline notched = {{0, 0}, {4, 0}, {4, 4}, {2, 1}, {0, 4}};  // notch at (2, 1)
    const indices all = {0, 1, 2, 3, 4};
    EXPECT_TRUE(is_ear(notched, all, 1, 2, 3));
    EXPECT_FALSE(is_ear(notched, all, 0, 1, 2));                         // holds (2, 1)
    EXPECT_FALSE(is_ear(notched, all, 4, 0, 1));                         // holds (2, 1)
    EXPECT_FALSE(is_ear(notched, all, 2, 3, 4));                         // clockwise
    EXPECT_FALSE(is_ear({{0, 0}, {1, 0}, {2, 0}}, {0, 1, 2}, 0, 1, 2));  // no turn
    // Positions are compared, not coordinates: a repeat of a corner, or the same index listed
    // again at another position, lies on the ear and blocks it.
    const outline repeat = {{0, 0}, {2, 0}, {0, 2}, {2, 0}};
    EXPECT_FALSE(is_ear(repeat, {0, 1, 2, 3}, 0, 1, 2));
    EXPECT_TRUE(is_ear(repeat, {0, 1, 2}, 0, 1, 2));
    EXPECT_FALSE(is_ear(repeat, {0, 1, 2, 1}, 0, 1, 2));
}

TEST(IsEarDeathTest, PositionsAndIndicesAreChecked) {
    EXPECT_DEATH(is_ear(square, {0, 1, 2}, 0, 1, 3), "w < size");
    EXPECT_DEATH(is_ear(square, {0, 1, 2}, 5, 1, 2), "u < size");
    EXPECT_DEATH(is_ear(square, {0, 1, 9}, 0, 1, 2), "index < contour.size()");
}

TEST(Triangulate, PinnedResultsAppendedToThePriorContent) {
    const char* const bad = "Triangulation error: bad polygon";
    const struct {
        const char* what;
        outline o;
        indices expected;  // after the prior content {7}
        const char* error;
    } cases[] = {
        {"square", square, {3, 0, 1, 1, 2, 3}, ""},
        {"clockwise square", {{0, 1}, {1, 1}, {1, 0}, {0, 0}}, {2, 3, 0, 0, 1, 2}, ""},
        // The closing repetition is kept and the first point dropped.
        {"closed square", {{0, 0}, {1, 0}, {1, 1}, {0, 1}, {0, 0}}, {4, 1, 2, 2, 3, 4}, ""},
        {"doubled points",
         {{0, 0}, {0, 0}, {1, 0}, {1, 1}, {1, 1}, {1, 1}, {0, 1}},
         {6, 0, 2, 2, 3, 6},
         ""},
        {"straight point", {{0, 0}, {1, 0}, {2, 0}, {2, 1}, {0, 1}}, {4, 0, 2, 2, 3, 4}, ""},
        {"spike", {{0, 0}, {2, 0}, {2, 1}, {3, 1}, {2, 1}, {0, 1}}, {5, 0, 1, 1, 2, 5}, ""},
        {"clockwise L",
         {{0, 0}, {0, 2}, {1, 2}, {1, 1}, {2, 1}, {2, 0}},
         {4, 5, 0, 1, 2, 3, 3, 4, 0, 0, 1, 3},
         ""},
        {"empty", {}, {}, ""},
        {"one point", {{1, 1}}, {}, ""},
        {"two points", {{0, 0}, {1, 0}}, {}, ""},
        {"straight", {{0, 0}, {1, 0}, {2, 0}}, {}, ""},
        {"one point repeated", {{3, 3}, {3, 3}, {3, 3}, {3, 3}}, {}, ""},
        // A NaN point takes its neighbours with it in the clean-up.
        {"NaN", {{0, 0}, {1, 0}, {nan, 1}, {0, 1}}, {}, ""},
        // A bow tie (area 0, walked in reverse): one lobe is clipped, then the rest turns
        // clockwise.
        {"bow tie", {{0, 0}, {4, 4}, {4, 0}, {0, 4}}, {1, 2, 3}, bad},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        indices result = {7};
        std::string error;
        try {
            triangulate(c.o, result);
        } catch (const std::runtime_error& e) {
            error = e.what();
        }
        EXPECT_EQ(error, c.error);
        indices expected = {7};
        expected.insert(expected.end(), c.expected.begin(), c.expected.end());
        EXPECT_EQ(result, expected);
    }
}

}  // namespace
