// Custom meshes, the mesh map, and the custom, mesh and extrusion objects.
#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "facet/custom_mesh.h"
#include "facet/primitives.h"
#include "objects/fixtures.h"

using graphics::brush;
using graphics::color;
using graphics::custom_mesh;
using graphics::pen;
using graphics::style;

namespace {

custom_mesh named_triangle(const std::string& name) {
    custom_mesh m(name);
    m.add_vertex(vector3d(0, 0, 0));
    m.add_vertex(vector3d(2, 0, 0));
    m.add_vertex(vector3d(0, 4, -1));
    m.add_face(0, 1, 2);
    m.add_style("a", brush(color(1, 2, 3)), pen());
    return m;
}

}  // namespace

TEST(CustomMeshData, IndicesValidityAndSwap) {
    custom_mesh m("chair");
    EXPECT_EQ(m.add_vertex(vector3d(1, 2, 3)), 0u);
    EXPECT_EQ(m.add_vertex(vector3d(4, 5, 6)), 1u);
    EXPECT_EQ(m.add_face(0, 1, 2), 0u);  // indices are not checked when added
    EXPECT_EQ(m.add_face(graphics::custom_mesh_face(1, 0, 2, -1)), 1u);
    EXPECT_EQ(m.add_style("__default__", brush(), pen()), 0);
    EXPECT_EQ(m.add_style(style("red", brush(color(255, 0, 0)), pen())), 1);
    EXPECT_FALSE(m.has_valid_indices());
    m.add_vertex(vector3d(7, 8, 9));
    EXPECT_TRUE(m.has_valid_indices());
    // An index equal to the vertex count is invalid in any corner, also in a mesh object.
    for (int k = 0; k < 3; ++k) {
        std::uint32_t v[3] = {0, 1, 2};
        v[k] = 3;
        custom_mesh cm = named_triangle("t");
        cm.add_face(v[0], v[1], v[2]);
        primitives::mesh pm;
        pm.set_vertices(cm.get_vertices());
        pm.add_triangle(v[0], v[1], v[2]);
        EXPECT_FALSE(cm.has_valid_indices() || pm.has_valid_indices()) << k;
    }

    custom_mesh other("other");
    swap(m, other);
    EXPECT_EQ(m.get_name() + std::to_string(m.num_vertices()), "other0");
    EXPECT_EQ(other.num_faces() + other.num_styles(), 4u);
    other.clear();
    EXPECT_EQ(other.get_name(), "chair");
    EXPECT_EQ(other.num_vertices() + other.num_faces() + other.num_styles(), 0u);
}

TEST(MeshMap, OwnsRegistersReplacesAndRemoves) {
    graphics::mesh_map map;
    custom_mesh& first = map.add_mesh(named_triangle("b"));
    map.add_mesh(std::make_unique<custom_mesh>("a"));
    EXPECT_EQ(map.get_names(), (std::vector<std::string>{"a", "b"}));
    EXPECT_EQ(map.find_mesh("b"), &first);
    EXPECT_EQ(map.find_mesh("c"), nullptr);
    custom_mesh& second = map.add_mesh(custom_mesh("b"));  // replaces (and destroys) the first
    EXPECT_EQ(std::as_const(map).find_mesh("b"), &second);
    EXPECT_THROW(map.add_mesh(std::unique_ptr<custom_mesh>()), std::invalid_argument);
    try {
        map.add_mesh(custom_mesh(""));
        ADD_FAILURE();
    } catch (const std::invalid_argument& e) {
        EXPECT_STREQ(e.what(), "mesh_map: a registered mesh needs a name");
    }
    EXPECT_EQ(map.size(), 2u);
    EXPECT_TRUE(map.remove_mesh("a"));
    EXPECT_FALSE(map.remove_mesh("a"));
}

TEST(CustomObject, ShowsTheRegisteredStylesUntilOverridden) {
    primitives::custom c("composite.part");
    EXPECT_EQ(c.get_source_mesh(), nullptr);
    EXPECT_EQ(c.num_styles(), 0u);
    expect_box(c.get_boundingbox(), vector3d(0, 0, 0), 0, 0, 0);

    graphics::get_global_mesh_map().add_mesh(named_triangle("composite.part"));
    expect_box(c.get_boundingbox(), vector3d(1, 2, -0.5), 2, 4, 1);
    c.set_style(2, style("third", brush(), pen()));  // beyond the list: the gap is a default
    ASSERT_EQ(c.num_styles(), 3u);
    EXPECT_EQ(c.get_style(0).name + "|" + c.get_style(1).name + "|" + c.get_styles()[2].name,
              "a||third");
    EXPECT_TRUE(c.has_style_override(2));
    EXPECT_FALSE(c.has_style_override(0));
    c.set_style(0, style("first", brush(), pen()));
    EXPECT_EQ(c.get_styles()[0].name, "first");
    c.reset_styles();
    EXPECT_EQ(c.num_styles(), 1u);
    EXPECT_DEATH(c.get_style(1), "index < num_styles()");
    EXPECT_DEATH(c.set_style(primitives::custom::max_style_index + 1, style()),
                 "index <= max_style_index");
    graphics::get_global_mesh_map().clear();
}

