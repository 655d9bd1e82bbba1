#include <gtest/gtest.h>

#include <facet/primitives.h>
#include <facet/scene_io.h>

#include <memory>
#include <sstream>
#include <string>
#include <vector>

using primitives::basic_object;

namespace {

const std::string nul_terminated("\0", 1);

std::string block_text(const basic_object& o) {
    std::ostringstream os;
    o.write(os);
    return os.str();
}

// Reads one scene made of the given block text; returns the error message or "" and keeps the
// objects in `out`.
std::string read_scene(const std::string& blocks, std::vector<std::unique_ptr<basic_object>>& out) {
    std::vector<basic_object*> objects;
    std::istringstream is("beginscene\r\n" + blocks + "endscene\r\n");
    std::string error;
    try {
        read_objects(objects, is);
    } catch (const std::exception& e) {
        error = e.what();
    }
    for (basic_object* o : objects) out.emplace_back(o);
    return error;
}

TEST(CompositeFields, MeshListsRoundTrip) {
    primitives::mesh m;
    m.set_material_ref_id(nul_terminated);
    m.add_vertex({0, 0, 0});
    m.add_vertex({1, 0, 0});
    m.add_vertex({0, 1, 0.5});
    m.add_triangle(0, 1, 2);
    const std::string text = block_text(m);
    EXPECT_NE(text.find("  num_vertices 3\r\n    0 0 0\r\n    1 0 0\r\n    0 1 0.5\r\n"),
              std::string::npos);
    EXPECT_NE(text.find("  num_triangles 1\r\n    0 1 2\r\nendprimitive\r\n"), std::string::npos);

    std::vector<std::unique_ptr<basic_object>> objects;
    ASSERT_EQ(read_scene(text, objects), "");
    auto* read = dynamic_cast<primitives::mesh*>(objects.at(0).get());
    ASSERT_NE(read, nullptr);
    EXPECT_EQ(read->get_vertices(), m.get_vertices());
    EXPECT_EQ(read->get_triangles(), m.get_triangles());
    EXPECT_EQ(read->get_mesh().num_faces(), 1u);
}

TEST(CompositeFields, TriangleBeyondTheVertexListIsRejected) {
    primitives::mesh m;
    m.set_material_ref_id(nul_terminated);
    m.add_vertex({0, 0, 0});
    m.add_triangle(0, 0, 7);
    std::vector<std::unique_ptr<basic_object>> objects;
    EXPECT_EQ(read_scene(block_text(m), objects), "ERROR: '7'expected");
    EXPECT_TRUE(objects.empty());
    m.set_triangles({{0, 0, 1}});  // one past the last vertex
    EXPECT_EQ(read_scene(block_text(m), objects), "ERROR: '1'expected");
}

TEST(CompositeFields, HugeCountsAreNotTrusted) {
    primitives::mesh m;
    m.set_material_ref_id(nul_terminated);
    std::string text = block_text(m);
    const std::string from = "num_vertices 0";
    text.replace(text.find(from), from.size(), "num_vertices 4294967295");
    std::vector<std::unique_ptr<basic_object>> objects;
    // The list ends where "num_triangles" stands; the failed number is reported there.
    EXPECT_EQ(read_scene(text, objects), "ERROR: ''expected");
}

TEST(CompositeFields, ExtrudedPolygonWritesTwoOffsetsButReadsOne) {
    primitives::extruded_polygon e;
    e.set_material_ref_id(nul_terminated);
    e.add_point({0, 0, 0});
    e.add_point({1, 0, 0});
    e.add_point({0, 0, 1});
    e.set_extrusion({0, 2, 0});
    e.set_extrusion_scaling({0.5, 1, 0.5});
    const std::string text = block_text(e);
    EXPECT_NE(text.find("  numpoints 3\r\n  0 0 0\r\n  1 0 0\r\n  0 0 1\r\n"
                        "  offset 0 2 0\r\n  offset 0.5 1 0.5\r\nendprimitive"),
              std::string::npos);
    std::vector<std::unique_ptr<basic_object>> objects;
    EXPECT_EQ(read_scene(text, objects), "ERROR: 'offset'expected");

    // Without the second line the block reads, with the scaling at its default.
    std::string one_offset = text;
    one_offset.erase(one_offset.find("  offset 0.5 1 0.5\r\n"), 20);
    ASSERT_EQ(read_scene(one_offset, objects), "");
    auto* read = dynamic_cast<primitives::extruded_polygon*>(objects.at(0).get());
    ASSERT_NE(read, nullptr);
    EXPECT_EQ(read->get_points(), e.get_points());
    EXPECT_EQ(read->get_extrusion(), vector3d(0, 2, 0));
    EXPECT_EQ(read->get_extrusion_scaling(),
              primitives::extruded_polygon().get_extrusion_scaling());
}

TEST(CompositeFields, PathExtrusionAndCustomRoundTrip) {
    primitives::path_extrusion p;
    p.set_material_ref_id(nul_terminated);
    p.set_profile({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}});
    p.set_path({{0, 0, 0}, {0, 0, 3}});
    primitives::custom c;
    c.set_material_ref_id(nul_terminated);
    c.set_mesh_id("teapot");
    std::vector<std::unique_ptr<basic_object>> objects;
    ASSERT_EQ(read_scene(block_text(p) + block_text(c), objects), "");
    auto* rp = dynamic_cast<primitives::path_extrusion*>(objects.at(0).get());
    auto* rc = dynamic_cast<primitives::custom*>(objects.at(1).get());
    ASSERT_NE(rp, nullptr);
    ASSERT_NE(rc, nullptr);
    EXPECT_EQ(rp->get_profile(), p.get_profile());
    EXPECT_EQ(rp->get_path(), p.get_path());
    EXPECT_EQ(rc->get_mesh_id(), "teapot");
}

}  // namespace

