// Lines, segments, intersections, distances, angles; polygon offsetting, containment, bounds.
#include <gtest/gtest.h>

#include <facet/plane.h>

#include <cmath>
#include <limits>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace {

using geometry::line;
using point = geometry::vector<double, 2>;
using polygon = std::vector<point>;
using seg = geometry::line_segment;

constexpr double inf = std::numeric_limits<double>::infinity();
constexpr double nan = std::numeric_limits<double>::quiet_NaN();
const polygon unit_square = {point(0, 0), point(1, 0), point(1, 1), point(0, 1)};

std::vector<double> coefficients(const line& l) { return {l.a, l.b, l.c, 1.0 * l.degenerate}; }

template <class F>
void expect_parallel_lines_error(F f) {
    try {
        f();
        ADD_FAILURE() << "no exception";
    } catch (const std::runtime_error& e) {
        EXPECT_EQ(std::string(e.what()), "intersection of parallel lines");
    }
}

// Whether they meet and the point written (−7, −7 when left alone).
template <class A, class B>
std::pair<bool, point> meet(const A& a, const B& b) {
    point out(-7, -7);
    const bool hit = geometry::intersection(a, b, out);
    return {hit, out};
}

TEST(Line, NormalisedCoefficientsNormalOnTheRight) {
    using v = std::vector<double>;
    EXPECT_EQ(coefficients(line(3, 4, 10)), (v{3.0 / 5, 4.0 / 5, 10.0 / 5, 0}));
    line l(0, 0, 5);
    EXPECT_EQ(coefficients(l), (v{0, 0, 5, 1}));  // left unchanged
    l.a = 1;                                      // still flagged degenerate: meets nothing
    EXPECT_FALSE(meet(l, line(0, 1, 0)).first || meet(line(0, 1, 0), l).first);
    l.a = 2;
    l.normalize();
    EXPECT_EQ(coefficients(l), (v{1, 0, 2.5, 0}));
    // Through two points: a = dy, b = −dx, c = −(x1·a + y1·b), then divided by the length.
    const double a = 3.0 - -2.0, b = 1.5 - 4.0, c = -(1.5 * a + -2.0 * b), len = std::hypot(a, b);
    EXPECT_EQ(coefficients(line(point(1.5, -2), point(4, 3))), (v{a / len, b / len, c / len, 0}));
    line x(point(0, 0), point(1, 0));
    EXPECT_EQ(coefficients(x), (v{0, -1, 0, 0}));
    EXPECT_EQ(x.distance(point(5, 2)), -2.0);
    EXPECT_EQ(x.project(point(5, 2)), point(5, 0));
    EXPECT_EQ(line(point(0, 0), point(0, 2)).project(point(3, 1)), point(0, 1));
    x.offset(3.0);  // along the normal
    EXPECT_EQ(x.c, -3.0);
    line raw;
    raw.a = 3, raw.b = 4, raw.c = 1;
    raw.offset(2.0);  // c − (a² + b²)·d, also unnormalised
    EXPECT_EQ(raw.c, 1.0 - 25.0 * 2.0);
    const line diagonal(point(0, 1), point(2, 3));
    EXPECT_DOUBLE_EQ(diagonal.get_y(5.0), 6.0);
    EXPECT_DOUBLE_EQ(diagonal.get_x(6.0), 5.0);
}

