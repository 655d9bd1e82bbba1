// Checks of closed meshes shared by the test programs.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>

#include "facet/ifs.h"

namespace facet_test {

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

// Every half-edge has a twin running the other way (the surface is closed and consistently
// wound); with outward_normals, every face's stored normal is its unit winding normal and the
// volume is positive: together, every normal points outwards.
inline ::testing::AssertionResult is_closed(const indexedfaceset& fs,
                                            bool outward_normals = false) {
    if (fs.num_edges() != 3 * fs.num_faces()) return ::testing::AssertionFailure() << "no edges";
    for (std::uint32_t e = 0; e < fs.num_edges(); ++e) {
        const halfedge& h = fs.get_edge(e);
        if (!h.m_twinedge || h.m_twinedge->vertex != h.next->vertex)
            return ::testing::AssertionFailure() << "edge " << e << " has no opposite twin";
    }
    for (std::uint32_t i = 0; outward_normals && i < fs.num_faces(); ++i) {
        const face& f = fs.get_face(i);
        const vector3d p0 = fs.get_vertex(f.vertex[0]);
        vector3d n = cross(fs.get_vertex(f.vertex[1]) - p0, fs.get_vertex(f.vertex[2]) - p0);
        n.normalize();
        if ((n - f.normal).length() > 1e-12)
            return ::testing::AssertionFailure() << "face " << i << " normal not its winding";
    }
    if (outward_normals && !(volume(fs) > 0.0))
        return ::testing::AssertionFailure() << "volume " << volume(fs);
    return ::testing::AssertionSuccess();
}

inline ::testing::AssertionResult is_outward_solid(const indexedfaceset& fs) {
    return is_closed(fs, true);
}

}  // namespace facet_test
