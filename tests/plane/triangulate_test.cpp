// Signed area, the triangle and ear tests, and pinned results of small outlines.
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
    // Integer points for exact ties, others for rounding, NaN and extremes.
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

// The result after the prior content {7}, and the error.
std::string triangles(const outline& o) {
    indices result = {7};
    std::string error;
    try {
        triangulate(o, result);
    } catch (const std::runtime_error& e) {
        error = e.what();
    }
    for (unsigned i : result) error += " " + std::to_string(i);
    return error;
}

TEST(Triangulate, PinnedResultsAppendedToThePriorContent) {
    EXPECT_EQ(triangles(square), " 7 3 0 1 1 2 3");
    EXPECT_EQ(triangles({{0, 1}, {1, 1}, {1, 0}, {0, 0}}), " 7 2 3 0 0 1 2");  // clockwise
    // The closing repetition is kept and the first point dropped; repeats, straight points
    // and spikes go.
    EXPECT_EQ(triangles({{0, 0}, {1, 0}, {1, 1}, {0, 1}, {0, 0}}), " 7 4 1 2 2 3 4");
    EXPECT_EQ(triangles({{0, 0}, {0, 0}, {1, 0}, {1, 1}, {1, 1}, {1, 1}, {0, 1}}),
              " 7 6 0 2 2 3 6");
    EXPECT_EQ(triangles({{0, 0}, {1, 0}, {2, 0}, {2, 1}, {0, 1}}), " 7 4 0 2 2 3 4");
    EXPECT_EQ(triangles({{0, 0}, {2, 0}, {2, 1}, {3, 1}, {2, 1}, {0, 1}}), " 7 5 0 1 1 2 5");
    EXPECT_EQ(triangles({{0, 0}, {0, 2}, {1, 2}, {1, 1}, {2, 1}, {2, 0}}),
              " 7 4 5 0 1 2 3 3 4 0 0 1 3");  // a clockwise L
    for (outline o :
         {outline{}, outline{{0, 0}, {1, 0}}, outline{{0, 0}, {1, 0}, {2, 0}},
          outline{{3, 3}, {3, 3}, {3, 3}, {3, 3}}, outline{{0, 0}, {1, 0}, {nan, 1}, {0, 1}}})
        EXPECT_EQ(triangles(o), " 7");  // a NaN point takes its neighbours with it
    // A bow tie (area 0, walked in reverse): one lobe is clipped, then the rest turns clockwise.
    EXPECT_EQ(triangles({{0, 0}, {4, 4}, {4, 0}, {0, 4}}),
              "Triangulation error: bad polygon 7 1 2 3");
}

}  // namespace
