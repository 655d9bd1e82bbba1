// triangulate() against the textbook loop on thousands of generated outlines: simple and
// self-intersecting, convex and star-shaped, on integer grids (points exactly on edges and
// corners), with repeated points, collinear runs, spikes, clockwise order, corners repeated
// elsewhere in the outline, NaN and infinite coordinates, and coordinates so large or small that
// the cross products overflow or underflow. The result vectors (including what was in them
// before) and the exceptions must be identical.
#include <gtest/gtest.h>

#include <facet/triangulate.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include "plane/reference_triangulate.h"

namespace {

using outline = std::vector<vector2d>;

constexpr double two_pi = 6.283185307179586;

class generator {
public:
    explicit generator(std::uint64_t seed) : m_rng(seed) {}

    double uniform() { return static_cast<double>(m_rng() >> 11) * 0x1p-53; }
    double uniform(double lo, double hi) { return lo + (hi - lo) * uniform(); }
    std::size_t below(std::size_t n) { return static_cast<std::size_t>(m_rng() % n); }
    bool chance(double p) { return uniform() < p; }

    // Corners at increasing angles around the origin; with `radius_spread` 0 a convex polygon,
    // otherwise star-shaped. `grid` > 0 rounds the coordinates to multiples of 1 / grid, which
    // makes collinear runs, repeated points and corners on edges likely.
    outline star(std::size_t n, double radius_spread, double grid) {
        std::vector<double> angles(n);
        for (double& a : angles) a = uniform(0.0, two_pi);
        std::sort(angles.begin(), angles.end());
        outline o;
        for (double a : angles) {
            const double r = 1.0 - radius_spread * uniform();
            double x = r * std::cos(a) * 10.0, y = r * std::sin(a) * 10.0;
            if (grid > 0) x = std::round(x * grid) / grid, y = std::round(y * grid) / grid;
            o.emplace_back(x, y);
        }
        return o;
    }

    // Random points in a box: self-intersecting almost always.
    outline scatter(std::size_t n, double grid) {
        outline o;
        for (std::size_t i = 0; i < n; ++i) {
            double x = uniform(-10, 10), y = uniform(-10, 10);
            if (grid > 0) x = std::round(x * grid) / grid, y = std::round(y * grid) / grid;
            o.emplace_back(x, y);
        }
        return o;
    }

    // A comb: many reflex corners, ears only at the teeth.
    outline comb(std::size_t teeth) {
        outline o;
        for (std::size_t i = 0; i < teeth; ++i) {
            const double x = static_cast<double>(i) * 2.0;
            o.emplace_back(x, 0);
            o.emplace_back(x + 1, 0);
            o.emplace_back(x + 1, -uniform(1.0, 5.0));
            o.emplace_back(x + 2, -uniform(1.0, 5.0));
        }
        o.emplace_back(static_cast<double>(teeth) * 2.0, 3.0);
        o.emplace_back(0.0, 3.0);
        return o;
    }

    // Points on the diagonals of the outline (the third side of the candidate ears) and on the
    // lines of its edges, up to rounding, inserted at other positions.
    void add_points_on_lines(outline& o, std::size_t count) {
        for (std::size_t m = 0; m < count; ++m) {
            const std::size_t i = below(o.size());
            const vector2d a = o[i], b = o[(i + 1 + below(2)) % o.size()];
            const double t = uniform(-0.5, 1.5);
            o.insert(o.begin() + static_cast<std::ptrdiff_t>(below(o.size())),
                     vector2d(a.x + (b.x - a.x) * t, a.y + (b.y - a.y) * t));
        }
    }

