// Lines, segments, intersections, distances, angles; polygon offsetting, containment, bounds.
#include <gtest/gtest.h>

#include <facet/plane.h>

#include <cmath>
#include <limits>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using geometry::line;
using point = geometry::vector<double, 2>;
using polygon = std::vector<point>;
using seg = geometry::line_segment;

constexpr double inf = std::numeric_limits<double>::infinity();
constexpr double nan = std::numeric_limits<double>::quiet_NaN();
const polygon unit_square = {point(0, 0), point(1, 0), point(1, 1), point(0, 1)};

void expect_coefficients(const line& l, double a, double b, double c, bool degenerate = false) {
    EXPECT_EQ(l.a, a);
    EXPECT_EQ(l.b, b);
    EXPECT_EQ(l.c, c);
    EXPECT_EQ(l.degenerate, degenerate);
}

template <class F>
void expect_parallel_lines_error(F f) {
    try {
        f();
        ADD_FAILURE() << "no exception";
    } catch (const std::runtime_error& e) {
        EXPECT_EQ(std::string(e.what()), "intersection of parallel lines");
    }
}

TEST(Line, NormalisedCoefficientsNormalOnTheRight) {
    expect_coefficients(line(), 1, 0, 0);
    expect_coefficients(line(3, 4, 10), 3.0 / 5, 4.0 / 5, 10.0 / 5);
    line l(0, 0, 5);
    expect_coefficients(l, 0, 0, 5, true);  // left unchanged
    l.a = 2;
    l.normalize();
    expect_coefficients(l, 1, 0, 2.5);
    // Through two points: a = dy, b = −dx, c = −(x1·a + y1·b), then divided by the length.
    const double a = 3.0 - -2.0, b = 1.5 - 4.0, c = -(1.5 * a + -2.0 * b), len = std::hypot(a, b);
    expect_coefficients(line(point(1.5, -2), point(4, 3)), a / len, b / len, c / len);
    EXPECT_TRUE(line(point(1, 1), point(1, 1)).degenerate);

    line x(point(0, 0), point(1, 0));
    expect_coefficients(x, 0, -1, 0);
    EXPECT_EQ(x.distance(point(5, 2)), -2.0);
    EXPECT_EQ(x.project(point(5, 2)), point(5, 0));
    EXPECT_EQ(line(point(0, 0), point(0, 2)).project(point(3, 1)), point(0, 1));
    EXPECT_EQ(x.get_normal(), point(0, -1));
    EXPECT_EQ(x.get_direction(), point(1, 0));
    x.offset(3.0);  // along the normal
    EXPECT_EQ(x.c, -3.0);
    line raw;
    raw.a = 3, raw.b = 4, raw.c = 1;
    raw.offset(2.0);  // c − (a² + b²)·d, also unnormalised
    EXPECT_EQ(raw.c, 1.0 - 25.0 * 2.0);

    const line diagonal(point(0, 1), point(2, 3)), vertical(point(1, 0), point(1, 1));
    EXPECT_DOUBLE_EQ(diagonal.get_y(5.0), 6.0);
    EXPECT_DOUBLE_EQ(diagonal.get_x(6.0), 5.0);
    EXPECT_TRUE(std::isinf(vertical.get_y(0.0)));  // no guards
    EXPECT_EQ(vertical.get_x(123.0), 1.0);
}

TEST(LineSegment, LengthDirectionDistanceClosestPoint) {
    seg s;
    EXPECT_EQ(s.get_p2(), point(1, 0));
    s.set_p1(point(1, 1));
    s.set_p2(point(4, 5));
    EXPECT_EQ(s.length(), 5.0);
    EXPECT_EQ(s.get_direction(), point(0.6, 0.8));
    const seg dot(point(1, 1), point(1, 1)), x(point(0, 0), point(4, 0));
    EXPECT_THROW(dot.get_direction(), geometry::bad_normalization);
    EXPECT_EQ(dot.get_distance(point(4, 5)), 5.0);
    EXPECT_EQ(x.get_distance(point(-3, 4)), 5.0);  // before p1
    EXPECT_EQ(x.get_distance(point(7, -4)), 5.0);  // after p2
    EXPECT_EQ(x.get_distance(point(1, -2)), 2.0);  // beside
    using geometry::closest_point_on_line_segment;
    EXPECT_EQ(closest_point_on_line_segment(x, point(5, 1)), point(4, 0));
    EXPECT_EQ(closest_point_on_line_segment(x, point(-1, 5)), point(0, 0));
    EXPECT_EQ(closest_point_on_line_segment(x, point(1, 7)), point(1, 0));
    EXPECT_THROW(closest_point_on_line_segment(dot, point(0, 0)), geometry::bad_normalization);
}

