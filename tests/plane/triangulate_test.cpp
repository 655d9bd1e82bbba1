// Signed area, the triangle and ear tests, and the pinned results of small outlines.
#include <gtest/gtest.h>

#include <facet/triangulate.h>

#include <limits>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using outline = std::vector<vector2d>;
using indices = std::vector<unsigned>;

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
const outline square = {{0, 0}, {1, 0}, {1, 1}, {0, 1}};

TEST(Area, IsSignedAndSummedInOrder) {
    EXPECT_EQ(area(square), 1.0);
    EXPECT_EQ(area({{0, 1}, {1, 1}, {1, 0}, {0, 0}}), -1.0);
    EXPECT_EQ(area({{0, 0}, {5, 5}}), 0.0);
    const outline o = {{0.1, 0.7}, {3.3, -1.9}, {2.2, 5.5}, {-4.4, 0.3}};
    const double sum = ((0.0 + cross(o[3], o[0])) + cross(o[0], o[1])) + cross(o[1], o[2]);
    EXPECT_EQ(area(o), (sum + cross(o[2], o[3])) * 0.5);
}

TEST(InsideTriangle, CounterClockwiseWithEdgesAndCornersInside) {
    const vector2d a(0, 0), b(4, 0), c(0, 4);
    const struct {
        vector2d p, a, b, c;
        bool inside;
    } cases[] = {
        {{1, 1}, a, b, c, true},
        {{2, 0}, a, b, c, true},  // on an edge
        {{2, 2}, a, b, c, true},
        {b, a, b, c, true},  // hypotenuse, corner
        {{3, 3}, a, b, c, false},
        {{-1, 1}, a, b, c, false},
        {{1, 1}, a, c, b, false},  // clockwise corners
        {{nan, 1}, a, b, c, false},
        {{1, 1}, a, b, {nan, 4}, false},
        {{9, 0}, {0, 0}, {1, 0}, {2, 0}, true},  // a degenerate triangle holds its whole line
    };
    for (const auto& t : cases) {
        SCOPED_TRACE(testing::Message() << "(" << t.p.x << ", " << t.p.y << ")");
        EXPECT_EQ(inside_triangle(t.p, t.a, t.b, t.c), t.inside);
    }
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
