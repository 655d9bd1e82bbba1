// triangulate() and its public tests: pinned results, and support/reference_triangulate.h's on
// thousands of generated outlines from two threads at once.
#include <gtest/gtest.h>

#include <facet/triangulate.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "support/reference_triangulate.h"

namespace {

using outline = std::vector<vector2d>;
using indices = std::vector<unsigned>;

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double two_pi = 6.283185307179586;

// The error, then everything in the result, which held 7 before.
std::string run(void (*fn)(const outline&, indices&), const outline& o) {
    indices result = {7};
    std::string s;
    try {
        fn(o, result);
    } catch (const std::runtime_error& e) {
        s = e.what();
    }
    for (unsigned i : result) s += " " + std::to_string(i);
    return s;
}

class generator {
public:
    explicit generator(std::uint64_t seed) : m_rng(seed) {}
    double uniform(double lo = 0.0, double hi = 1.0) {
        return lo + (hi - lo) * (static_cast<double>(m_rng() >> 11) * 0x1p-53);
    }
    std::size_t below(std::size_t n) { return static_cast<std::size_t>(m_rng() % n); }
    static double snap(double v, double grid) { return grid > 0 ? std::round(v * grid) / grid : v; }

    // Star-shaped around the origin (convex with `spread` 0), or with `shuffled` corners
    // self-intersecting almost always; `grid` > 0 rounds to multiples of 1 / grid.
    outline star(std::size_t n, double spread, double grid, bool shuffled = false) {
        std::vector<double> angles(n);
        for (double& a : angles) a = uniform(0.0, two_pi);
        if (!shuffled) std::sort(angles.begin(), angles.end());
        outline o;
        for (double a : angles) {
            const double r = 10.0 * (1.0 - spread * uniform());
            o.emplace_back(snap(r * std::cos(a), grid), snap(r * std::sin(a), grid));
        }
        return o;
    }
    // A comb: many reflex corners, ears only at the teeth.
    outline comb(std::size_t teeth) {
        outline o;
        for (double x = 0; x < 2.0 * teeth; x += 2)
            o.insert(o.end(),
                     {{x, 0}, {x + 1, 0}, {x + 1, -uniform(1, 5)}, {x + 2, -uniform(1, 5)}});
        o.insert(o.end(), {{2.0 * teeth, 3.0}, {0.0, 3.0}});
        return o;
    }
    // Points on the diagonals (the third side of candidate ears) and edge lines.
    void add_points_on_lines(outline& o, std::size_t count) {
        for (std::size_t m = 0; m < count; ++m) {
            const std::size_t i = below(o.size());
            const vector2d p = lerp(o[i], o[(i + 1 + below(2)) % o.size()], uniform(-0.5, 1.5));
            o.insert(o.begin() + below(o.size()), p);
        }
    }
    void damage(outline& o) {
        const double bad[] = {nan, std::numeric_limits<double>::infinity(),
                              -std::numeric_limits<double>::infinity()};
        for (std::size_t m = 0, count = 1 + below(4); m < count && !o.empty(); ++m) {
            const std::size_t i = below(o.size()), kind = below(7);
            const vector2d p = o[i], q = o[(i + 1) % o.size()];
            if (kind == 0) o.insert(o.begin() + i, p);  // a repeated point
            if (kind == 1)                              // a collinear run on an edge
                for (std::size_t k = 1 + below(3), s = k; s >= 1; --s)
                    o.insert(o.begin() + i + 1, lerp(p, q, static_cast<double>(s) / (k + 1.0)));
            if (kind == 2) o.insert(o.begin() + below(o.size()), p);  // a corner repeated elsewhere
            if (kind == 3)  // a spike: out and back to the corner
                o.insert(o.begin() + i + 1, {p + vector2d(uniform(-3, 3), uniform(-3, 3)), p});
            if (kind == 4) (below(2) ? o[i].x : o[i].y) = bad[below(3)];
            if (kind == 5) o.erase(o.begin() + i);
            if (kind == 6) o.push_back(o.front());  // the first point repeated at the end
        }
    }
    static vector2d lerp(vector2d a, vector2d b, double t) {
        return vector2d(a.x + (b.x - a.x) * t, a.y + (b.y - a.y) * t);
    }

private:
    std::mt19937_64 m_rng;
};

TEST(AreaAndInsideTriangle, MatchTheReferenceBitForBit) {
    // Integer points for exact ties, others for rounding, NaN and extremes.
    generator g(3);
    const double values[] = {nan, 1e300, -1e-300, 0.1, -0.7};
    outline o(8);
    for (int trial = 0; trial < 20000; ++trial) {
        for (vector2d& p : o) {
            p = vector2d(g.uniform(-3, 3), g.uniform(-3, 3));
            if (trial % 2) p = vector2d(std::round(p.x), std::round(p.y));
            if (g.below(10) == 0) p.x = values[g.below(5)];
        }
        const outline part(o.begin(), o.begin() + trial % 9);
        const double a = area(part), r = reference::area(part);
        ASSERT_TRUE(a == r || (std::isnan(a) && std::isnan(r))) << trial;
        ASSERT_EQ(inside_triangle(o[0], o[1], o[2], o[3]),
                  reference::inside_triangle(o[0], o[1], o[2], o[3]));
    }
}

TEST(IsEarDeathTest, ConvexCornerWithoutOtherPositionsInsideAndCheckedArguments) {
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
    EXPECT_DEATH(is_ear(repeat, {0, 1, 2}, 0, 1, 3), "w < size");
    EXPECT_DEATH(is_ear(repeat, {0, 1, 2}, 5, 1, 2), "u < size");
    EXPECT_DEATH(is_ear(repeat, {0, 1, 9}, 0, 1, 2), "index < contour.size()");
}

TEST(Triangulate, PinnedResultsAppendedToThePriorContent) {
    const std::pair<outline, const char*> cases[] = {
        {{{0, 0}, {1, 0}, {1, 1}, {0, 1}}, " 7 3 0 1 1 2 3"},
        {{{0, 1}, {1, 1}, {1, 0}, {0, 0}}, " 7 2 3 0 0 1 2"},  // clockwise
        // The closing repetition is kept, the first point dropped; spikes and NaN neighbours go.
        {{{0, 0}, {1, 0}, {1, 1}, {0, 1}, {0, 0}}, " 7 4 1 2 2 3 4"},
        {{{0, 0}, {2, 0}, {2, 1}, {3, 1}, {2, 1}, {0, 1}}, " 7 5 0 1 1 2 5"},
        {{{0, 0}, {1, 0}, {nan, 1}, {0, 1}}, " 7"},
        // A bow tie (area 0, walked in reverse): one lobe is clipped, then it turns clockwise.
        {{{0, 0}, {4, 4}, {4, 0}, {0, 4}}, "Triangulation error: bad polygon 7 1 2 3"}};
    for (const auto& [o, expected] : cases) EXPECT_EQ(run(::triangulate, o), expected);
}

struct family {
    const char* name;
    std::size_t cases;
    outline (*make)(generator&, std::size_t);
};

// Each outline is also tried in reverse order (odd cases).
const family families[] = {
    {"convex, star-shaped or damaged", 4000,
     [](generator& g, std::size_t i) {
         // Every tenth outline large enough for several rebuilds of the tree.
         const std::size_t n = i % 10 == 9 ? 200 + g.below(400) : 3 + g.below(120);
         outline o =
             g.star(n, i % 3 ? g.uniform(0.0, 0.9) : 0.0, i % 4 ? 0.0 : g.uniform(1.0, 8.0));
         if (i % 8 > 2) g.damage(o);
         return o;
     }},
    {"self-intersecting", 1500,
     [](generator& g, std::size_t i) {
         const std::size_t n = i % 10 == 9 ? 100 + g.below(200) : 3 + g.below(60);
         outline o = g.star(n, 1.0, i % 4 < 2 ? g.uniform(0.5, 3.0) : 0.0, true);
         if (g.below(3) == 0) g.damage(o);
         return o;
     }},
    {"points on diagonals and edge lines", 800,
     [](generator& g, std::size_t i) {
         const std::size_t n = 30 + g.below(i % 10 == 9 ? 600 : 150);
         outline o = g.star(n, g.uniform(0.0, 0.5), i % 3 == 0 ? g.uniform(1.0, 20.0) : 0.0);
         g.add_points_on_lines(o, 1 + g.below(n / 8));
         return o;
     }},
    {"combs and extreme scales", 600,
     [](generator& g, std::size_t i) {
         const double scales[] = {1.0,   1e-300,  1e-160,  1e-150, 1e150,
                                  1e160, 0x1p399, 0x1p401, 1e300};
         outline o = i % 4 < 2 ? g.comb(5 + g.below(60))
                               : g.star(20 + g.below(200), g.uniform(0.0, 0.9), 0.0);
         if (i % 3 == 0) g.damage(o);
         const double s = scales[i % 9], sy = i % 8 == 1 ? s * 1e-9 : s;  // thin ears too
         for (vector2d& p : o) p = vector2d(p.x * s, p.y * sy);
         return o;
     }},
    // Thousands of corners, so that ear boxes cross high boundaries of the search grid; snapped
    // (ties on ear edges), or a tiny star with a far spike (the searches give up, the tree
    // answers).
    {"large, snapped or clustered", 8,
     [](generator& g, std::size_t i) {
         outline o = g.star(1500 + g.below(2500), g.uniform(0.0, 0.3), i % 4 == 0 ? 64.0 : 0.0);
         if (i % 4 == 1) g.damage(o);
         if (i % 4 == 2) {
             for (vector2d& p : o) p = vector2d(p.x * 1e-7, p.y * 1e-7);
             const auto far = std::max_element(o.begin(), o.end(),
                                               [](vector2d a, vector2d b) { return a.x < b.x; });
             *far = vector2d(1e3, 0.0);
             o.insert(far + 1, vector2d(1e3, 1e3));
         }
         return o;
     }},
    // The first ear a (last), b, c has a sharp tip b, and a corner lies a few units of rounding
    // past b on the line from c through b: outside the ear's bounding box, but the inside test
    // as computed often holds for it, which only the rounding margins of the search box catch.
    {"corners just past a sharp ear tip", 64,
     [](generator& g, std::size_t i) {
         const double size = i % 4 < 2 ? 64.0 : 0x1p20, turn = two_pi * (i % 4 + 0.5) / 4;
         const vector2d b(size * std::cos(turn), size * std::sin(turn));
         const double back = turn + two_pi / 2 - g.uniform(0.015, 0.017);
         const vector2d c = b + vector2d(std::cos(back), std::sin(back)) * size, d = b - c;
         outline o = {b, c};
         for (int k = 1; k < 24; ++k) {
             const double t = turn + 0.3 + (two_pi - 0.6) * k / 24;
             o.push_back(vector2d(std::cos(t), std::sin(t)) * (3.2 * size));
             if (k == 12) o.push_back(b + d * (g.uniform(18, 40) * 0x1p-53 * size / d.length()));
         }
         o.emplace_back(0.0, 0.0);
         return o;
     }},
};

void PrintTo(const family& f, std::ostream* os) { *os << f.name; }

class TriangulateOracle : public ::testing::TestWithParam<family> {};

// Each family from two threads at once, each keeping its working memory from call to call.
TEST_P(TriangulateOracle, SameTrianglesAndErrors) {
    const family& f = GetParam();
    const auto check = [&f](std::uint64_t seed) {
        generator g(seed);
        for (std::size_t i = 0; i < f.cases; ++i) {
            outline o = f.make(g, i);
            if (i % 2 == 1) std::reverse(o.begin(), o.end());
            ASSERT_EQ(run(::triangulate, o), run(reference::triangulate, o))
                << f.name << " outline " << i << " of " << o.size() << " points";
        }
    };
    std::thread other(check, static_cast<std::uint64_t>(&f - families) + 100);
    check(static_cast<std::uint64_t>(&f - families) + 1);
    other.join();
}

INSTANTIATE_TEST_SUITE_P(Families, TriangulateOracle, ::testing::ValuesIn(families));

}  // namespace
