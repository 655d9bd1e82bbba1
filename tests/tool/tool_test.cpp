// facet export, info and convert end to end; bad input gives one line, status 1 and no file.
#include <tiny_gltf.h>
#include <nlohmann/json.hpp>

#include <cmath>
#include <map>
#include <string>
#include <vector>

#include "tool_fixture.h"

namespace facet_tool_test {
namespace {

tinygltf::Model load(const std::string& file) {
    tinygltf::TinyGLTF loader;
    tinygltf::Model model;
    std::string error, warning;
    EXPECT_TRUE(file.back() == 'b' ? loader.LoadBinaryFromFile(&model, &error, &warning, file)
                                   : loader.LoadASCIIFromFile(&model, &error, &warning, file))
        << error;
    return model;
}

// Per node name: its mesh's primitives as "mode:vertex count" words.
std::map<std::string, std::string> primitives_of(const tinygltf::Model& m) {
    std::map<std::string, std::string> result;
    for (const tinygltf::Node& n : m.nodes)
        for (std::size_t p = 0; n.mesh >= 0 && p < m.meshes[n.mesh].primitives.size(); ++p) {
            const tinygltf::Primitive& prim = m.meshes[n.mesh].primitives[p];
            result[n.name] += std::to_string(prim.mode) + ":" +
                              std::to_string(m.accessors[prim.attributes.at("POSITION")].count) +
                              " ";
        }
    return result;
}

TEST_F(tool_test, export_writes_valid_gltf_with_hierarchy_materials_and_edges_on_request) {
    write_samples();
    ASSERT_EQ(run("export scene.txt -o out.glb -q"), 0) << err;
    const tinygltf::Model m = load(path("out.glb"));
    std::string names;
    for (const tinygltf::Node& n : m.nodes) names += n.name + " ";
    ASSERT_EQ(names, "base post ray sun ");
    EXPECT_EQ(m.nodes[0].children, (std::vector<int>{1, 3}));
    EXPECT_EQ(m.nodes[0].translation, (std::vector<double>{1, 0, 0}));
    EXPECT_NEAR(m.nodes[0].rotation.at(1), std::sqrt(0.5), 1e-12);  // 90 degrees about y
    EXPECT_EQ(primitives_of(m), (std::map<std::string, std::string>{
                                    {"base", "4:36 "}, {"post", "4:72 "}, {"ray", "1:2 "}}));
    const tinygltf::Primitive& box = m.meshes[m.nodes[0].mesh].primitives[0];
    EXPECT_EQ(m.accessors[box.attributes.at("POSITION")].maxValues, (std::vector<double>{1, 2, 3}));
    EXPECT_EQ(m.materials[box.material].alphaMode, "BLEND");  // alpha 128
    expect_valid("out.glb");

    // Each outline edge once: the box's 12 (no face diagonals), the cylinder's two rims of 6.
    ASSERT_EQ(run("export scene.txt -o out.gltf --edges --stats"), 0) << err;
    EXPECT_NE(err.find("edges"), err.npos);
    EXPECT_EQ(primitives_of(load(path("out.gltf"))),
              (std::map<std::string, std::string>{
                  {"base", "4:36 1:24 "}, {"post", "4:72 1:24 "}, {"ray", "1:2 "}}));
    expect_valid("out.gltf");

    write("empty.txt", "beginscene\r\nendscene\r\n");
    ASSERT_EQ(run("export empty.txt -o empty.glb"), 0) << err;
    EXPECT_TRUE(load(path("empty.glb")).nodes.empty());
    expect_valid("empty.glb");
}

TEST_F(tool_test, export_and_convert_of_a_model_give_its_triangles) {
    write_samples();
    ASSERT_EQ(run("export square.obj -o square.glb"), 0) << err;
    const tinygltf::Model m = load(path("square.glb"));
    EXPECT_EQ(primitives_of(m), (std::map<std::string, std::string>{{"square", "4:9 "}}));
    expect_valid("square.glb");  // unit normals, even on the zero-area face

    ASSERT_EQ(run("convert square.obj -o square.txt -q"), 0) << err;
    const facet::scene s = facet::read_scene(path("square.txt"));
    const auto* mesh = dynamic_cast<const primitives::mesh*>(&s[0]);
    ASSERT_TRUE(s.size() == 1 && mesh != nullptr);
    EXPECT_EQ(mesh->get_name() + std::to_string(mesh->get_vertices().size()), "square5");
    EXPECT_EQ(mesh->get_triangles(),
              (std::vector<primitives::mesh::triangle>{{0, 1, 2}, {0, 2, 3}, {0, 1, 4}}));
    ASSERT_EQ(run("convert square.obj -o square.glb"), 0) << err;
    expect_valid("square.glb");
}

TEST_F(tool_test, info_prints_the_tree_by_depth_with_totals_as_text_or_json) {
    write_samples();
    ASSERT_EQ(run("info scene.txt"), 0) << err;
    const std::string starts[] = {
        "box 'base'  vertices 8  faces 12  lines 0  bounds (1, 0, -1) .. (4, 2, ",
        "  cylinder 'post'  vertices 14  faces 24  lines 0  bounds (",
        "  light 'sun'  vertices 0  faces 0  lines 0  bounds none\n",
        "line 'ray'  vertices 2  faces 0  lines 1  bounds (0, 0, 0) .. (0, 5, 0)\n",
        "total: 4 objects, 24 vertices, 36 faces, 1 lines, bounds ("};
    std::size_t at = 0;
    for (const std::string& start : starts) {
        EXPECT_EQ(out.compare(at, start.size(), start), 0) << out;
        at = out.find('\n', at) + 1;
    }
    EXPECT_EQ(at, out.size()) << out;

    ASSERT_EQ(run("info scene.txt --json"), 0) << err;
    const nlohmann::json doc = nlohmann::json::parse(out), &objects = doc.at("objects");
    ASSERT_EQ(objects.size(), 4u);
    EXPECT_TRUE(objects[0].at("parent").is_null() && objects[3].at("bounds").is_null());
    nlohmann::json post = objects[1];
    post.erase("bounds");
    EXPECT_EQ(post.dump(), R"({"depth":1,"faces":24,"index":1,"lines":0,"name":"post",)"
                           R"("parent":0,"type":"cylinder","vertices":14})");
    EXPECT_EQ(objects[0].at("bounds").at("max").at(1), 2.0);
    const nlohmann::json& t = doc.at("totals");
    EXPECT_EQ((std::vector<int>{t.at("objects"), t.at("vertices"), t.at("faces"), t.at("lines")}),
              (std::vector<int>{4, 24, 36, 1}));
}

TEST_F(tool_test, bad_input_gives_one_line_status_1_and_no_file) {
    write_samples();
    write("bad.txt", "beginscene\r\nprimitive box\r\n  name b\r\n  parent\r\n");
    write("empty.obj", "# nothing\nv 0 0 0\n");
    write("broken.obj", "v 0 0 0\nv 1 0 0\nf 1 2 9\n");
    const char* cases[][3] = {
        // the arguments, a part of the message, a file not written
        {"export missing.txt -o out.glb", "missing.txt: cannot open", "out.glb"},
        {"export bad.txt -o out.glb", "bad.txt:", "out.glb"},
        {"export scene.txt -o out.png", "out.png: unknown output extension '.png'", "out.png"},
        {"export scene.txt -o out.glb --bogus", "--bogus", "out.glb"},
        {"export scene.txt -o no/such/out.glb", "no/such/out.glb: cannot write", "no"},
        {"export empty.obj -o out.gltf", "empty.obj: no faces", "out.gltf"},
        {"info missing.obj", "missing.obj: cannot open", "out.glb"},
        {"convert scene.txt -o out.txt", "scene.txt: not an .obj model", "out.txt"},
        {"convert broken.obj -o out.txt", "broken.obj", "out.txt"},
        {"render bad.txt -o out.png", "bad.txt", "out.png"},
        {"render scene.txt -o out.png --size 0x10", "--size", "out.png"},
        {"render scene.txt -o out.png --size wide", "--size", "out.png"}};
    for (const auto& c : cases) {
        EXPECT_EQ(run(c[0]), 1) << c[0];
        EXPECT_TRUE(err.rfind("facet: ", 0) == 0 && err.find(c[1]) != err.npos &&
                    err.find('\n') == err.size() - 1 && out.empty() && !exists(c[2]))
            << c[0] << ": " << err;
    }
}

}  // namespace
}  // namespace facet_tool_test