TEST(Intersection, LinesSegmentsAndTheirTolerances) {
    using geometry::intersection;
    point out(-7, -7);
    ASSERT_TRUE(intersection(line(1, 0, -2), line(0, 1, -3), out));
    EXPECT_EQ(out, point(2, 3));
    EXPECT_EQ(intersection(line(1, 0, -2), line(0, 1, -3)), point(2, 3));
    // Parallel below |det| = 1e-6 only (exclusive); degenerate lines never meet.
    line base, tilted;
    tilted.a = 1, tilted.b = 0.99e-6, tilted.c = 1;
    out = point(-7, -7);
    EXPECT_FALSE(intersection(base, tilted, out));
    for (double b : {1e-6, -1e-6}) EXPECT_TRUE(intersection(base, (tilted.b = b, tilted), out));
    const line degenerate(point(1, 1), point(1, 1));
    EXPECT_FALSE(intersection(degenerate, line(1, 0, 0), out));
    EXPECT_FALSE(intersection(line(1, 0, 0), degenerate, out));
    for (const line& other : {degenerate, line(1, 0, 5)})
        expect_parallel_lines_error([&] { intersection(line(1, 0, 0), other); });

    // Segments: within 1e-6 of both; the meeting point of the lines is written either way.
    const seg x(point(0, 0), point(1, 0));
    EXPECT_TRUE(intersection(x, seg(point(1, 0), point(1, 1)), out));
    EXPECT_EQ(out, point(1, 0));
    EXPECT_FALSE(intersection(x, seg(point(2, 1), point(2, 2)), out));
    EXPECT_EQ(out, point(2, 0));
    EXPECT_TRUE(intersection(x, seg(point(1 + 0.5e-6, -1), point(1 + 0.5e-6, 1)), out));
    EXPECT_FALSE(intersection(x, seg(point(1 + 2e-6, -1), point(1 + 2e-6, 1)), out));
    const line axis(point(0, 0), point(1, 0));
    EXPECT_TRUE(intersection(axis, seg(point(0.5, -1), point(0.5, 1)), out));
    EXPECT_EQ(out, point(0.5, 0));
    EXPECT_FALSE(intersection(axis, seg(point(3, 1), point(3, 2)), out));
    EXPECT_EQ(out, point(3, 0));
    EXPECT_FALSE(intersection(axis, seg(point(3, 1), point(4, 1)), out));
    EXPECT_EQ(out, point(3, 0));  // parallel: untouched

    using geometry::shortest_distance;
    EXPECT_EQ(shortest_distance(x, seg(point(1, 0), point(1, 1))), 0.0);
    EXPECT_EQ(shortest_distance(x, seg(point(2, 1), point(3, 1))), std::sqrt(2.0));
    EXPECT_EQ(shortest_distance(seg(point(0, 0), point(4, 0)), seg(point(1, 3), point(2, 3))), 3.0);
    EXPECT_EQ(shortest_distance(seg(point(0, 2), point(0, 5)), seg(point(-3, 0), point(3, 0))),
              2.0);
}

TEST(GlobalAngle, ClockwiseFromPlusXInDegrees) {
    const struct {
        double x, y, degrees;
    } cases[] = {{0, 0, 0},
                 {1, 0, 0},
                 {0, 1, -90},
                 {0, -1, 90},
                 {-1, 0, -180},
                 {-1, -0.0, 180},
                 {-0.0, 0, 0},
                 {1, 1, -45},
                 {0.5, 2, std::atan2(-2.0, 0.5) * 180.0 * (1.0 / geometry::pi)}};
    for (const auto& c : cases)
        EXPECT_EQ(geometry::global_angle(point(c.x, c.y)), c.degrees) << c.x << ", " << c.y;
    EXPECT_EQ(geometry::project(vector3d(1.5, 2.5, -3.5)), point(1.5, -3.5));
}

