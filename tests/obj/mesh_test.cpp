// obj2mesh: triangles and quads, styles per material, rejected faces, and a model drawn by a
// custom object through the global mesh map.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "facet/custom_mesh.h"
#include "facet/ifs.h"
#include "facet/obj_import.h"
#include "facet/primitives.h"
#include "obj_test_support.h"

using graphics::brush;
using graphics::color;
using graphics::custom_mesh;
using graphics::custom_mesh_face;
using graphics::pen;
using obj_import::obj_info;
using obj_test::parse;

namespace {

// A unit square as a quad in material "red" and a triangle over it in "blue", then a triangle
// in "red" again; the file's y axis points up.
const std::string two_materials =
    "mtllib two.mtl\n"
    "v 0 0 0\nv 1 0 0\nv 1 0 1\nv 0 0 1\nv 0 1 0\n"
    "usemtl red\nf 1 2 3 4\n"
    "usemtl blue\nf 1 5 2\n"
    "usemtl red\nf 4 5 1\n";

custom_mesh converted(const obj_info& info, const std::string& name = "model") {
    custom_mesh out;
    obj_import::obj2mesh(info, name, out);
    return out;
}

}  // namespace

TEST(ObjToMesh, TrianglesQuadsAndOneStylePerMaterial) {
    const obj_info info = parse(two_materials);
    const custom_mesh m = converted(info);
    EXPECT_EQ(m.get_name(), "model");
    EXPECT_EQ(m.get_vertices(), info.vertices);
    // The quad becomes the fan (0, 1, 2), (0, 2, 3); styles are the material indices.
    EXPECT_EQ(m.get_faces(), (std::vector<custom_mesh_face>{
                                 {0, 1, 2, 1}, {0, 2, 3, 1}, {0, 4, 1, 2}, {3, 4, 0, 1}}));
    ASSERT_EQ(m.num_styles(), 3u);
    const std::vector<std::string> names = {"__default__", "red", "blue"};
    for (std::uint32_t s = 0; s < 3; ++s) {
        EXPECT_EQ(m.get_style(s).name, names[s]);
        EXPECT_EQ(m.get_style(s).brush, brush(color(255, 255, 255)));
        EXPECT_EQ(m.get_style(s).pen, pen(color(0, 0, 0)));
    }
    // Material indices are copied as they are, even when they name no material.
    obj_info odd = info;
    odd.faces[2].material = 17;
    EXPECT_EQ(converted(odd).get_face(3).style, 17);  // the quad took two
}

TEST(ObjToMesh, BadFacesThrowAndLeaveTheTargetAlone) {
    const obj_info good = parse(two_materials);
    struct bad_case {
        std::size_t face;
        int corner;
        int vertex;
        int corner_count;
        const char* message;
    };
    const std::vector<bad_case> cases = {
        {1, 2, 5, 3, "obj2mesh: face 1: corner 2 has vertex index 5, outside the 5 vertices"},
        {0, 3, -1, 4, "obj2mesh: face 0: corner 3 has vertex index -1, outside the 5 vertices"},
        {2, 0, 0, 2, "obj2mesh: face 2: 2 corners, 3 or 4 are needed"},
        {2, 0, 0, 5, "obj2mesh: face 2: 5 corners, 3 or 4 are needed"},
    };
    for (const bad_case& c : cases) {
        obj_info info = good;
        info.faces[c.face].corners[static_cast<std::size_t>(c.corner)].vertex = c.vertex;
        info.faces[c.face].corner_count = c.corner_count;
        custom_mesh out = converted(good, "kept");
        const custom_mesh before = out;
        try {
            obj_import::obj2mesh(info, "broken", out);
            ADD_FAILURE() << "no exception for " << c.message;
        } catch (const obj_import::bad_face& e) {
            EXPECT_STREQ(e.what(), c.message);
            EXPECT_EQ(e.face_index(), c.face);
        }
        EXPECT_EQ(out.get_name(), "kept");
        EXPECT_EQ(out.get_faces(), before.get_faces());
        EXPECT_EQ(out.num_styles(), before.num_styles());
    }
    // What the reader keeps from a hostile file is rejected here, not when it is drawn.
    EXPECT_THROW(converted(parse("v 0 0 0\nf 1 1 2\n")), obj_import::bad_face);
    EXPECT_THROW(converted(parse("v 0 0 0\nf 1 1 1 # note\n")), std::runtime_error);
    const custom_mesh empty = converted(parse(""), "empty");
    EXPECT_EQ(empty.num_faces(), 0u);
    EXPECT_EQ(empty.num_styles(), 1u);
}

TEST(ObjToMesh, ImportedModelIsDrawnByACustomObject) {
    obj_info info = parse(two_materials);
    custom_mesh mesh;
    obj_import::obj2mesh(info, "imported", mesh);
    graphics::get_global_mesh_map().add_mesh(std::move(mesh));

    primitives::custom object("imported");
    object.set_brush(brush(color(9, 9, 9)));
    const indexedfaceset& fs = object.get_mesh();
    ASSERT_EQ(fs.num_vertices(), 5u);
    ASSERT_EQ(fs.num_faces(), 4u);
    ASSERT_EQ(fs.num_styles(), 3u);
    EXPECT_EQ(fs.styles()[1].name, "red");
    EXPECT_EQ(fs.styles()[2].name, "blue");
    const std::vector<int> styles = {1, 1, 2, 1};
    for (std::uint32_t f = 0; f < 4; ++f) {
        EXPECT_EQ(fs.get_face(f).style, styles[f]);
        EXPECT_EQ(fs.get_face(f).brush, brush(color(255, 255, 255)));
        EXPECT_EQ(fs.get_face(f).pen, pen(color(0, 0, 0)));
    }
    // The file's up axis y becomes -z: the apex lies at z = 0, the square at z = 10000 with its
    // normal pointing away from the apex.
    EXPECT_EQ(fs.get_vertex(4), vector3d(0, 0, 0));
    EXPECT_EQ(fs.get_vertex(2), vector3d(10000, 10000, 10000));
    EXPECT_EQ(fs.get_face(0).normal, vector3d(0, 0, 1));
    graphics::get_global_mesh_map().clear();
}
