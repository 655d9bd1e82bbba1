// The textbook ear clipper (index array, every point tested against every candidate ear), the
// oracle for triangulate() in tests/plane, fuzz/ and bench/. It shares no code with the library.
#pragma once

#include <cmath>
#include <stdexcept>
#include <vector>

#include <facet/geometry.h>

namespace reference {

inline double cross2(double ax, double ay, double bx, double by) { return ax * by - ay * bx; }

inline double area(const std::vector<vector2d>& c) {
    const int n = static_cast<int>(c.size());
    if (n < 3) return 0.0;
    double a = 0.0;
    for (int p = n - 1, q = 0; q < n; p = q++) a += cross2(c[p].x, c[p].y, c[q].x, c[q].y);
    return a * 0.5;
}

// Counter-clockwise triangles hold their edges and corners; NaN is never inside.
inline bool inside_triangle(const vector2d& p, const vector2d& a, const vector2d& b,
                            const vector2d& c) {
    return cross2(c.x - b.x, c.y - b.y, p.x - b.x, p.y - b.y) >= 0.0 &&
           cross2(a.x - c.x, a.y - c.y, p.x - c.x, p.y - c.y) >= 0.0 &&
           cross2(b.x - a.x, b.y - a.y, p.x - a.x, p.y - a.y) >= 0.0;
}

inline void triangulate(const std::vector<vector2d>& c, std::vector<unsigned>& result) {
    const unsigned n = static_cast<unsigned>(c.size());
    const bool reversed = !(reference::area(c) > 0.0);
    std::vector<unsigned> V, kept;
    for (unsigned i = 0; i < n; ++i) V.push_back(reversed ? n - 1 - i : i);
    // Repeated points: a point equal to the last one kept is dropped.
    for (unsigned i = 0; i < n; ++i) {
        const vector2d p = c[V[i]], last = kept.empty() ? c[V[n - 1]] : c[kept.back()];
        if (!(p.x == last.x && p.y == last.y)) kept.push_back(V[i]);
    }
    V.swap(kept);
    kept.clear();
    // Collinear points (straight on or doubling back), each judged against the list before.
    const unsigned m = static_cast<unsigned>(V.size());
    for (unsigned i = 0; m >= 3 && i < m; ++i) {
        const vector2d a = c[V[(i + m - 1) % m]], b = c[V[i]], d = c[V[(i + 1) % m]];
        const double l1 = std::sqrt((b.x - a.x) * (b.x - a.x) + (b.y - a.y) * (b.y - a.y));
        const double l2 = std::sqrt((d.x - b.x) * (d.x - b.x) + (d.y - b.y) * (d.y - b.y));
        const double dp =
            ((b.x - a.x) / l1) * ((d.x - b.x) / l2) + ((b.y - a.y) / l1) * ((d.y - b.y) / l2);
        if (std::fabs(std::fabs(dp) - 1.0) >= 0.0001) kept.push_back(V[i]);
    }
    if (m >= 3) V.swap(kept);

    int nv = static_cast<int>(V.size());
    int count = 2 * nv;
    for (int v = nv - 1; nv > 2;) {
        if (0 >= (count--)) throw std::runtime_error("Triangulation error: bad polygon");
        const int u = nv <= v ? 0 : v;
        v = nv <= u + 1 ? 0 : u + 1;
        const int w = nv <= v + 1 ? 0 : v + 1;
        const vector2d P = c[V[u]], Q = c[V[v]], R = c[V[w]];
        bool ear = !(cross2(Q.x - P.x, Q.y - P.y, R.x - P.x, R.y - P.y) <= 0.0);  // NaN passes
        for (int k = 0; ear && k < nv; ++k)
            if (k != u && k != v && k != w && reference::inside_triangle(c[V[k]], P, Q, R))
                ear = false;
        if (!ear) continue;
        for (int k : reversed ? std::vector<int>{w, v, u} : std::vector<int>{u, v, w})
            result.push_back(V[k]);
        V.erase(V.begin() + v);
        count = 2 * --nv;
    }
}

}  // namespace reference
