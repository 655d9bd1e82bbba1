// Polygon offsetting, containment and bounds.
#include <gtest/gtest.h>

#include <facet/plane.h>

#include <cmath>
#include <limits>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using point = geometry::vector<double, 2>;
using polygon = std::vector<point>;

constexpr double inf = std::numeric_limits<double>::infinity();
constexpr double nan = std::numeric_limits<double>::quiet_NaN();

const polygon unit_square = {point(0, 0), point(1, 0), point(1, 1), point(0, 1)};

void expect_polygon(const polygon& actual, const polygon& expected) {
    ASSERT_EQ(actual.size(), expected.size());
    for (std::size_t i = 0; i < actual.size(); ++i) {
        EXPECT_EQ(actual[i][0], expected[i][0]) << "point " << i;
        EXPECT_EQ(actual[i][1], expected[i][1]) << "point " << i;
    }
}

void expect_parallel_lines_error(polygon p, double distance) {
    const polygon before = p;
    try {
        geometry::inflate_polygon(p, distance);
        ADD_FAILURE() << "no exception";
    } catch (const std::runtime_error& e) {
        EXPECT_EQ(std::string(e.what()), "intersection of parallel lines");
    }
    expect_polygon(p, before);
}

TEST(InflatePolygon, GrowsAndShrinksACounterClockwiseSquare) {
    polygon p = unit_square;
    geometry::inflate_polygon(p, 0.5);
    expect_polygon(p, {point(-0.5, -0.5), point(1.5, -0.5), point(1.5, 1.5), point(-0.5, 1.5)});

    p = unit_square;
    geometry::inflate_polygon(p, -0.25);
    expect_polygon(p, {point(0.25, 0.25), point(0.75, 0.25), point(0.75, 0.75), point(0.25, 0.75)});
}

TEST(InflatePolygon, PositiveDistanceShrinksAClockwiseOutline) {
    polygon p = {point(0, 0), point(0, 4), point(4, 4), point(4, 0)};
    geometry::inflate_polygon(p, 1.0);
    expect_polygon(p, {point(1, 1), point(1, 3), point(3, 3), point(3, 1)});
}

TEST(InflatePolygon, SharpCornersAreMitredWithoutLimit) {
    // A thin triangle: the mitre at the sharp tip reaches far beyond the offset distance.
    polygon p = {point(0, 0), point(10, 0), point(0, 1)};
    geometry::inflate_polygon(p, 1.0);
    ASSERT_EQ(p.size(), 3u);
    EXPECT_NEAR(p[0][0], -1.0, 1e-12);
    EXPECT_NEAR(p[0][1], -1.0, 1e-12);
    EXPECT_GT(p[1][0], 20.0);  // the tip at (10, 0) moves by about 1 / sin(θ / 2) ≈ 20
    EXPECT_NEAR(p[1][1], -1.0, 1e-12);
}

TEST(InflatePolygon, ParallelEdgesFailAndLeaveThePolygonUnchanged) {
    // Three collinear consecutive points.
    expect_parallel_lines_error({point(0, 0), point(1, 0), point(2, 0), point(2, 1)}, 0.5);
    // A spike (the outline doubles back).
    expect_parallel_lines_error({point(0, 0), point(2, 0), point(1, 0), point(1, 1)}, 0.5);
    // A zero-length edge.
    expect_parallel_lines_error({point(0, 0), point(1, 0), point(1, 0), point(0, 1)}, 0.5);
    // Too few points for any corner.
    expect_parallel_lines_error({point(0, 0), point(1, 0)}, 0.5);
    expect_parallel_lines_error({point(3, 4)}, 0.5);

    polygon empty;
    geometry::inflate_polygon(empty, 1.0);
    EXPECT_TRUE(empty.empty());
}

