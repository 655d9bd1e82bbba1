// Face sets and checks shared by the ifs tests.
#pragma once

#include <gtest/gtest.h>

#include <exception>
#include <sstream>
#include <string>
#include <vector>

#include "facet/ifs.h"
#include "facet/primitives.h"
#include "support/solid_checks.h"

namespace ifs_test {

using facet_test::is_outward_solid;
using facet_test::volume;

// The vertices and faces (none: one per three vertices), with flat normals and half-edges.
inline void set_mesh(indexedfaceset& fs, std::vector<vector3d> vertices,
                     std::vector<face> faces = {}) {
    fs.vertices().resize(static_cast<std::uint32_t>(vertices.size()));
    for (std::uint32_t i = 0; i < vertices.size(); ++i) fs.vertices()[i] = vertices[i];
    for (std::uint32_t i = 0, none = faces.empty(); none && i + 2 < vertices.size(); i += 3)
        faces.emplace_back(i, i + 1, i + 2);
    fs.faces().resize(static_cast<std::uint32_t>(faces.size()));
    for (std::uint32_t i = 0; i < faces.size(); ++i) fs.faces()[i] = faces[i];
    fs.compute_normals();
    fs.construct_halfedge_data();
}

// One style for every face, box texture coordinates and flat frames.
inline void texture(indexedfaceset& fs) {
    for (face& f : fs.faces()) f.style = 0;
    fs.styles().resize(1);
    fs.gen_texcoords_box();
    fs.compute_tangent_space();
}

inline int drawn_edges(const indexedfaceset& fs) {
    int n = 0;
    for (std::uint32_t e = 0; e < fs.num_edges(); ++e) n += fs.get_edge(e).drawn();
    return n;
}

// Records first .. first + count − 1 of n, each written by put(stream, i), as "a b|a b|...".
template <class Put>
std::string join(std::uint32_t n, std::uint32_t first, std::uint32_t count, Put put) {
    std::ostringstream s;
    for (std::uint32_t i = first; i < n && i - first < count; ++i)
        put(s << (i > first ? "|" : ""), i);
    return s.str();
}
inline std::string vertices_of(const indexedfaceset& fs, std::uint32_t first = 0,
                               std::uint32_t count = ~0u) {
    return join(fs.num_vertices(), first, count, [&](std::ostream& s, std::uint32_t i) {
        s << fs.get_vertex(i).x << " " << fs.get_vertex(i).y << " " << fs.get_vertex(i).z;
    });
}
inline std::string faces_of(const indexedfaceset& fs, std::uint32_t first = 0,
                            std::uint32_t count = ~0u) {
    return join(fs.num_faces(), first, count, [&](std::ostream& s, std::uint32_t i) {
        s << fs.get_face(i).vertex[0] << " " << fs.get_face(i).vertex[1] << " "
          << fs.get_face(i).vertex[2];
    });
}
inline std::string lines_of(const indexedfaceset& fs) {
    return join(fs.num_lines(), 0, ~0u, [&](std::ostream& s, std::uint32_t i) {
        s << fs.get_line(i).start << " " << fs.get_line(i).end;
    });
}
// The texture coordinates of the corners of faces first .. first + count − 1.
inline std::string coords_of(const indexedfaceset& fs, std::uint32_t first = 0,
                             std::uint32_t count = ~0u) {
    return join(3 * fs.num_faces(), 3 * first, 3 * count, [&](std::ostream& s, std::uint32_t c) {
        const texcoord& t = fs.get_texcoord(fs.get_face(c / 3).texcoord[c % 3]);
        s << t.u << " " << t.v;
    });
}

// The message the object's build throws (the object stays dirty), or the faces built.
inline std::string build_error(const primitives::basic_object& o) {
    try {
        return "built " + std::to_string(o.get_mesh().num_faces()) + " faces";
    } catch (const std::exception& e) {
        EXPECT_TRUE(o.is_dirty());
        return e.what();
    }
}

}  // namespace ifs_test
