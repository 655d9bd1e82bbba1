// facet export, end to end: the file validates, reads back with the scene's nodes, meshes and
// vertex counts, and keeps the hierarchy, transforms, materials and (with --edges) the outlines.
#include <tiny_gltf.h>

#include <cmath>
#include <cstdint>
#include <string>

#include "gltf_tool_fixture.h"
#include "input.h"
#include "progress.h"

namespace facet_tool_test {
namespace {

tinygltf::Model load(const std::string& file) {
    tinygltf::TinyGLTF loader;
    tinygltf::Model model;
    std::string err, warn;
    const bool binary = file.size() > 4 && file.compare(file.size() - 4, 4, ".glb") == 0;
    const bool ok = binary ? loader.LoadBinaryFromFile(&model, &err, &warn, file)
                           : loader.LoadASCIIFromFile(&model, &err, &warn, file);
    EXPECT_TRUE(ok) << file << ": " << err;
    return model;
}

int find_node(const tinygltf::Model& m, const std::string& name) {
    for (std::size_t i = 0; i < m.nodes.size(); ++i)
        if (m.nodes[i].name == name) return static_cast<int>(i);
    ADD_FAILURE() << "no node " << name;
    return 0;
}

// The vertex count of each primitive of the mesh of node `name`, with its mode.
std::vector<std::pair<int, std::size_t>> primitives_of(const tinygltf::Model& m,
                                                       const std::string& name) {
    std::vector<std::pair<int, std::size_t>> result;
    const tinygltf::Node& node = m.nodes[find_node(m, name)];
    if (node.mesh < 0) return result;
    for (const tinygltf::Primitive& p : m.meshes[node.mesh].primitives)
        result.emplace_back(p.mode, m.accessors[p.attributes.at("POSITION")].count);
    return result;
}

using export_test = gltf_tool_test;

TEST_F(export_test, scene_becomes_valid_binary_gltf_with_its_hierarchy) {
    const std::string scene = write_sample_scene();
    const run_result r = run("export scene.txt -o out.glb -q");
    ASSERT_EQ(r.status, 0) << r.err;
    const tinygltf::Model m = load(path("out.glb"));
    ASSERT_EQ(m.nodes.size(), 4u);
    EXPECT_EQ(m.meshes.size(), 3u);

    // Roots and children follow the parents; the light has no mesh.
    const int base = find_node(m, "base"), post = find_node(m, "post"), sun = find_node(m, "sun"),
              ray = find_node(m, "ray");
    ASSERT_EQ(m.scenes.size(), 1u);
    EXPECT_EQ(m.scenes[0].nodes, (std::vector<int>{base, ray}));
    EXPECT_EQ(m.nodes[base].children, (std::vector<int>{post, sun}));
    EXPECT_EQ(m.nodes[sun].mesh, -1);

    // Translation and the unit quaternion of 90 degrees about y.
    EXPECT_EQ(m.nodes[base].translation, (std::vector<double>{1.0, 0.0, 0.0}));
    ASSERT_EQ(m.nodes[base].rotation.size(), 4u);
    const double h = std::sqrt(0.5);
    EXPECT_NEAR(m.nodes[base].rotation[0], 0.0, 1e-12);
    EXPECT_NEAR(m.nodes[base].rotation[1], h, 1e-12);
    EXPECT_NEAR(m.nodes[base].rotation[2], 0.0, 1e-12);
    EXPECT_NEAR(m.nodes[base].rotation[3], h, 1e-12);
    EXPECT_EQ(m.nodes[post].translation, (std::vector<double>{0.0, 2.0, 0.0}));
    EXPECT_TRUE(m.nodes[post].rotation.empty());

    // Three vertices per face; the line as a LINES primitive.
    using prims = std::vector<std::pair<int, std::size_t>>;
    EXPECT_EQ(primitives_of(m, "base"), (prims{{TINYGLTF_MODE_TRIANGLES, 36}}));
    EXPECT_EQ(primitives_of(m, "post"), (prims{{TINYGLTF_MODE_TRIANGLES, 72}}));
    EXPECT_EQ(primitives_of(m, "ray"), (prims{{TINYGLTF_MODE_LINE, 2}}));

    // The box's attributes, bounds and its translucent material.
    const tinygltf::Primitive& box = m.meshes[m.nodes[base].mesh].primitives[0];
    for (const char* attribute : {"NORMAL", "TEXCOORD_0", "TANGENT"})
        EXPECT_EQ(box.attributes.count(attribute), 1u) << attribute;
    const tinygltf::Accessor& positions = m.accessors[box.attributes.at("POSITION")];
    EXPECT_EQ(positions.minValues, (std::vector<double>{0.0, 0.0, 0.0}));
    EXPECT_EQ(positions.maxValues, (std::vector<double>{1.0, 2.0, 3.0}));
    const tinygltf::Material& material = m.materials[box.material];
    EXPECT_EQ(material.alphaMode, "BLEND");
    EXPECT_NEAR(material.pbrMetallicRoughness.baseColorFactor[0], 200.0 / 255.0, 1e-9);
    EXPECT_NEAR(material.pbrMetallicRoughness.baseColorFactor[3], 128.0 / 255.0, 1e-9);
    const tinygltf::Primitive& cylinder = m.meshes[m.nodes[post].mesh].primitives[0];
    EXPECT_EQ(m.materials[cylinder.material].alphaMode, "OPAQUE");

    // Tangents carry their handedness as w = +1 or -1.
    const tinygltf::Accessor& tangents = m.accessors[box.attributes.at("TANGENT")];
    const tinygltf::BufferView& view = m.bufferViews[tangents.bufferView];
    const float* t = reinterpret_cast<const float*>(m.buffers[view.buffer].data.data() +
                                                    view.byteOffset + tangents.byteOffset);
    for (std::size_t i = 0; i < tangents.count; ++i) EXPECT_EQ(std::fabs(t[4 * i + 3]), 1.0f) << i;

    expect_valid(path("out.glb"));
}

TEST_F(export_test, edges_add_each_outline_edge_once_as_lines) {
    write_sample_scene();
    const run_result r = run("export scene.txt -o out.gltf --edges --stats");
    ASSERT_EQ(r.status, 0) << r.err;
    for (const char* stage : {"meshes", "edges", "write"})
        EXPECT_NE(r.err.find(stage), std::string::npos) << r.err;
    const tinygltf::Model m = load(path("out.gltf"));
    using prims = std::vector<std::pair<int, std::size_t>>;
    // The box's 12 edges (the face diagonals are not drawn), two vertices each.
    EXPECT_EQ(primitives_of(m, "base"),
              (prims{{TINYGLTF_MODE_TRIANGLES, 36}, {TINYGLTF_MODE_LINE, 24}}));
    // The cylinder's two cap rims of 6 edges.
    EXPECT_EQ(primitives_of(m, "post"),
              (prims{{TINYGLTF_MODE_TRIANGLES, 72}, {TINYGLTF_MODE_LINE, 24}}));
    EXPECT_EQ(primitives_of(m, "ray"), (prims{{TINYGLTF_MODE_LINE, 2}}));
    expect_valid(path("out.gltf"));
}

// The float data of accessor `index`.
const float* floats_of(const tinygltf::Model& m, int index) {
    const tinygltf::Accessor& a = m.accessors[index];
    const tinygltf::BufferView& v = m.bufferViews[a.bufferView];
    return reinterpret_cast<const float*>(m.buffers[v.buffer].data.data() + v.byteOffset +
                                          a.byteOffset);
}

float length3(const float* v) { return std::sqrt(v[0] * v[0] + v[1] * v[1] + v[2] * v[2]); }

TEST_F(export_test, obj_model_exports_the_face_sets_corners) {
    const std::string obj = write_sample_obj();
    const run_result r = run("export square.obj -o square.glb");
    ASSERT_EQ(r.status, 0) << r.err;
    const tinygltf::Model m = load(path("square.glb"));
    ASSERT_EQ(m.nodes.size(), 1u);
    EXPECT_EQ(m.nodes[0].name, "square");
    ASSERT_EQ(m.meshes.size(), 1u);
    ASSERT_EQ(m.meshes[0].primitives.size(), 1u);
    const auto& attributes = m.meshes[0].primitives[0].attributes;
    ASSERT_EQ(m.accessors[attributes.at("POSITION")].count, 9u);

    // The corners are those of the model's face set, with unit normals and tangents where the
    // face set has zero ones (the degenerate third face).
    facet_tool::progress quiet(true);
    const facet::scene s = facet_tool::load_input(obj, quiet);
    const indexedfaceset& fs = s[0].get_mesh();
    const float* pos = floats_of(m, attributes.at("POSITION"));
    const float* nrm = floats_of(m, attributes.at("NORMAL"));
    const float* tex = floats_of(m, attributes.at("TEXCOORD_0"));
    const float* tan = floats_of(m, attributes.at("TANGENT"));
    for (std::uint32_t c = 0; c < 9; ++c) {
        const face& f = fs.get_face(c / 3);
        const vector3d& p = fs.get_vertex(f.vertex[c % 3]);
        EXPECT_EQ(pos[3 * c], static_cast<float>(p.x)) << c;
        EXPECT_EQ(pos[3 * c + 2], static_cast<float>(p.z)) << c;
        EXPECT_EQ(tex[2 * c + 1], fs.get_texcoord(f.texcoord[c % 3]).v) << c;
        EXPECT_NEAR(length3(nrm + 3 * c), 1.0f, 1e-6f) << c;
        EXPECT_NEAR(length3(tan + 4 * c), 1.0f, 1e-6f) << c;
        const vector3d& t = fs.get_tangent(c);
        if (t.length() > 0.0) {
            const vector3d n = fs.get_normal(c);
            EXPECT_NEAR(nrm[3 * c + 1], n.y, 1e-6) << c;
            EXPECT_NEAR(tan[4 * c], t.x / t.length(), 1e-6) << c;
            EXPECT_NEAR(tan[4 * c + 2], t.z / t.length(), 1e-6) << c;
            EXPECT_EQ(tan[4 * c + 3], dot(cross(n, t), fs.get_bitangent(c)) < 0.0 ? -1.0f : 1.0f)
                << c;
        }
    }
    expect_valid(path("square.glb"));
}

TEST_F(export_test, empty_scene_gives_a_valid_file_without_nodes) {
    write("empty.txt", "beginscene\r\nendscene\r\n");
    const run_result r = run("export empty.txt -o empty.glb");
    ASSERT_EQ(r.status, 0) << r.err;
    const tinygltf::Model m = load(path("empty.glb"));
    EXPECT_TRUE(m.nodes.empty());
    EXPECT_TRUE(m.buffers.empty());
    expect_valid(path("empty.glb"));
}

}  // namespace
}  // namespace facet_tool_test
