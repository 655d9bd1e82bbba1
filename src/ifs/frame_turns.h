// The turn of a corner's tangent frame with its smoothed normal, for two corners at once.
#pragma once

#include <cmath>

#include "facet/geometry.h"
#include "facet/ifs.h"
#include "ifs/unit_vectors.h"

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace facet::detail {

/// The x, y and z of two vectors, one in each lane.
struct vector_pair {
    double_pair x, y, z;

    vector_pair(const vector3d& a, const vector3d& b)
        : x(double_pair{a.x, b.x}), y(double_pair{a.y, b.y}), z(double_pair{a.z, b.z}) {}
    vector_pair(double_pair x_, double_pair y_, double_pair z_) : x(x_), y(y_), z(z_) {}
    vector3d lane(int i) const { return vector3d(x[i], y[i], z[i]); }
};

/// The square roots of both lanes, each the bits std::sqrt gives (both are correctly rounded).
inline double_pair square_roots(double_pair v) {
#ifdef __SSE2__
    return _mm_sqrt_pd(v);
#else
    return double_pair{std::sqrt(v[0]), std::sqrt(v[1])};
#endif
}

/// For each lane, what smoothing does to the face's frame of a corner that turns: the rotation
/// matrix of make_rotation_matrix(r, angle, axis) with axis = cross(face normal, smoothed
/// normal), given by the sine and cosine of half the angle, applied to the tangent and the
/// bitangent as transform_vector(r, p) does, and both normalised as vector3d::normalize does.
/// Every lane takes the arithmetic of the one-corner formulas in their order, so its bits are
/// theirs: r's last row and column are (0, 0, 0, 1), so the projective weight of a finite p is 1
/// and dividing by it changes no bit (it is divided only when a lane's weight is not 1).
class frame_turns {
public:
    /// `normal`: the faces' normals; `smoothed`: the corners' normals; `sine`, `cosine`: sin and
    /// cos of deg_to_rad(angle * 0.5).
    frame_turns(const vector_pair& normal, const vector_pair& smoothed, double_pair sine,
                double_pair cosine) {
        const double_pair ax = normal.y * smoothed.z - normal.z * smoothed.y;
        const double_pair ay = normal.z * smoothed.x - normal.x * smoothed.z;
        const double_pair az = normal.x * smoothed.y - normal.y * smoothed.x;
        const double_pair k = sine / square_roots(ax * ax + ay * ay + az * az);
        const double_pair w = cosine;
        const double_pair x = k * ax;
        const double_pair y = k * ay;
        const double_pair z = k * az;
        m[0][0] = 1.0 - 2.0 * (y * y + z * z);
        m[0][1] = 2.0 * (x * y - w * z);
        m[0][2] = 2.0 * (x * z + w * y);
        m[1][0] = 2.0 * (x * y + w * z);
        m[1][1] = 1.0 - 2.0 * (x * x + z * z);
        m[1][2] = 2.0 * (y * z - w * x);
        m[2][0] = 2.0 * (x * z - w * y);
        m[2][1] = 2.0 * (y * z + w * x);
        m[2][2] = 1.0 - 2.0 * (x * x + y * y);
    }

    /// The turned and normalised tangents and bitangents: lane i of `tangent` and `bitangent`
    /// go to tangent_out[i] and bitangent_out[i].
    void turn(const vector_pair& tangent, const vector_pair& bitangent, vector3d tangent_out[2],
              vector3d bitangent_out[2]) const {
        const vector_pair t = apply(tangent);
        const vector_pair b = apply(bitangent);
        const double_pair lt = square_roots(t.x * t.x + t.y * t.y + t.z * t.z);
        const double_pair lb = square_roots(b.x * b.x + b.y * b.y + b.z * b.z);
        if (lt[0] > 1e-12 && lt[1] > 1e-12 && lb[0] > 1e-12 && lb[1] > 1e-12) {
            const vector_pair tn(t.x / lt, t.y / lt, t.z / lt);
            const vector_pair bn(b.x / lb, b.y / lb, b.z / lb);
            for (int i = 0; i < 2; ++i) {
                tangent_out[i] = tn.lane(i);
                bitangent_out[i] = bn.lane(i);
            }
            return;
        }
        for (int i = 0; i < 2; ++i) {
            tangent_out[i] = t.lane(i);
            bitangent_out[i] = b.lane(i);
            normalize(tangent_out[i], bitangent_out[i]);
        }
    }

private:
    vector_pair apply(const vector_pair& p) const {
        double_pair x = m[0][0] * p.x + m[0][1] * p.y + m[0][2] * p.z + 0.0;
        double_pair y = m[1][0] * p.x + m[1][1] * p.y + m[1][2] * p.z + 0.0;
        double_pair z = m[2][0] * p.x + m[2][1] * p.y + m[2][2] * p.z + 0.0;
        const double_pair w = 0.0 * p.x + 0.0 * p.y + 0.0 * p.z + 1.0;
        if (!(w[0] == 1.0 && w[1] == 1.0)) {  // dividing a lane by 1 changes no bit
            x /= w;
            y /= w;
            z /= w;
        }
        return vector_pair(x, y, z);
    }

    double_pair m[3][3];
};

}  // namespace facet::detail