namespace {

TEST(SceneTypes, EveryRegisteredTypeExceptTheExtrudedPolygonRoundTrips) {
    auto& types = factory<basic_object, std::string>::instance();
    const std::vector<std::string> expected = {"empty",
                                               "box",
                                               "cylinder",
                                               "cone",
                                               "quad",
                                               "polygon",
                                               "line",
                                               "polyline",
                                               "extruded_polygon",
                                               "mesh",
                                               "path_extrusion",
                                               "arrow",
                                               "crosshair",
                                               "custom",
                                               "text",
                                               "billboard",
                                               "light"};
    EXPECT_EQ(types.keys(), expected);
    for (const std::string& key : expected) {
        if (key == "extruded_polygon") continue;
        std::unique_ptr<basic_object> original(types.create(key));
        original->set_name(key + "_1");
        original->set_material_ref_id(nul_terminated);
        // An empty string field would make the reader take the next word; give them one.
        if (auto* c = dynamic_cast<primitives::custom*>(original.get())) c->set_mesh_id("m");
        if (auto* t = dynamic_cast<primitives::text*>(original.get())) t->set_text("label");
        std::ostringstream first;
        original->write(first);
        std::vector<std::unique_ptr<basic_object>> objects;
        ASSERT_EQ(read_scene(first.str(), objects), "") << key;
        ASSERT_EQ(objects.size(), 1u);
        EXPECT_EQ(objects[0]->class_id(), key);
        // The reference read back starts with the space after its keyword; past that, writing
        // the object again gives the same block.
        objects[0]->set_material_ref_id(nul_terminated);
        std::ostringstream second;
        objects[0]->write(second);
        EXPECT_EQ(second.str(), first.str()) << key;
    }
}

TEST(SceneTypes, PointListsAndLinesRoundTrip) {
    primitives::polygon p;
    p.set_material_ref_id(nul_terminated);
    p.add_point({0, 0, 0});
    p.add_point({1, 0, 0});
    p.add_point({1, 0, 1});
    primitives::line l(vector3d(1, 2, 3), vector3d(4, 5, 6));
    l.set_material_ref_id(nul_terminated);
    primitives::text t;
    t.set_material_ref_id(nul_terminated);
    t.set_text("two words");
    std::ostringstream os;
    p.write(os);
    l.write(os);
    t.write(os);
    EXPECT_NE(os.str().find("  numpoints 3\r\n  0 0 0\r\n  1 0 0\r\n  1 0 1\r\n"),
              std::string::npos);
    EXPECT_NE(os.str().find("  point1 1 2 3\r\n  point2 4 5 6\r\n"), std::string::npos);
    std::vector<std::unique_ptr<basic_object>> objects;
    // The text is written whole but read as one word; the second word breaks the block.
    EXPECT_EQ(read_scene(os.str(), objects), "ERROR: 'words'expected");
    ASSERT_EQ(objects.size(), 2u);
    EXPECT_EQ(dynamic_cast<primitives::polygon&>(*objects[0]).get_points(), p.get_points());
    EXPECT_EQ(dynamic_cast<primitives::line&>(*objects[1])[1], vector3d(4, 5, 6));
}

}  // namespace