    // Random damage of the kinds the clean-up and the ear test must treat exactly.
    void mutate(outline& o) {
        const std::size_t kinds = 10;
        const std::size_t count = 1 + below(4);
        for (std::size_t m = 0; m < count && !o.empty(); ++m) {
            const std::size_t i = below(o.size());
            const std::size_t j = below(o.size());
            switch (below(kinds)) {
                case 0:  // a repeated point
                    o.insert(o.begin() + static_cast<std::ptrdiff_t>(i), o[i]);
                    break;
                case 1: {  // a collinear run on an edge
                    const vector2d a = o[i], b = o[(i + 1) % o.size()];
                    const std::size_t k = 1 + below(3);
                    outline run;
                    for (std::size_t s = 1; s <= k; ++s) {
                        const double t = static_cast<double>(s) / static_cast<double>(k + 1);
                        run.emplace_back(a.x + (b.x - a.x) * t, a.y + (b.y - a.y) * t);
                    }
                    o.insert(o.begin() + static_cast<std::ptrdiff_t>(i + 1), run.begin(),
                             run.end());
                    break;
                }
                case 2:  // a corner repeated elsewhere in the outline
                    o.insert(o.begin() + static_cast<std::ptrdiff_t>(j), o[i]);
                    break;
                case 3:  // a spike
                    o.insert(o.begin() + static_cast<std::ptrdiff_t>(i) + 1,
                             {vector2d(o[i].x + uniform(-3, 3), o[i].y + uniform(-3, 3)), o[i]});
                    break;
                case 4: {  // a non-finite coordinate
                    const double bad[] = {std::numeric_limits<double>::quiet_NaN(),
                                          std::numeric_limits<double>::infinity(),
                                          -std::numeric_limits<double>::infinity()};
                    (chance(0.5) ? o[i].x : o[i].y) = bad[below(3)];
                    break;
                }
                case 5:  // a point on another corner's edge
                    o.insert(o.begin() + static_cast<std::ptrdiff_t>(j),
                             vector2d((o[i].x + o[(i + 1) % o.size()].x) * 0.5,
                                      (o[i].y + o[(i + 1) % o.size()].y) * 0.5));
                    break;
                case 6: {  // a point on a diagonal, up to rounding, elsewhere in the outline
                    const vector2d a = o[i], b = o[(i + 2) % o.size()];
                    const double t = uniform();
                    o.insert(o.begin() + static_cast<std::ptrdiff_t>(j),
                             vector2d(a.x + (b.x - a.x) * t, a.y + (b.y - a.y) * t));
                    break;
                }
                case 7: {  // a point on the line of an edge, beyond its ends
                    const vector2d a = o[i], b = o[(i + 1) % o.size()];
                    const double t = chance(0.5) ? uniform(-3.0, 0.0) : uniform(1.0, 4.0);
                    o.insert(o.begin() + static_cast<std::ptrdiff_t>(j),
                             vector2d(a.x + (b.x - a.x) * t, a.y + (b.y - a.y) * t));
                    break;
                }
                case 8:  // a point dropped
                    o.erase(o.begin() + static_cast<std::ptrdiff_t>(i));
                    break;
                default:  // the first point repeated at the end
                    o.push_back(o.front());
                    break;
            }
        }
    }

private:
    std::mt19937_64 m_rng;
};

outline reversed(const outline& o) { return outline(o.rbegin(), o.rend()); }

outline scaled(const outline& o, double sx, double sy) {
    outline s;
    for (const vector2d& p : o) s.emplace_back(p.x * sx, p.y * sy);
    return s;
}

struct tally {
    int cases = 0;
    int triangulated = 0;  // finished without an error, with triangles
    int failed = 0;        // threw
    int failed_after = 0;  // threw after appending triangles
};

std::vector<unsigned> run(void (*fn)(const outline&, std::vector<unsigned>&), const outline& o,
                          std::string& error) {
    std::vector<unsigned> result = {4242, 17};
    try {
        fn(o, result);
    } catch (const std::runtime_error& e) {
        error = e.what();
    }
    return result;
}

void compare(const outline& o, tally& t, const char* what) {
    std::string expected_error, actual_error;
    const std::vector<unsigned> expected = run(reference::triangulate, o, expected_error);
    const std::vector<unsigned> actual = run(::triangulate, o, actual_error);
    ++t.cases;
    if (!expected_error.empty()) {
        ++t.failed;
        if (expected.size() > 2) ++t.failed_after;
    } else if (expected.size() > 2) {
        ++t.triangulated;
    }
    if (actual == expected && actual_error == expected_error) return;
    ADD_FAILURE() << what << " outline of " << o.size() << " points: results "
                  << (actual == expected ? "equal" : "differ") << ", errors '" << actual_error
                  << "' vs '" << expected_error << "'";
}

std::size_t size_for(generator& g, std::size_t i) {
    // Mostly small outlines; every tenth one large enough for several grid rebuilds.
    if (i % 10 == 9) return 200 + g.below(400);
    return 3 + g.below(120);
}

TEST(TriangulateOracle, ConvexAndStarShapedOutlines) {
    generator g(1);
    tally t;
    for (std::size_t i = 0; i < 1500; ++i) {
        const std::size_t n = size_for(g, i);
        const double spread = i % 3 == 0 ? 0.0 : g.uniform(0.0, 0.9);
        const double grid = i % 4 == 0 ? g.uniform(1.0, 8.0) : 0.0;
        outline o = g.star(n, spread, grid);
        if (i % 2 == 1) o = reversed(o);
        compare(o, t, "star");
    }
    EXPECT_GT(t.triangulated, 1000);
}

TEST(TriangulateOracle, DamagedOutlines) {
    generator g(2);
    tally t;
    for (std::size_t i = 0; i < 2500; ++i) {
        const std::size_t n = size_for(g, i);
        const double grid = i % 2 == 0 ? g.uniform(1.0, 6.0) : 0.0;
        outline o = g.star(n, g.uniform(0.0, 0.9), grid);
        g.mutate(o);
        if (g.chance(0.5)) o = reversed(o);
        compare(o, t, "damaged");
    }
    EXPECT_GT(t.triangulated, 500);
    EXPECT_GT(t.failed_after, 50);
}

TEST(TriangulateOracle, SelfIntersectingOutlines) {
    generator g(3);
    tally t;
    for (std::size_t i = 0; i < 1500; ++i) {
        const std::size_t n = i % 10 == 9 ? 100 + g.below(200) : 3 + g.below(60);
        outline o = g.scatter(n, i % 2 == 0 ? g.uniform(0.5, 3.0) : 0.0);
        if (g.chance(0.3)) g.mutate(o);
        compare(o, t, "scattered");
    }
    EXPECT_GT(t.failed_after, 300);
    EXPECT_GT(t.triangulated, 20);
}

TEST(TriangulateOracle, PointsOnDiagonalsAndEdgeLines) {
    generator g(5);
    tally t;
    for (std::size_t i = 0; i < 800; ++i) {
        const std::size_t n = 30 + g.below(i % 10 == 9 ? 600 : 150);
        outline o = g.star(n, g.uniform(0.0, 0.5), i % 3 == 0 ? g.uniform(1.0, 20.0) : 0.0);
        g.add_points_on_lines(o, 1 + g.below(n / 8));
        if (g.chance(0.5)) o = reversed(o);
        compare(o, t, "points on lines");
    }
    EXPECT_GT(t.triangulated, 50);
    EXPECT_GT(t.failed_after, 50);
}

TEST(TriangulateOracle, CombsAndExtremeScales) {
    generator g(4);
    tally t;
    const double scales[] = {1.0, 1e-300, 1e-160, 1e-150, 1e150, 1e160, 0x1p399, 0x1p401, 1e300};
    for (std::size_t i = 0; i < 600; ++i) {
        outline o = i % 2 == 0 ? g.comb(5 + g.below(60))
                               : g.star(20 + g.below(200), g.uniform(0.0, 0.9), 0.0);
        if (i % 3 == 0) g.mutate(o);
        const double s = scales[i % 9];
        // Squeezed in one direction too, for thin ears.
        o = scaled(o, s, i % 4 == 1 ? s * 1e-9 : s);
        if (g.chance(0.5)) o = reversed(o);
        compare(o, t, "comb or scaled");
    }
    EXPECT_GT(t.triangulated, 200);
}

}  // namespace
