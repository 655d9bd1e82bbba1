// Signed area, the triangle and ear tests, and triangulation of small outlines.
#include <gtest/gtest.h>

#include <facet/triangulate.h>

#include <limits>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using outline = std::vector<vector2d>;

constexpr double nan = std::numeric_limits<double>::quiet_NaN();

const outline unit_square = {{0, 0}, {1, 0}, {1, 1}, {0, 1}};

outline reversed(outline o) { return outline(o.rbegin(), o.rend()); }

double triangle_turn(const outline& o, const std::vector<unsigned>& t, std::size_t i) {
    const vector2d a = o[t[i]], b = o[t[i + 1]], c = o[t[i + 2]];
    return cross(b - a, c - a);
}

std::vector<unsigned> triangles_of(const outline& o) {
    std::vector<unsigned> result;
    triangulate(o, result);
    return result;
}

void expect_bad_polygon(const outline& o, std::vector<unsigned>& result) {
    try {
        triangulate(o, result);
        ADD_FAILURE() << "no exception";
    } catch (const std::runtime_error& e) {
        EXPECT_EQ(std::string(e.what()), "Triangulation error: bad polygon");
    }
}

TEST(Area, IsSignedAndSummedInOrder) {
    EXPECT_EQ(area(unit_square), 1.0);
    EXPECT_EQ(area(reversed(unit_square)), -1.0);
    EXPECT_EQ(area({{0, 0}, {5, 5}}), 0.0);
    EXPECT_EQ(area({}), 0.0);
    const outline o = {{0.1, 0.7}, {3.3, -1.9}, {2.2, 5.5}, {-4.4, 0.3}};
    const double sum = ((0.0 + cross(o[3], o[0])) + cross(o[0], o[1])) + cross(o[1], o[2]);
    EXPECT_EQ(area(o), (sum + cross(o[2], o[3])) * 0.5);
}

TEST(InsideTriangle, EdgesAndCornersCountAsInside) {
    const vector2d a(0, 0), b(4, 0), c(0, 4);
    EXPECT_TRUE(inside_triangle({1, 1}, a, b, c));
    EXPECT_TRUE(inside_triangle({2, 0}, a, b, c));  // on an edge
    EXPECT_TRUE(inside_triangle({2, 2}, a, b, c));  // on the hypotenuse
    EXPECT_TRUE(inside_triangle(b, a, b, c));       // a corner
    EXPECT_FALSE(inside_triangle({3, 3}, a, b, c));
    EXPECT_FALSE(inside_triangle({-1, 1}, a, b, c));
    EXPECT_FALSE(inside_triangle({1, 1}, a, c, b));  // clockwise corners
    EXPECT_FALSE(inside_triangle({nan, 1}, a, b, c));
    EXPECT_FALSE(inside_triangle({1, 1}, a, b, {nan, 4}));
    // A degenerate triangle holds the points of its line, even far outside the corners.
    EXPECT_TRUE(inside_triangle({9, 0}, {0, 0}, {1, 0}, {2, 0}));
}

TEST(IsEar, ConvexCornerWithoutPointsInside) {
    // A square with a deep notch at (2, 1) in its top edge.
    const outline o = {{0, 0}, {4, 0}, {4, 4}, {2, 1}, {0, 4}};
    const std::vector<unsigned> V = {0, 1, 2, 3, 4};
    EXPECT_TRUE(is_ear(o, V, 1, 2, 3));   // (4,0) (4,4) (2,1)
    EXPECT_FALSE(is_ear(o, V, 0, 1, 2));  // (0,0) (4,0) (4,4) holds (2,1)
    EXPECT_FALSE(is_ear(o, V, 4, 0, 1));  // (0,4) (0,0) (4,0) holds (2,1)
    EXPECT_FALSE(is_ear(o, V, 2, 3, 4));  // (4,4) (2,1) (0,4): clockwise
    EXPECT_FALSE(is_ear({{0, 0}, {1, 0}, {2, 0}}, {0, 1, 2}, 0, 1, 2));  // straight: no turn
}

TEST(IsEar, ComparesPositionsNotCoordinates) {
    // Point 3 repeats corner 1's coordinates at another position: it lies on the ear's corner
    // and blocks it. Listing the same index again at another position blocks it too.
    const outline o = {{0, 0}, {2, 0}, {0, 2}, {2, 0}};
    EXPECT_FALSE(is_ear(o, {0, 1, 2, 3}, 0, 1, 2));
    EXPECT_TRUE(is_ear(o, {0, 1, 2}, 0, 1, 2));
    EXPECT_FALSE(is_ear(o, {0, 1, 2, 1}, 0, 1, 2));
}