TEST(LineSegment, LengthDirectionDistanceClosestPoint) {
    seg s;
    s.set_p1(point(1, 1));
    s.set_p2(point(4, 5));
    EXPECT_EQ(s.length(), 5.0);
    EXPECT_EQ(s.get_direction(), point(0.6, 0.8));
    const seg dot(point(1, 1), point(1, 1)), x(point(1, 1), point(5, 1));
    EXPECT_EQ(dot.get_distance(point(4, 5)), 5.0);
    EXPECT_THROW(closest_point_on_line_segment(dot, point(0, 0)), geometry::bad_normalization);
    const struct {
        point p;
        double distance;
        point closest;
    } cases[] = {{point(-2, 5), 5, point(1, 1)},  // before p1
                 {point(8, -3), 5, point(5, 1)},  // after p2
                 {point(2, -1), 2, point(2, 1)},  // beside
                 {point(0, 3), std::sqrt(5.0), point(1, 1)}};
    for (const auto& c : cases) {
        EXPECT_EQ(x.get_distance(c.p), c.distance);
        EXPECT_EQ(geometry::closest_point_on_line_segment(x, c.p), c.closest);
    }
}

TEST(Intersection, LinesSegmentsAndTheirTolerances) {
    using p = std::pair<bool, point>;
    EXPECT_EQ(meet(line(1, 0, -2), line(0, 1, -3)), p(true, point(2, 3)));
    EXPECT_EQ(geometry::intersection(line(1, 0, -2), line(0, 1, -3)), point(2, 3));
    // Parallel below |det| = 1e-6 only (exclusive); degenerate lines never meet.
    line base, tilted;
    tilted.a = 1, tilted.b = 0.99e-6, tilted.c = 1;
    EXPECT_EQ(meet(base, tilted), p(false, point(-7, -7)));
    for (double b : {1e-6, -1e-6}) EXPECT_TRUE(meet(base, (tilted.b = b, tilted)).first);
    for (const line& other : {line(point(1, 1), point(1, 1)), line(1, 0, 5)})
        expect_parallel_lines_error([&] { geometry::intersection(line(1, 0, 0), other); });
    // Segments: within 1e-6 of both; the meeting point of the lines is written either way.
    const seg x(point(0, 0), point(1, 0));
    EXPECT_EQ(meet(x, seg(point(1, 0), point(1, 1))), p(true, point(1, 0)));
    EXPECT_EQ(meet(x, seg(point(2, 1), point(2, 2))), p(false, point(2, 0)));
    EXPECT_TRUE(meet(x, seg(point(1 + 0.5e-6, -1), point(1 + 0.5e-6, 1))).first);
    EXPECT_FALSE(meet(x, seg(point(1 + 2e-6, -1), point(1 + 2e-6, 1))).first);
    const line axis(point(0, 0), point(1, 0));
    EXPECT_EQ(meet(axis, seg(point(0.5, -1), point(0.5, 1))), p(true, point(0.5, 0)));
    EXPECT_EQ(meet(axis, seg(point(3, 1), point(3, 2))), p(false, point(3, 0)));
    EXPECT_EQ(meet(axis, seg(point(3, 1), point(4, 1))), p(false, point(-7, -7)));  // parallel
    using geometry::shortest_distance;
    EXPECT_EQ(shortest_distance(x, seg(point(1, 0), point(1, 1))), 0.0);
    EXPECT_EQ(shortest_distance(x, seg(point(2, 1), point(3, 1))), std::sqrt(2.0));
    EXPECT_EQ(shortest_distance(seg(point(0, 0), point(4, 0)), seg(point(1, 3), point(2, 3))), 3.0);
    EXPECT_EQ(shortest_distance(seg(point(0, 2), point(0, 5)), seg(point(-3, 0), point(3, 0))),
              2.0);
}

TEST(GlobalAngle, ClockwiseFromPlusXInDegrees) {
    std::vector<double> got;
    for (point p : {point(0, 0), point(1, 0), point(0, 1), point(0, -1), point(-1, 0),
                    point(-1, -0.0), point(-0.0, 0), point(1, 1), point(0.5, 2)})
        got.push_back(geometry::global_angle(p));
    EXPECT_EQ(got, (std::vector<double>{0, 0, -90, 90, -180, 180, 0, -45,
                                        std::atan2(-2.0, 0.5) * 180.0 * (1.0 / geometry::pi)}));
}

