// facet info and convert, end to end, and the error paths of export, info and convert: one line
// naming the file and the problem, exit status 1, no output file.
#include <nlohmann/json.hpp>

#include <sstream>
#include <string>
#include <vector>

#include "gltf_tool_fixture.h"
#include "input.h"
#include "progress.h"

namespace facet_tool_test {
namespace {

using info_convert_test = gltf_tool_test;

TEST_F(info_convert_test, info_prints_the_tree_indented_by_depth_and_totals) {
    write_sample_scene();
    const run_result r = run("info scene.txt");
    ASSERT_EQ(r.status, 0) << r.err;
    // Each line starts as given (bounds of the round cylinder are left out), in this order.
    const std::vector<std::string> expected = {
        "box 'base'  vertices 8  faces 12  lines 0  bounds (1, 0, -1) .. (4, 2, ",
        "  cylinder 'post'  vertices 14  faces 24  lines 0  bounds (",
        "  light 'sun'  vertices 0  faces 0  lines 0  bounds none",
        "line 'ray'  vertices 2  faces 0  lines 1  bounds (0, 0, 0) .. (0, 5, 0)",
        "total: 4 objects, 24 vertices, 36 faces, 1 lines, bounds ("};
    std::istringstream out(r.out);
    std::string line;
    for (const std::string& prefix : expected) {
        ASSERT_TRUE(std::getline(out, line)) << r.out;
        EXPECT_EQ(line.substr(0, prefix.size()), prefix) << r.out;
    }
    EXPECT_FALSE(std::getline(out, line)) << r.out;
}

TEST_F(info_convert_test, info_json_lists_objects_with_parent_indices) {
    write_sample_scene();
    const run_result r = run("info scene.txt --json");
    ASSERT_EQ(r.status, 0) << r.err;
    const nlohmann::json doc = nlohmann::json::parse(r.out);
    const nlohmann::json& objects = doc.at("objects");
    ASSERT_EQ(objects.size(), 4u);
    EXPECT_EQ(objects[0].at("name"), "base");
    EXPECT_TRUE(objects[0].at("parent").is_null());
    EXPECT_EQ(objects[1].at("parent"), 0);
    EXPECT_EQ(objects[1].at("depth"), 1);
    EXPECT_EQ(objects[1].at("type"), "cylinder");
    EXPECT_TRUE(objects[3].at("bounds").is_null());
    const std::vector<double> max = objects[0].at("bounds").at("max");
    ASSERT_EQ(max.size(), 3u);
    EXPECT_EQ(max[0], 4.0);
    EXPECT_EQ(max[1], 2.0);
    EXPECT_NEAR(max[2], 0.0, 1e-12);
    const nlohmann::json& totals = doc.at("totals");
    EXPECT_EQ(totals.at("objects"), 4);
    EXPECT_EQ(totals.at("vertices"), 24);
    EXPECT_EQ(totals.at("faces"), 36);
    EXPECT_EQ(totals.at("lines"), 1);
    EXPECT_EQ(totals.at("bounds").at("min").size(), 3u);
}

TEST_F(info_convert_test, convert_writes_a_scene_with_the_models_triangles) {
    const std::string obj = write_sample_obj();
    const run_result r = run("convert square.obj -o square.txt -q");
    ASSERT_EQ(r.status, 0) << r.err;
    facet_tool::progress quiet(true);
    const graphics::custom_mesh model = facet_tool::read_obj_model(obj, "square", quiet);
    const facet::scene s = facet::read_scene(path("square.txt"));
    ASSERT_EQ(s.size(), 1u);
    const auto* mesh = dynamic_cast<const primitives::mesh*>(&s[0]);
    ASSERT_NE(mesh, nullptr);
    EXPECT_EQ(mesh->get_name(), "square");
    ASSERT_EQ(mesh->get_vertices().size(), model.get_vertices().size());
    for (std::size_t i = 0; i < model.get_vertices().size(); ++i) {
        EXPECT_EQ(mesh->get_vertices()[i].x, model.get_vertices()[i].x);
        EXPECT_EQ(mesh->get_vertices()[i].y, model.get_vertices()[i].y);
        EXPECT_EQ(mesh->get_vertices()[i].z, model.get_vertices()[i].z);
    }
    ASSERT_EQ(mesh->triangles_size(), model.num_faces());
    for (std::uint32_t i = 0; i < model.num_faces(); ++i)
        for (int k = 0; k < 3; ++k)
            EXPECT_EQ(mesh->get_triangle(i).vertex[k], model.get_faces()[i].vertex[k]);
}

TEST_F(info_convert_test, convert_to_glb_validates) {
    write_sample_obj();
    const run_result r = run("convert square.obj -o square.glb");
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_GT(read_text(path("square.glb")).size(), 100u);
    expect_valid(path("square.glb"));
}

TEST_F(info_convert_test, bad_input_gives_one_line_status_1_and_no_file) {
    write_sample_scene();
    write("bad.txt", "primitive box\r\nname\r\n");
    write("empty.obj", "# nothing\nv 0 0 0\n");
    write("broken.obj", "v 0 0 0\nv 1 0 0\nf 1 2 9\n");
    struct error_case {
        std::string args;
        std::string message;  // a part of the line
        std::string output;   // must not exist afterwards
    };
    const std::vector<error_case> cases = {
        {"export missing.txt -o out.glb", "missing.txt: cannot open", "out.glb"},
        {"export bad.txt -o out.glb", "bad.txt:", "out.glb"},
        {"export scene.txt -o out.png", "out.png: unknown output extension '.png'", "out.png"},
        {"export scene.txt -o out.glb --bogus", "--bogus", "out.glb"},
        {"export scene.txt -o no/such/folder/out.glb", "no/such/folder/out.glb: cannot write",
         "no/such/folder/out.glb"},
        {"export empty.obj -o out.gltf", "empty.obj: no faces", "out.gltf"},
        {"info missing.obj", "missing.obj: cannot open", ""},
        {"convert scene.txt -o out.txt", "scene.txt: not an .obj model", "out.txt"},
        {"convert broken.obj -o out.txt", "broken.obj", "out.txt"},
        {"convert missing.obj -o out.glb", "missing.obj: cannot open", "out.glb"},
    };
    for (const error_case& c : cases) {
        const run_result r = run(c.args);
        EXPECT_EQ(r.status, 1) << c.args;
        EXPECT_EQ(r.err.rfind("facet: ", 0), 0u) << c.args << ": " << r.err;
        EXPECT_NE(r.err.find(c.message), std::string::npos) << c.args << ": " << r.err;
        EXPECT_EQ(r.err.find('\n'), r.err.size() - 1) << c.args << ": " << r.err;
        if (!c.output.empty()) {
            EXPECT_FALSE(exists(path(c.output))) << c.args;
        }
        EXPECT_TRUE(r.out.empty()) << c.args;
    }
}

}  // namespace
}  // namespace facet_tool_test
