// The textbook ear-clipping triangulator, written out step by step: an index array with
// positions u, v, w stepping as u = v mod nv, every remaining point tested against every
// candidate ear, clipped corners erased from the middle of the array. It is the oracle for the
// library's triangulate(), which must produce the same triangles in the same order and fail
// the same way. Self-contained on purpose: it shares no code with the library.
#pragma once

#include <cmath>
#include <stdexcept>
#include <vector>

#include <facet/geometry.h>

namespace reference {

inline double cross2(const vector2d& a, const vector2d& b) { return a.x * b.y - a.y * b.x; }

inline double area(const std::vector<vector2d>& contour) {
    const int n = static_cast<int>(contour.size());
    if (n < 3) return 0.0;
    double a = 0.0;
    for (int p = n - 1, q = 0; q < n; p = q++) a += cross2(contour[p], contour[q]);
    return a * 0.5;
}

inline bool inside_triangle(const vector2d& p, const vector2d& a, const vector2d& b,
                            const vector2d& c) {
    const double c1 = cross2(vector2d(c.x - b.x, c.y - b.y), vector2d(p.x - b.x, p.y - b.y));
    if (!(c1 >= 0.0)) return false;
    const double c2 = cross2(vector2d(a.x - c.x, a.y - c.y), vector2d(p.x - c.x, p.y - c.y));
    if (!(c2 >= 0.0)) return false;
    const double c3 = cross2(vector2d(b.x - a.x, b.y - a.y), vector2d(p.x - a.x, p.y - a.y));
    return c3 >= 0.0;
}

inline bool is_ear(const std::vector<vector2d>& contour, const std::vector<unsigned>& V, unsigned u,
                   unsigned v, unsigned w) {
    const vector2d P = contour[V[u]];
    const vector2d Q = contour[V[v]];
    const vector2d R = contour[V[w]];
    if (cross2(vector2d(Q.x - P.x, Q.y - P.y), vector2d(R.x - P.x, R.y - P.y)) <= 0.0) return false;
    for (unsigned k = 0; k < V.size(); ++k) {
        if (k == u || k == v || k == w) continue;
        if (reference::inside_triangle(contour[V[k]], P, Q, R)) return false;
    }
    return true;
}

inline void triangulate(const std::vector<vector2d>& contour, std::vector<unsigned>& result) {
    const unsigned n = static_cast<unsigned>(contour.size());
    std::vector<unsigned> V(n);
    bool reversed = false;
    if (reference::area(contour) > 0.0) {
        for (unsigned i = 0; i < n; ++i) V[i] = i;
    } else {
        for (unsigned i = 0; i < n; ++i) V[i] = n - 1 - i;
        reversed = true;
    }

    // Repeated points.
    if (n > 0) {
        std::vector<unsigned> kept;
        vector2d last = contour[V[n - 1]];
        for (unsigned i = 0; i < n; ++i) {
            const vector2d p = contour[V[i]];
            if (!(p.x == last.x && p.y == last.y)) {
                kept.push_back(V[i]);
                last = p;
            }
        }
        V = kept;
    }

    // Collinear points.
    if (V.size() >= 3) {
        std::vector<unsigned> kept;
        const unsigned m = static_cast<unsigned>(V.size());
        for (unsigned i = 0; i < m; ++i) {
            const vector2d a = contour[V[(i + m - 1) % m]];
            const vector2d b = contour[V[i]];
            const vector2d c = contour[V[(i + 1) % m]];
            vector2d e1(b.x - a.x, b.y - a.y);
            vector2d e2(c.x - b.x, c.y - b.y);
            const double l1 = std::sqrt(e1.x * e1.x + e1.y * e1.y);
            const double l2 = std::sqrt(e2.x * e2.x + e2.y * e2.y);
            e1 = vector2d(e1.x / l1, e1.y / l1);
            e2 = vector2d(e2.x / l2, e2.y / l2);
            const double d = e1.x * e2.x + e1.y * e2.y;
            if (std::fabs(std::fabs(d) - 1.0) >= 0.0001) kept.push_back(V[i]);
        }
        V = kept;
    }

    int nv = static_cast<int>(V.size());
    int count = 2 * nv;
    for (int v = nv - 1; nv > 2;) {
        if (0 >= (count--)) throw std::runtime_error("Triangulation error: bad polygon");
        int u = v;
        if (nv <= u) u = 0;
        v = u + 1;
        if (nv <= v) v = 0;
        int w = v + 1;
        if (nv <= w) w = 0;
        if (reference::is_ear(contour, V, u, v, w)) {
            if (reversed) {
                result.push_back(V[w]);
                result.push_back(V[v]);
                result.push_back(V[u]);
            } else {
                result.push_back(V[u]);
                result.push_back(V[v]);
                result.push_back(V[w]);
            }
            V.erase(V.begin() + v);
            --nv;
            count = 2 * nv;
        }
    }
}

}  // namespace reference
