// triangulate() against support/reference_triangulate.h on thousands of generated outlines
// (grids, repeats, spikes, NaN, extreme scales, thousands of corners), also from several
// threads at once: identical result vectors and exceptions.
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

class generator {
public:
    explicit generator(std::uint64_t seed) : m_rng(seed) {}
    double uniform(double lo = 0.0, double hi = 1.0) {
        return lo + (hi - lo) * (static_cast<double>(m_rng() >> 11) * 0x1p-53);
    }
    std::size_t below(std::size_t n) { return static_cast<std::size_t>(m_rng() % n); }
    bool chance(double p) { return uniform() < p; }
    // Every tenth outline large enough for several rebuilds of the tree.
    std::size_t size(std::size_t i) { return i % 10 == 9 ? 200 + below(400) : 3 + below(120); }
    static double snap(double v, double grid) { return grid > 0 ? std::round(v * grid) / grid : v; }

    // Convex with `spread` 0, else star-shaped; `grid` > 0 rounds to multiples of 1 / grid.
    outline star(std::size_t n, double spread, double grid) {
        std::vector<double> angles(n);
        for (double& a : angles) a = uniform(0.0, 6.283185307179586);
        std::sort(angles.begin(), angles.end());
        outline o;
        for (double a : angles) {
            const double r = 10.0 * (1.0 - spread * uniform());
            o.emplace_back(snap(r * std::cos(a), grid), snap(r * std::sin(a), grid));
        }
        return o;
    }
    // Random points in a box: self-intersecting almost always.
    outline scatter(std::size_t n, double grid) {
        outline o;
        for (std::size_t i = 0; i < n; ++i)
            o.emplace_back(snap(uniform(-10, 10), grid), snap(uniform(-10, 10), grid));
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
    static vector2d lerp(vector2d a, vector2d b, double t) {
        return vector2d(a.x + (b.x - a.x) * t, a.y + (b.y - a.y) * t);
    }
    static void insert(outline& o, std::size_t at, vector2d p) {
        o.insert(o.begin() + static_cast<std::ptrdiff_t>(at), p);
    }
    // Points on the diagonals (the third side of candidate ears) and edge lines.
    void add_points_on_lines(outline& o, std::size_t count) {
        for (std::size_t m = 0; m < count; ++m) {
            const std::size_t i = below(o.size());
            const vector2d p = lerp(o[i], o[(i + 1 + below(2)) % o.size()], uniform(-0.5, 1.5));
            insert(o, below(o.size()), p);
        }
    }
    void damage(outline& o) {
        const double bad[] = {std::numeric_limits<double>::quiet_NaN(),
                              std::numeric_limits<double>::infinity(),
                              -std::numeric_limits<double>::infinity()};
        for (std::size_t m = 0, count = 1 + below(4); m < count && !o.empty(); ++m) {
            const std::size_t i = below(o.size()), j = below(o.size());
            const std::size_t kind = below(10);
            const vector2d p = o[i], q = o[(i + 1) % o.size()];
            if (kind == 0) insert(o, i, p);  // a repeated point
            if (kind == 1)                   // a collinear run on an edge
                for (std::size_t k = 1 + below(3), s = k; s >= 1; --s)
                    insert(o, i + 1, lerp(p, q, static_cast<double>(s) / (k + 1.0)));
            if (kind == 2) insert(o, j, p);  // a corner repeated elsewhere
            if (kind == 3)                   // a spike: out and back to the corner
                for (vector2d s : {p, vector2d(p.x + uniform(-3, 3), p.y + uniform(-3, 3))})
                    insert(o, i + 1, s);
            if (kind == 4) (chance(0.5) ? o[i].x : o[i].y) = bad[below(3)];
            if (kind == 5) insert(o, j, lerp(p, q, 0.5));  // on another edge
            if (kind == 6) insert(o, j, lerp(p, o[(i + 2) % o.size()], uniform()));  // a diagonal
            if (kind == 7) insert(o, j, lerp(p, q, chance(0.5) ? uniform(-3, 0) : uniform(1, 4)));
            if (kind == 8) o.erase(o.begin() + static_cast<std::ptrdiff_t>(i));
            if (kind == 9) o.push_back(o.front());  // the first point repeated at the end
        }
    }

private:
    std::mt19937_64 m_rng;
};

// The error, then everything in the result (which held 4242, 17 before).
std::string run(void (*fn)(const outline&, std::vector<unsigned>&), const outline& o) {
    std::vector<unsigned> result = {4242, 17};
    std::string s;
    try {
        fn(o, result);
    } catch (const std::runtime_error& e) {
        s = e.what();
    }
    for (unsigned i : result) s += " " + std::to_string(i);
    return s;
}

struct family {
    const char* name;
    std::size_t cases;
    outline (*make)(generator&, std::size_t);
};

// Each outline is also tried in reverse order (odd cases).
const family families[] = {
    {"convex and star-shaped", 1500,
     [](generator& g, std::size_t i) {
         const double spread = i % 3 == 0 ? 0.0 : g.uniform(0.0, 0.9);
         return g.star(g.size(i), spread, i % 4 == 0 ? g.uniform(1.0, 8.0) : 0.0);
     }},
    {"damaged", 2500,
     [](generator& g, std::size_t i) {
         const std::size_t n = g.size(i);
         outline o = g.star(n, g.uniform(0.0, 0.9), i % 4 == 0 ? g.uniform(1.0, 6.0) : 0.0);
         g.damage(o);
         return o;
     }},
    {"self-intersecting", 1500,
     [](generator& g, std::size_t i) {
         const std::size_t n = i % 10 == 9 ? 100 + g.below(200) : 3 + g.below(60);
         outline o = g.scatter(n, i % 4 < 2 ? g.uniform(0.5, 3.0) : 0.0);
         if (g.chance(0.3)) g.damage(o);
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
    // Thousands of corners, so that ear boxes cross the high boundaries of the search grid;
    // snapped (ties on ear edges), or a tiny star with a far spike, whose corners then share a
    // few grid cells (the searches give up and the tree answers).
    {"large, snapped or clustered", 8,
     [](generator& g, std::size_t i) {
         const std::size_t n = 1500 + g.below(2500);
         outline o = g.star(n, g.uniform(0.0, 0.3), i % 4 == 0 ? 64.0 : 0.0);
         if (i % 4 == 1) g.damage(o);
         if (i % 4 == 2) {
             for (vector2d& p : o) p = vector2d(p.x * 1e-7, p.y * 1e-7);
             const auto far = std::max_element(o.begin(), o.end(),
                                               [](vector2d a, vector2d b) { return a.x < b.x; });
             *far = vector2d(1e3, 0.0);
             g.insert(o, static_cast<std::size_t>(far - o.begin()) + 1, vector2d(1e3, 1e3));
         }
         return o;
     }},
};

void PrintTo(const family& f, std::ostream* os) { *os << f.name; }

class TriangulateOracle : public ::testing::TestWithParam<family> {};

TEST_P(TriangulateOracle, SameTrianglesAndErrors) {
    const family& f = GetParam();
    generator g(static_cast<std::uint64_t>(&f - families) + 1);
    for (std::size_t i = 0; i < f.cases; ++i) {
        outline o = f.make(g, i);
        if (i % 2 == 1) std::reverse(o.begin(), o.end());
        ASSERT_EQ(run(::triangulate, o), run(reference::triangulate, o))
            << f.name << " outline " << i << " of " << o.size() << " points";
    }
}

INSTANTIATE_TEST_SUITE_P(Families, TriangulateOracle, ::testing::ValuesIn(families));

// Each thread keeps its working memory between calls: outlines of changing sizes, some that
// throw, from several threads at once give the results of separate fresh calls.
TEST(TriangulateThreads, ConcurrentCallsOfChangingSizes) {
    generator g(99);
    std::vector<outline> outlines;
    std::vector<std::string> expected;
    for (std::size_t i = 0; i < 24; ++i) {
        outlines.push_back(i % 3 == 2 ? g.scatter(40, 0.0) : g.star(i % 2 ? 30 : 900, 0.5, 0.0));
        expected.push_back(run(reference::triangulate, outlines.back()));
    }
    std::vector<std::string> got[3];
    std::vector<std::thread> threads;
    for (std::size_t t = 0; t < 3; ++t)
        threads.emplace_back([&, t] {
            for (std::size_t k = 0; k < outlines.size(); ++k)
                got[t].push_back(run(::triangulate, outlines[(k + 7 * t) % outlines.size()]));
        });
    for (std::thread& t : threads) t.join();
    for (std::size_t t = 0; t < 3; ++t)
        for (std::size_t k = 0; k < outlines.size(); ++k)
            EXPECT_EQ(got[t][k], expected[(k + 7 * t) % outlines.size()]) << t << " " << k;
}

}  // namespace
