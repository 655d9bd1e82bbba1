// Checks for closed meshes shared by the test programs: paired half-edges, the enclosed volume
// and the direction of the face normals.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>

#include "facet/ifs.h"

namespace facet_test {

// Every half-edge has a twin that runs the other way (the surface is closed and consistently
// wound).
inline ::testing::AssertionResult is_closed(const indexedfaceset& fs) {
    if (fs.num_edges() != 3 * fs.num_faces())
        return ::testing::AssertionFailure() << "no connectivity";
    for (std::uint32_t e = 0; e < fs.num_edges(); ++e) {
        const halfedge& h = fs.get_edge(e);
        if (h.m_twinedge == nullptr) return ::testing::AssertionFailure() << "open edge " << e;
        if (h.m_twinedge->vertex != h.next->vertex)
            return ::testing::AssertionFailure() << "twin of " << e << " runs the same way";
    }
    return ::testing::AssertionSuccess();
}

// The signed volume by the divergence theorem: the sum of p0 · (p1 × p2) / 6 over the faces,
// positive when the normals point out of the enclosed volume.
inline double volume(const indexedfaceset& fs) {
    double sum = 0.0;
    for (std::uint32_t i = 0; i < fs.num_faces(); ++i) {
        const face& f = fs.get_face(i);
        sum += dot(fs.get_vertex(f.vertex[0]),
                   cross(fs.get_vertex(f.vertex[1]), fs.get_vertex(f.vertex[2])));
    }
    return sum / 6.0;
}

// Every non-degenerate face's stored normal is its unit winding normal, and the faces are
// closed with a positive volume: together, every normal points outwards.
inline ::testing::AssertionResult is_outward_solid(const indexedfaceset& fs) {
    if (auto closed = is_closed(fs); !closed) return closed;
    for (std::uint32_t i = 0; i < fs.num_faces(); ++i) {
        const face& f = fs.get_face(i);
        const vector3d p0 = fs.get_vertex(f.vertex[0]);
        vector3d n = cross(fs.get_vertex(f.vertex[1]) - p0, fs.get_vertex(f.vertex[2]) - p0);
        n.normalize();
        if ((n - f.normal).length() > 1e-12)
            return ::testing::AssertionFailure() << "face " << i << " normal not its winding";
    }
    const double v = volume(fs);
    if (!(v > 0.0)) return ::testing::AssertionFailure() << "volume " << v;
    return ::testing::AssertionSuccess();
}

}  // namespace facet_test
