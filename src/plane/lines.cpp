// Lines, segments, their intersections and distances, compass angles.
#include <cmath>
#include <stdexcept>

#include "facet/plane.h"

namespace geometry {

namespace {

using point = vector<double, 2>;

constexpr double intersection_tolerance = 1e-6;

}  // namespace

// ---- line ------------------------------------------------------------------------------------

line::line(double a_, double b_, double c_) : a(a_), b(b_), c(c_), degenerate(false) {
    normalize();
}

line::line(const point& p1, const point& p2) {
    a = p2[1] - p1[1];
    b = p1[0] - p2[0];
    c = -(p1[0] * a + p1[1] * b);
    normalize();
}

void line::normalize() {
    const double len = std::sqrt(a * a + b * b);
    if (len != 0.0) {
        a /= len;
        b /= len;
        c /= len;
        degenerate = false;
    } else {
        degenerate = true;
    }
}

void line::offset(double d) { c = c - (a * a + b * b) * d; }

double line::distance(const point& p) const { return a * p[0] + b * p[1] + c; }

point line::project(const point& p) const {
    const double d = distance(p);
    return point(p[0] - a * d, p[1] - b * d);
}

point line::get_normal() const { return point(a, b); }

point line::get_direction() const { return point(-b, a); }

double line::get_y(double x) const { return -(a * x + c) / b; }

double line::get_x(double y) const { return -(b * y + c) / a; }

// ---- line_segment ----------------------------------------------------------------------------

line_segment::line_segment(const point& p1_, const point& p2_) : p1(p1_), p2(p2_) {}

void line_segment::set_p1(const point& p) { p1 = p; }
void line_segment::set_p2(const point& p) { p2 = p; }
point line_segment::get_p1() const { return p1; }
point line_segment::get_p2() const { return p2; }

double line_segment::length() const { return (p2 - p1).length(); }

point line_segment::get_direction() const {
    point d = p2 - p1;
    d.normalize();
    return d;
}

double line_segment::get_distance(const point& p) const {
    const point d = p2 - p1;
    const double len2 = dot(d, d);
    if (len2 == 0.0) return (p - p1).length();
    const double t = dot(p - p1, d) / len2;
    if (t < 0.0) return (p - p1).length();
    if (t > 1.0) return (p - p2).length();
    return (p - (p1 + t * d)).length();
}

// ---- intersections and distances -------------------------------------------------------------

bool intersection(const line& l1, const line& l2, point& out) {
    const double det = l1.a * l2.b - l1.b * l2.a;
    if (-intersection_tolerance < det && det < intersection_tolerance) return false;
    if (l1.degenerate || l2.degenerate) return false;
    out[0] = (l1.b * l2.c - l2.b * l1.c) / det;
    out[1] = (l2.a * l1.c - l1.a * l2.c) / det;
    return true;
}

point intersection(const line& l1, const line& l2) {
    point out;
    if (!intersection(l1, l2, out)) throw std::runtime_error("intersection of parallel lines");
    return out;
}

bool intersection(const line_segment& s1, const line_segment& s2, point& out) {
    if (!intersection(line(s1.p1, s1.p2), line(s2.p1, s2.p2), out)) return false;
    return s1.get_distance(out) < intersection_tolerance &&
           s2.get_distance(out) < intersection_tolerance;
}

bool intersection(const line& l, const line_segment& s, point& out) {
    if (!intersection(l, line(s.p1, s.p2), out)) return false;
    return s.get_distance(out) < intersection_tolerance;
}

double shortest_distance(const line_segment& s1, const line_segment& s2) {
    point meeting;
    if (intersection(s1, s2, meeting)) return 0.0;
    const double candidates[] = {s1.get_distance(s2.p1), s1.get_distance(s2.p2),
                                 s2.get_distance(s1.p1), s2.get_distance(s1.p2)};
    double best = candidates[0];
    for (double d : candidates)
        if (d < best) best = d;
    return best;
}

point closest_point_on_line_segment(const line_segment& s, const point& p) {
    const point q = line(s.p1, s.p2).project(p);
    point d = s.p2 - s.p1;
    const double len = d.length();
    d.normalize();
    const double t = dot(p - s.p1, d);
    if (t < 0.0) return s.p1;
    if (t > len) return s.p2;
    return q;
}

double global_angle(const point& direction) {
    if (direction[0] == 0.0 && direction[1] == 0.0) return 0.0;
    return rad_to_deg(std::atan2(-direction[1], direction[0]));
}

point project(const vector3<double>& v) { return point(v.x, v.z); }

}  // namespace geometry