TEST(CustomObject, InlineMeshDirtyMarkingAndCopies) {
    primitives::custom c;
    EXPECT_TRUE(dirties(c, [&] { c.set_mesh_id("x"); }));
    EXPECT_TRUE(dirties(c, [&] { c.set_mesh_id(""); }));
    EXPECT_TRUE(dirties(c, [&] { c.set_inline_mesh(named_triangle("t")); }));
    EXPECT_TRUE(dirties(c, [&] { c.set_style(0, style()); }));
    EXPECT_TRUE(dirties(c, [&] { c.reset_styles(); }));
    EXPECT_TRUE(dirties(c, [&] { c.add_primitive(primitives::box()); }));
    EXPECT_TRUE(dirties(c, [&] { c.add_primitive(primitives::box(), 0); }));
    expect_box(c.get_boundingbox(), vector3d(1, 2, 0), 2, 4, 2);  // triangle and unit boxes

    c.set_style(0, style("mine", brush(), pen()));
    std::unique_ptr<primitives::custom> copy(c.clone());
    EXPECT_EQ(copy->get_inline_mesh().num_faces(), 1u + 12u + 12u);
    EXPECT_EQ(copy->get_style(0).name, "mine");
    EXPECT_EQ(copy->num_styles(), 2u);  // the triangle's style and the first box's
    EXPECT_TRUE(dirties(c, [&] { c.clear(); }));
    EXPECT_EQ(c.get_inline_mesh().num_vertices() + c.num_styles(), 0u);
}

TEST(CustomObject, AMultiStylePartBringsItsStylesAndOneMoreForFacesWithoutAValidOne) {
    custom_mesh m = named_triangle("two styles");  // style "a" and a face in it
    m.add_style("b", brush(), pen());
    m.add_face(0, 2, 1, 1);
    m.add_face(1, 2, 0, -1);
    m.add_face(0, 1, 2, 2);
    primitives::custom part, c;
    part.set_inline_mesh(m);
    part.set_name("own");
    c.add_primitive(primitives::box());
    EXPECT_EQ(c.add_primitive(part), 1);
    ASSERT_EQ(c.num_styles(), 4u);
    EXPECT_EQ(c.get_style(1).name + c.get_style(2).name + c.get_style(3).name, "abown");
    std::vector<int> styles;
    for (std::uint32_t j = 12; j < c.get_inline_mesh().num_faces(); ++j)
        styles.push_back(c.get_inline_mesh().get_face(j).style);
    EXPECT_EQ(styles, (std::vector<int>{1, 2, 3, 3}));
}

TEST(MeshObject, SequencesAndDirtyMarking) {
    using tri = primitives::mesh::triangle;
    primitives::mesh m;
    expect_box(m.get_boundingbox(), vector3d(0, 0, 0), 0, 0, 0);
    EXPECT_TRUE(dirties(m, [&] { EXPECT_EQ(m.add_vertex(vector3d(0, 0, 0)), 0u); }));
    EXPECT_EQ(m.add_vertex(vector3d(2, 0, 0)), 1u);
    m.add_vertex(vector3d(2, 2, 0));
    m.add_vertex(vector3d(0, 2, 4));
    EXPECT_TRUE(dirties(m, [&] { m.add_quad(0, 1, 2, 3); }));
    EXPECT_TRUE(dirties(m, [&] { m.add_triangle(tri(3, 2, 1)); }));
    EXPECT_EQ(std::vector<tri>(m.triangles_begin(), m.triangles_end()),
              (std::vector<tri>{tri(0, 1, 2), tri(0, 2, 3), tri(3, 2, 1)}));
    EXPECT_TRUE(m.has_valid_indices());
    EXPECT_TRUE(dirties(m, [&] { m.set_triangles({}); }));
    EXPECT_TRUE(dirties(m, [&] { m.set_vertices({vector3d(1, 1, 1)}); }));
    EXPECT_TRUE(dirties(m, [&] { m.clear(); }));
    EXPECT_EQ(m.vertices_size() + m.triangles_size(), 0u);
}

TEST(PathExtrusionObject, ParametersAndBounds) {
    primitives::path_extrusion p;
    expect_box(p.get_boundingbox(), vector3d(0, 0, 0), 0, 0, 0);
    EXPECT_TRUE(dirties(p, [&] { p.add_profile_point(vector3d(-1, -1, 7)); }));
    p.add_profile_point(vector3d(1, -1, 7));
    p.add_profile_point(vector3d(0, 1, 7));
    EXPECT_TRUE(dirties(p, [&] { p.add_path_point(vector3d(0, 0, 0)); }));
    expect_box(p.get_boundingbox(), vector3d(0, 0, 0), 0, 0, 0);  // no direction yet
    p.add_path_point(vector3d(0, 0, 3));
    expect_box(p.get_boundingbox(), vector3d(0, 0, 1.5), 2, 2, 3);  // profile z is ignored
    EXPECT_TRUE(dirties(p, [&] { p.set_path({vector3d(0, 0, 0), vector3d(5, 0, 0)}); }));
    expect_box(p.get_boundingbox(), vector3d(2.5, 0, 0), 5, 2, 2);
    // A path that turns back reports the box of its points.
    p.set_path({vector3d(0, 0, 0), vector3d(0, 0, 2), vector3d(0, 0, 1)});
    expect_box(p.get_boundingbox(), vector3d(0, 0, 1), 0, 0, 2);
    EXPECT_TRUE(dirties(p, [&] { p.set_profile({}); }));
    EXPECT_TRUE(dirties(p, [&] { p.clear(); }));
}
