// Checks of closed meshes shared by the test programs.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>

#include "facet/ifs.h"

namespace facet_test {

// The signed volume: the sum of p0 · (p1 × p2) / 6 over the faces.
inline double volume(const indexedfaceset& fs) {
    double sum = 0.0;
    for (std::uint32_t i = 0; i < fs.num_faces(); ++i) {
        const face& f = fs.get_face(i);
        sum += dot(fs.get_vertex(f.vertex[0]),
                   cross(fs.get_vertex(f.vertex[1]), fs.get_vertex(f.vertex[2])));
    }
    return sum / 6.0;
}

// Every half-edge has a twin running the other way, every stored normal is its face's unit
// winding normal and the volume is positive: a closed surface with every normal outwards.
inline ::testing::AssertionResult is_outward_solid(const indexedfaceset& fs) {
    if (fs.num_edges() != 3 * fs.num_faces()) return ::testing::AssertionFailure() << "no edges";
    for (std::uint32_t e = 0; e < fs.num_edges(); ++e) {
        const halfedge& h = fs.get_edge(e);
        if (!h.m_twinedge || h.m_twinedge->vertex != h.next->vertex)
            return ::testing::AssertionFailure() << "edge " << e << " has no opposite twin";
    }
    for (std::uint32_t i = 0; i < fs.num_faces(); ++i) {
        const face& f = fs.get_face(i);
        const vector3d p0 = fs.get_vertex(f.vertex[0]);
        vector3d n = cross(fs.get_vertex(f.vertex[1]) - p0, fs.get_vertex(f.vertex[2]) - p0);
        n.normalize();
        if ((n - f.normal).length() > 1e-12)
            return ::testing::AssertionFailure() << "face " << i << " normal not its winding";
    }
    if (!(volume(fs) > 0.0)) return ::testing::AssertionFailure() << "volume " << volume(fs);
    return ::testing::AssertionSuccess();
}

}  // namespace facet_test