TEST(InflatePolygon, MitredOffsetsAndParallelEdges) {
    const auto inflated = [](polygon p, double d) { return geometry::inflate_polygon(p, d), p; };
    EXPECT_EQ(inflated(unit_square, 0.5),
              (polygon{point(-0.5, -0.5), point(1.5, -0.5), point(1.5, 1.5), point(-0.5, 1.5)}));
    EXPECT_EQ(inflated(unit_square, -0.25), (polygon{point(0.25, 0.25), point(0.75, 0.25),
                                                     point(0.75, 0.75), point(0.25, 0.75)}));
    EXPECT_EQ(inflated({point(0, 0), point(0, 4), point(4, 4), point(4, 0)}, 1.0),  // clockwise
              (polygon{point(1, 1), point(1, 3), point(3, 3), point(3, 1)}));
    EXPECT_EQ(inflated({}, 1.0), polygon());
    // A thin triangle: the mitre at the sharp tip reaches far beyond the distance (no limit).
    polygon thin = {point(0, 0), point(10, 0), point(0, 1)};
    geometry::inflate_polygon(thin, 1.0);
    EXPECT_GT(thin[1][0], 20.0);  // ≈ 1 / sin(θ / 2)
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

std::string inside(const polygon& poly, std::initializer_list<point> points) {
    std::string s;
    for (point p : points) s += geometry::point_in_polygon(poly, p) ? '1' : '0';
    return s;
}

TEST(PointInPolygon, HalfOpenEvenOddCrossings) {
    // Left and bottom edges are inside, right and top ones not.
    EXPECT_EQ(inside(unit_square, {point(0.5, 0.5), point(1.5, 0.5), point(0, 0.5), point(1, 0.5),
                                   point(0.5, 0), point(0.5, 1), point(nan, 0.5)}),
              "1010100");
    // The diamond's corners lie on the ray through (0, 0): each counts once.
    const polygon diamond = {point(0, -1), point(1, 0), point(0, 1), point(-1, 0)};
    EXPECT_EQ(inside(diamond, {point(0, 0), point(-2, 0), point(2, 0)}), "100");
    const polygon bow_tie = {point(0, 0), point(2, 2), point(2, 0), point(0, 2)};
    EXPECT_EQ(inside(bow_tie, {point(0.2, 1), point(1, 1.8)}), "10");
    EXPECT_EQ(inside({}, {point(0, 0)}), "0");
}

// Found, then the low and high corners; NaN: the form without a margin.
std::vector<double> bounds(const polygon& poly, double margin = nan) {
    point lo(9, 9), hi(9, 9);
    const bool found = std::isnan(margin) ? geometry::get_bounds(poly, lo, hi)
                                          : geometry::get_bounds(poly, lo, hi, margin);
    return {1.0 * found, lo[0], lo[1], hi[0], hi[1]};
}

TEST(GetBounds, MarginsEmptyAxesAndNaN) {
    using v = std::vector<double>;
    const polygon p = {point(3, -1), point(-2, 4), point(5, 2)};
    EXPECT_EQ(bounds(p), (v{1, -2, -1, 5, 4}));
    EXPECT_EQ(bounds(p, 0.5), (v{1, -2.5, -1.5, 5.5, 4.5}));
    EXPECT_EQ(bounds(p, -3.0), (v{1, 1, 2, 2, 1}));  // shrinking may invert an axis
    EXPECT_EQ(bounds({point(7, 8)}), (v{1, 7, 8, 7, 8}));
    EXPECT_EQ(bounds({}, 2.0), (v{0, inf, inf, -inf, -inf}));
    EXPECT_EQ(bounds({point(nan, 1), point(2, nan), point(-1, 3)}), (v{1, -1, 1, 2, 3}));
    // The empty x axis stays empty, y grows.
    EXPECT_EQ(bounds({point(nan, 1), point(nan, 5)}, 1.0), (v{0, inf, 0, -inf, 6}));
}

}  // namespace