TEST(IsEarDeathTest, PositionsAndIndicesAreChecked) {
    const std::vector<unsigned> V = {0, 1, 2};
    EXPECT_DEATH(is_ear(unit_square, V, 0, 1, 3), "w < size");
    EXPECT_DEATH(is_ear(unit_square, V, 5, 1, 2), "u < size");
    EXPECT_DEATH(is_ear(unit_square, {0, 1, 9}, 0, 1, 2), "index < contour.size()");
}

TEST(Triangulate, KeepsTheWindingOfTheOutline) {
    const std::vector<unsigned> ccw = triangles_of(unit_square);
    ASSERT_EQ(ccw.size(), 6u);
    EXPECT_EQ(ccw, (std::vector<unsigned>{3, 0, 1, 1, 2, 3}));
    for (std::size_t i = 0; i < ccw.size(); i += 3)
        EXPECT_GT(triangle_turn(unit_square, ccw, i), 0);

    const outline cw = reversed(unit_square);
    const std::vector<unsigned> t = triangles_of(cw);
    ASSERT_EQ(t.size(), 6u);
    for (std::size_t i = 0; i < t.size(); i += 3) EXPECT_LT(triangle_turn(cw, t, i), 0);
}

TEST(Triangulate, AppendsToTheResult) {
    std::vector<unsigned> result = {77, 88};
    triangulate(unit_square, result);
    EXPECT_EQ(result, (std::vector<unsigned>{77, 88, 3, 0, 1, 1, 2, 3}));
}

TEST(Triangulate, CleansUpRepeatedAndCollinearPoints) {
    // The closing repetition is kept and the first point dropped, so the outline is the square
    // listed from its second corner, with index 4 standing for corner 0.
    outline closed = unit_square;
    closed.push_back(closed.front());
    EXPECT_EQ(triangles_of(closed), (std::vector<unsigned>{4, 1, 2, 2, 3, 4}));
    const outline from_second = {{1, 0}, {1, 1}, {0, 1}, {0, 0}};
    EXPECT_EQ(triangles_of(from_second), (std::vector<unsigned>{3, 0, 1, 1, 2, 3}));

    const outline doubled = {{0, 0}, {0, 0}, {1, 0}, {1, 1}, {1, 1}, {1, 1}, {0, 1}};
    EXPECT_EQ(triangles_of(doubled).size(), 6u);

    const outline straight = {{0, 0}, {1, 0}, {2, 0}, {2, 1}, {0, 1}};
    const std::vector<unsigned> t = triangles_of(straight);
    ASSERT_EQ(t.size(), 6u);
    for (unsigned index : t) EXPECT_NE(index, 1u);

    // A spike doubling back on itself is dropped like a straight point.
    const outline spike = {{0, 0}, {2, 0}, {2, 1}, {3, 1}, {2, 1}, {0, 1}};
    const std::vector<unsigned> s = triangles_of(spike);
    EXPECT_EQ(s.size(), 6u);
    for (unsigned index : s) EXPECT_NE(index, 3u);
}

TEST(Triangulate, DegenerateOutlinesYieldNothing) {
    EXPECT_TRUE(triangles_of({}).empty());
    EXPECT_TRUE(triangles_of({{1, 1}}).empty());
    EXPECT_TRUE(triangles_of({{0, 0}, {1, 0}}).empty());
    EXPECT_TRUE(triangles_of({{0, 0}, {1, 0}, {2, 0}}).empty());
    EXPECT_TRUE(triangles_of({{3, 3}, {3, 3}, {3, 3}, {3, 3}}).empty());
    // A NaN point takes its neighbours with it in the clean-up.
    EXPECT_TRUE(triangles_of({{0, 0}, {1, 0}, {nan, 1}, {0, 1}}).empty());
}

TEST(Triangulate, SelfIntersectingOutlineFailsAfterItsEars) {
    // A bow tie (signed area 0, so walked in reverse): one lobe's corner is clipped, then the
    // three corners left turn clockwise. The triangle found stays after the prior content.
    const outline bow_tie = {{0, 0}, {4, 4}, {4, 0}, {0, 4}};
    std::vector<unsigned> result = {5};
    expect_bad_polygon(bow_tie, result);
    EXPECT_EQ(result, (std::vector<unsigned>{5, 1, 2, 3}));
}

TEST(Triangulate, ClockwiseConcaveOutline) {
    // An L shape listed clockwise: 4 triangles, all clockwise, covering its area.
    const outline l_shape = {{0, 0}, {0, 2}, {1, 2}, {1, 1}, {2, 1}, {2, 0}};
    const std::vector<unsigned> t = triangles_of(l_shape);
    ASSERT_EQ(t.size(), 12u);
    double covered = 0.0;
    for (std::size_t i = 0; i < t.size(); i += 3) {
        EXPECT_LT(triangle_turn(l_shape, t, i), 0);
        covered += triangle_turn(l_shape, t, i) * 0.5;
    }
    EXPECT_EQ(covered, area(l_shape));
}

}  // namespace