TEST(PointInPolygon, HalfOpenCrossingRule) {
    EXPECT_TRUE(geometry::point_in_polygon(unit_square, point(0.5, 0.5)));
    EXPECT_FALSE(geometry::point_in_polygon(unit_square, point(1.5, 0.5)));
    EXPECT_TRUE(geometry::point_in_polygon(unit_square, point(0, 0.5)));   // left edge
    EXPECT_FALSE(geometry::point_in_polygon(unit_square, point(1, 0.5)));  // right edge
    EXPECT_TRUE(geometry::point_in_polygon(unit_square, point(0.5, 0)));   // bottom edge
    EXPECT_FALSE(geometry::point_in_polygon(unit_square, point(0.5, 1)));  // top edge
    EXPECT_FALSE(geometry::point_in_polygon({}, point(0, 0)));
    EXPECT_FALSE(geometry::point_in_polygon(unit_square, point(nan, 0.5)));
}

TEST(PointInPolygon, CountsAVertexCrossingOnce) {
    // A diamond: the ray from (−1, 0) to the right passes exactly through the left and the
    // right vertex; each is counted once, so the point is outside, and (0, 0) is inside.
    const polygon diamond = {point(0, -1), point(1, 0), point(0, 1), point(-1, 0)};
    EXPECT_TRUE(geometry::point_in_polygon(diamond, point(0, 0)));
    EXPECT_FALSE(geometry::point_in_polygon(diamond, point(-2, 0)));
    EXPECT_FALSE(geometry::point_in_polygon(diamond, point(2, 0)));

    // Even-odd on a self-intersecting bow tie: the crossing point's neighbours alternate.
    const polygon bow_tie = {point(0, 0), point(2, 2), point(2, 0), point(0, 2)};
    EXPECT_TRUE(geometry::point_in_polygon(bow_tie, point(0.2, 1)));
    EXPECT_FALSE(geometry::point_in_polygon(bow_tie, point(1, 1.8)));
}

TEST(GetBounds, OfPointsAndWithAMargin) {
    const polygon p = {point(3, -1), point(-2, 4), point(5, 2)};
    point lo(9, 9), hi(9, 9);
    EXPECT_TRUE(geometry::get_bounds(p, lo, hi));
    EXPECT_EQ(lo, point(-2, -1));
    EXPECT_EQ(hi, point(5, 4));

    EXPECT_TRUE(geometry::get_bounds(p, lo, hi, 0.5));
    EXPECT_EQ(lo, point(-2.5, -1.5));
    EXPECT_EQ(hi, point(5.5, 4.5));

    EXPECT_TRUE(geometry::get_bounds(p, lo, hi, -3.0));  // shrinking may invert an axis
    EXPECT_EQ(lo, point(1, 2));
    EXPECT_EQ(hi, point(2, 1));

    EXPECT_TRUE(geometry::get_bounds({point(7, 8)}, lo, hi));
    EXPECT_EQ(lo, point(7, 8));
    EXPECT_EQ(hi, point(7, 8));
}

TEST(GetBounds, EmptyPolygonGivesTheEmptyBox) {
    point lo(9, 9), hi(9, 9);
    EXPECT_FALSE(geometry::get_bounds({}, lo, hi));
    EXPECT_EQ(lo, point(inf, inf));
    EXPECT_EQ(hi, point(-inf, -inf));
    EXPECT_FALSE(geometry::get_bounds({}, lo, hi, 2.0));
    EXPECT_EQ(lo, point(inf, inf));
    EXPECT_EQ(hi, point(-inf, -inf));
}

TEST(GetBounds, IgnoresNaNCoordinates) {
    point lo, hi;
    EXPECT_TRUE(geometry::get_bounds({point(nan, 1), point(2, nan), point(-1, 3)}, lo, hi));
    EXPECT_EQ(lo, point(-1, 1));
    EXPECT_EQ(hi, point(2, 3));

    EXPECT_FALSE(geometry::get_bounds({point(nan, 1), point(nan, 5)}, lo, hi, 1.0));
    EXPECT_EQ(lo, point(inf, 0));  // the empty x axis stays empty, y grows
    EXPECT_EQ(hi, point(-inf, 6));
}

}  // namespace