TEST(InflatePolygon, MitredOffsetsAndParallelEdges) {
    const struct {
        polygon p;
        double distance;
        polygon expected;
    } cases[] = {
        {unit_square,
         0.5,
         {point(-0.5, -0.5), point(1.5, -0.5), point(1.5, 1.5), point(-0.5, 1.5)}},
        {unit_square,
         -0.25,
         {point(0.25, 0.25), point(0.75, 0.25), point(0.75, 0.75), point(0.25, 0.75)}},
        // Clockwise: a positive distance shrinks.
        {{point(0, 0), point(0, 4), point(4, 4), point(4, 0)},
         1.0,
         {point(1, 1), point(1, 3), point(3, 3), point(3, 1)}},
        {{}, 1.0, {}},
    };
    for (auto c : cases) {
        geometry::inflate_polygon(c.p, c.distance);
        EXPECT_EQ(c.p, c.expected);
    }
    // A thin triangle: the mitre at the sharp tip reaches far beyond the distance (no limit).
    polygon thin = {point(0, 0), point(10, 0), point(0, 1)};
    geometry::inflate_polygon(thin, 1.0);
    EXPECT_NEAR(thin[0][0], -1.0, 1e-12);
    EXPECT_NEAR(thin[0][1], -1.0, 1e-12);
    EXPECT_GT(thin[1][0], 20.0);  // ≈ 1 / sin(θ / 2)
    EXPECT_NEAR(thin[1][1], -1.0, 1e-12);
    // Collinear points, a spike, a zero-length edge, too few points: an error, nothing changed.
    for (polygon p : {polygon{point(0, 0), point(1, 0), point(2, 0), point(2, 1)},
                      polygon{point(0, 0), point(2, 0), point(1, 0), point(1, 1)},
                      polygon{point(0, 0), point(1, 0), point(1, 0), point(0, 1)},
                      polygon{point(0, 0), point(1, 0)}, polygon{point(3, 4)}}) {
        const polygon before = p;
        expect_parallel_lines_error([&] { geometry::inflate_polygon(p, 0.5); });
        EXPECT_EQ(p, before);
    }
}

TEST(PointInPolygon, HalfOpenEvenOddCrossings) {
    const polygon diamond = {point(0, -1), point(1, 0), point(0, 1), point(-1, 0)};
    const polygon bow_tie = {point(0, 0), point(2, 2), point(2, 0), point(0, 2)};
    const struct {
        const polygon& poly;
        point p;
        bool inside;
    } cases[] = {
        {unit_square, point(0.5, 0.5), true},
        {unit_square, point(1.5, 0.5), false},
        {unit_square, point(0, 0.5), true},
        {unit_square, point(1, 0.5), false},  // left, right
        {unit_square, point(0.5, 0), true},
        {unit_square, point(0.5, 1), false},  // bottom, top
        {unit_square, point(nan, 0.5), false},
        // The ray passes exactly through the diamond's corners: each counts once.
        {diamond, point(0, 0), true},
        {diamond, point(-2, 0), false},
        {diamond, point(2, 0), false},
        {bow_tie, point(0.2, 1), true},
        {bow_tie, point(1, 1.8), false},
    };
    for (const auto& c : cases)
        EXPECT_EQ(geometry::point_in_polygon(c.poly, c.p), c.inside) << c.p[0] << ", " << c.p[1];
    EXPECT_FALSE(geometry::point_in_polygon({}, point(0, 0)));
}

TEST(GetBounds, MarginsEmptyAxesAndNaN) {
    const polygon p = {point(3, -1), point(-2, 4), point(5, 2)};
    const struct {
        polygon poly;
        double margin;  // NaN: the form without a margin
        bool found;
        point lo, hi;
    } cases[] = {
        {p, nan, true, point(-2, -1), point(5, 4)},
        {p, 0.5, true, point(-2.5, -1.5), point(5.5, 4.5)},
        {p, -3.0, true, point(1, 2), point(2, 1)},  // shrinking may invert an axis
        {{point(7, 8)}, nan, true, point(7, 8), point(7, 8)},
        {{}, nan, false, point(inf, inf), point(-inf, -inf)},
        {{}, 2.0, false, point(inf, inf), point(-inf, -inf)},
        {{point(nan, 1), point(2, nan), point(-1, 3)}, nan, true, point(-1, 1), point(2, 3)},
        // The empty x axis stays empty, y grows.
        {{point(nan, 1), point(nan, 5)}, 1.0, false, point(inf, 0), point(-inf, 6)},
    };
    for (const auto& c : cases) {
        point lo(9, 9), hi(9, 9);
        EXPECT_EQ(std::isnan(c.margin) ? geometry::get_bounds(c.poly, lo, hi)
                                       : geometry::get_bounds(c.poly, lo, hi, c.margin),
                  c.found);
        EXPECT_EQ(lo, c.lo);
        EXPECT_EQ(hi, c.hi);
    }
}

}  // namespace
