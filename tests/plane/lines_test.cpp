// Lines, segments, intersections, distances, angles.
#include <gtest/gtest.h>

#include <facet/plane.h>

#include <cmath>
#include <limits>
#include <stdexcept>
#include <string>

namespace {

using geometry::line;
using geometry::line_segment;
using point = geometry::vector<double, 2>;

void expect_point(const point& actual, double x, double y) {
    EXPECT_EQ(actual[0], x);
    EXPECT_EQ(actual[1], y);
}

line raw_line(double a, double b, double c) {
    line l;
    l.a = a;
    l.b = b;
    l.c = c;
    return l;
}

TEST(Line, ConstructionAndNormalisation) {
    const line x_axis_normal;
    EXPECT_EQ(x_axis_normal.a, 1.0);
    EXPECT_EQ(x_axis_normal.b, 0.0);
    EXPECT_EQ(x_axis_normal.c, 0.0);
    EXPECT_FALSE(x_axis_normal.degenerate);

    const line scaled(3.0, 4.0, 10.0);
    EXPECT_EQ(scaled.a, 3.0 / 5.0);
    EXPECT_EQ(scaled.b, 4.0 / 5.0);
    EXPECT_EQ(scaled.c, 10.0 / 5.0);
    EXPECT_FALSE(scaled.degenerate);

    const line zero_normal(0.0, 0.0, 5.0);
    EXPECT_TRUE(zero_normal.degenerate);
    EXPECT_EQ(zero_normal.c, 5.0);  // left unchanged

    line repaired = zero_normal;
    repaired.a = 2.0;
    repaired.normalize();
    EXPECT_FALSE(repaired.degenerate);
    EXPECT_EQ(repaired.a, 1.0);
    EXPECT_EQ(repaired.c, 2.5);
}

TEST(Line, ThroughTwoPointsHasItsNormalOnTheRight) {
    const line l(point(0, 0), point(1, 0));
    EXPECT_EQ(l.a, 0.0);
    EXPECT_EQ(l.b, -1.0);
    EXPECT_EQ(l.c, 0.0);
    EXPECT_EQ(l.distance(point(5, 2)), -2.0);
    expect_point(l.project(point(5, 2)), 5.0, 0.0);
    expect_point(l.get_normal(), 0.0, -1.0);
    expect_point(l.get_direction(), 1.0, 0.0);

    // A general line: the coefficients follow a = dy, b = −dx, c = −(x1·a + y1·b), then / L.
    const point p1(1.5, -2.0), p2(4.0, 3.0);
    const line g(p1, p2);
    const double a = 3.0 - -2.0, b = 1.5 - 4.0, c = -(1.5 * a + -2.0 * b);
    const double len = std::sqrt(a * a + b * b);
    EXPECT_EQ(g.a, a / len);
    EXPECT_EQ(g.b, b / len);
    EXPECT_EQ(g.c, c / len);
    EXPECT_TRUE(line(point(1, 1), point(1, 1)).degenerate);
}

TEST(Line, OffsetMovesAlongTheNormal) {
    line l(point(0, 0), point(1, 0));  // normal (0, −1)
    l.offset(3.0);
    EXPECT_EQ(l.c, -3.0);
    EXPECT_EQ(l.distance(point(7, -3)), 0.0);

    line unnormalised = raw_line(3.0, 4.0, 1.0);
    unnormalised.offset(2.0);  // c − (a² + b²)·d
    EXPECT_EQ(unnormalised.c, 1.0 - 25.0 * 2.0);
}

TEST(Line, SolvesForXAndYWithoutGuards) {
    const line diagonal(point(0, 1), point(2, 3));
    EXPECT_DOUBLE_EQ(diagonal.get_y(5.0), 6.0);
    EXPECT_DOUBLE_EQ(diagonal.get_x(6.0), 5.0);
    const line vertical(point(1, 0), point(1, 1));
    EXPECT_TRUE(std::isinf(vertical.get_y(0.0)));
    EXPECT_EQ(vertical.get_x(123.0), 1.0);
}

TEST(LineSegment, AccessorsLengthDirection) {
    line_segment s;
    expect_point(s.get_p1(), 0, 0);
    expect_point(s.get_p2(), 1, 0);
    s.set_p1(point(1, 1));
    s.set_p2(point(4, 5));
    EXPECT_EQ(s.length(), 5.0);
    expect_point(s.get_direction(), 0.6, 0.8);
    EXPECT_THROW(line_segment(point(2, 2), point(2, 2)).get_direction(),
                 geometry::bad_normalization);
}

TEST(LineSegment, DistanceToPoint) {
    const line_segment s(point(0, 0), point(4, 0));
    EXPECT_EQ(s.get_distance(point(-3, 4)), 5.0);  // before p1
    EXPECT_EQ(s.get_distance(point(7, -4)), 5.0);  // after p2
    EXPECT_EQ(s.get_distance(point(1, -2)), 2.0);  // beside the segment
    EXPECT_EQ(line_segment(point(1, 1), point(1, 1)).get_distance(point(4, 5)), 5.0);
}

TEST(Intersection, OfLines) {
    point out(-7, -7);
    ASSERT_TRUE(geometry::intersection(line(1, 0, -2), line(0, 1, -3), out));
    expect_point(out, 2, 3);
    expect_point(geometry::intersection(line(1, 0, -2), line(0, 1, -3)), 2, 3);

    // Parallel below |det| = 1e-6 only; the tolerance is exclusive.
    const line base = raw_line(1, 0, 0);
    out = point(-7, -7);
    EXPECT_FALSE(geometry::intersection(base, raw_line(1, 0.99e-6, 1), out));
    expect_point(out, -7, -7);
    EXPECT_TRUE(geometry::intersection(base, raw_line(1, 1e-6, 1), out));
    EXPECT_TRUE(geometry::intersection(base, raw_line(1, -1e-6, 1), out));
}

TEST(Intersection, DegenerateOrParallelLinesThrowInThePointForm) {
    const line degenerate(point(1, 1), point(1, 1));
    point out(-7, -7);
    EXPECT_FALSE(geometry::intersection(degenerate, line(1, 0, 0), out));
    EXPECT_FALSE(geometry::intersection(line(1, 0, 0), degenerate, out));
    expect_point(out, -7, -7);
    for (const line& other : {degenerate, line(1, 0, 5)}) {
        try {
            geometry::intersection(line(1, 0, 0), other);
            ADD_FAILURE() << "no exception";
        } catch (const std::runtime_error& e) {
            EXPECT_EQ(std::string(e.what()), "intersection of parallel lines");
        }
    }
}

TEST(Intersection, OfSegmentsAndOfALineWithASegment) {
    point out;
    EXPECT_TRUE(geometry::intersection(line_segment(point(0, 0), point(1, 0)),
                                       line_segment(point(1, 0), point(1, 1)), out));
    expect_point(out, 1, 0);

    // The lines meet at (2, 0), outside the first segment; the point is still written.
    out = point(-7, -7);
    EXPECT_FALSE(geometry::intersection(line_segment(point(0, 0), point(1, 0)),
                                        line_segment(point(2, 1), point(2, 2)), out));
    expect_point(out, 2, 0);
    // Within 1e-6 of both segments counts.
    EXPECT_TRUE(geometry::intersection(line_segment(point(0, 0), point(1, 0)),
                                       line_segment(point(1 + 0.5e-6, -1), point(1 + 0.5e-6, 1)),
                                       out));
    EXPECT_FALSE(geometry::intersection(line_segment(point(0, 0), point(1, 0)),
                                        line_segment(point(1 + 2e-6, -1), point(1 + 2e-6, 1)),
                                        out));

    const line x_axis(point(0, 0), point(1, 0));
    EXPECT_TRUE(geometry::intersection(x_axis, line_segment(point(0.5, -1), point(0.5, 1)), out));
    expect_point(out, 0.5, 0);
    EXPECT_FALSE(geometry::intersection(x_axis, line_segment(point(3, 1), point(3, 2)), out));
    expect_point(out, 3, 0);
    EXPECT_FALSE(geometry::intersection(x_axis, line_segment(point(3, 1), point(4, 1)), out));
}

TEST(ShortestDistance, BetweenSegments) {
    EXPECT_EQ(geometry::shortest_distance(line_segment(point(0, 0), point(1, 0)),
                                          line_segment(point(1, 0), point(1, 1))),
              0.0);
    EXPECT_EQ(geometry::shortest_distance(line_segment(point(0, 0), point(1, 0)),
                                          line_segment(point(2, 1), point(3, 1))),
              std::sqrt(2.0));
    // Parallel segments: the end point distances decide.
    EXPECT_EQ(geometry::shortest_distance(line_segment(point(0, 0), point(4, 0)),
                                          line_segment(point(1, 3), point(2, 3))),
              3.0);
    // The nearest end point is on the first segment.
    EXPECT_EQ(geometry::shortest_distance(line_segment(point(0, 2), point(0, 5)),
                                          line_segment(point(-3, 0), point(3, 0))),
              2.0);
}

TEST(ClosestPoint, OnSegment) {
    const line_segment s(point(0, 0), point(2, 0));
    expect_point(geometry::closest_point_on_line_segment(s, point(3, 1)), 2, 0);
    expect_point(geometry::closest_point_on_line_segment(s, point(-1, 5)), 0, 0);
    expect_point(geometry::closest_point_on_line_segment(s, point(1, 7)), 1, 0);
    EXPECT_THROW(geometry::closest_point_on_line_segment(line_segment(point(1, 1), point(1, 1)),
                                                         point(0, 0)),
                 geometry::bad_normalization);
}

TEST(GlobalAngle, ClockwiseFromPlusXInDegrees) {
    EXPECT_EQ(geometry::global_angle(point(0, 0)), 0.0);
    EXPECT_EQ(geometry::global_angle(point(1, 0)), 0.0);
    EXPECT_EQ(geometry::global_angle(point(0, 1)), -90.0);
    EXPECT_EQ(geometry::global_angle(point(0, -1)), 90.0);
    EXPECT_EQ(geometry::global_angle(point(-1, 0)), -180.0);
    EXPECT_EQ(geometry::global_angle(point(-1, -0.0)), 180.0);
    EXPECT_EQ(geometry::global_angle(point(-0.0, 0.0)), 0.0);
    EXPECT_EQ(geometry::global_angle(point(1, 1)), -45.0);
    const double a = std::atan2(-2.0, 0.5);
    EXPECT_EQ(geometry::global_angle(point(0.5, 2.0)), a * 180.0 * (1.0 / geometry::pi));
}

TEST(Project, DropsTheHeight) {
    expect_point(geometry::project(vector3d(1.5, 2.5, -3.5)), 1.5, -3.5);
}

}  // namespace
