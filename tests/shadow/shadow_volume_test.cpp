// Both shadow-volume builders bit for bit against support/reference_shadow_volume.h on closed,
// open, degenerate and tangled meshes; the object space; when set_light rebuilds.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "facet/primitives.h"
#include "facet/shadow_volume.h"
#include "support/reference_shadow_volume.h"

namespace {

struct mesh_data {
    std::vector<vector3d> vertices;
    std::vector<face> faces;
};

void fill(indexedfaceset& fs, const mesh_data& m) {
    fs.vertices().resize(static_cast<std::uint32_t>(m.vertices.size()));
    std::copy(m.vertices.begin(), m.vertices.end(), fs.vertices().begin());
    fs.faces().resize(static_cast<std::uint32_t>(m.faces.size()));
    std::copy(m.faces.begin(), m.faces.end(), fs.faces().begin());
    fs.compute_normals();
    fs.construct_halfedge_data();
}

// The unit cube laid out like the box primitive's mesh (vertex 5 is (1, 1, 1)), with the sides
// listed (+z, +x, −z, −x, +y, −y; two triangles each).
mesh_data cube(std::vector<int> sides = {0, 1, 2, 3, 4, 5}) {
    mesh_data m{
        {{0, 0, 1}, {1, 0, 1}, {1, 0, 0}, {0, 0, 0}, {0, 1, 1}, {1, 1, 1}, {1, 1, 0}, {0, 1, 0}},
        {}};
    const std::uint32_t c[12][3] = {{0, 1, 5}, {0, 5, 4}, {1, 2, 6}, {1, 6, 5},
                                    {2, 3, 7}, {2, 7, 6}, {3, 0, 4}, {3, 4, 7},
                                    {4, 5, 6}, {4, 6, 7}, {0, 3, 2}, {0, 2, 1}};
    for (int s : sides)
        for (int k = 2 * s; k < 2 * s + 2; ++k) m.faces.emplace_back(c[k][0], c[k][1], c[k][2]);
    return m;
}

// Shared, non-manifold, flipped and degenerate triangles on few vertices (one repeated).
mesh_data tangle(unsigned seed) {
    std::mt19937 rng(seed);
    std::uniform_real_distribution<double> coord(-2.0, 2.0);
    mesh_data m;
    for (int i = 0; i < 10; ++i) m.vertices.emplace_back(coord(rng), coord(rng), coord(rng));
    m.vertices.push_back(m.vertices[0]);
    for (int i = 0; i < 60; ++i) m.faces.emplace_back(rng() % 10, rng() % 10, rng() % 10 + 1);
    return m;
}

// A zero-area face (normal zero, so counted as lit) next to a face.
const mesh_data sliver{{{0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {0.5, 0, 1}},
                       {face(0, 1, 2), face(1, 0, 3)}};

class mesh_object : public primitives::basic_object {
public:
    explicit mesh_object(mesh_data m) : m_data(std::move(m)) {}

protected:
    void update_mesh(indexedfaceset& target) const override { fill(target, m_data); }

private:
    mesh_data m_data;
};

// The cube with hand-made twin links that do not point back (earlier, later, to itself, to a
// half-edge whose twin is gone), as a host may leave them.
class rewired_object : public mesh_object {
public:
    rewired_object() : mesh_object(cube()) {}

protected:
    void update_mesh(indexedfaceset& target) const override {
        mesh_object::update_mesh(target);
        halfedge* e = target.edges().data();
        e[5].m_twinedge = &e[0];
        e[1].m_twinedge = &e[30];
        e[3].m_twinedge = &e[3];
        e[20].m_twinedge->m_twinedge = nullptr;
    }
};

// The position of `p` in `base`, or -1 for null.
long index_of(const void* p, const void* base, std::size_t size) {
    if (p == nullptr) return -1;
    return static_cast<long>((static_cast<const char*>(p) - static_cast<const char*>(base)) /
                             static_cast<std::ptrdiff_t>(size));
}

// Everything a build writes or may leave alone, exactly (hexadecimal floats); with `links`, also
// the half-edges (only for a face set whose half-edges belong to its faces).
std::string dump(const indexedfaceset& m, bool links = false) {
    std::ostringstream s;
    s << std::hexfloat << m.num_edges() << ' ' << m.num_lines() << ' ' << m.normals().size() << ' '
      << m.num_texcoords() << ' ' << m.tangents().size() << ' ' << m.get_backface_culling() << ' '
      << m.get_texture_id() << '\n';
    for (const vector3d& v : m.vertices()) s << v.x << ' ' << v.y << ' ' << v.z << '\n';
    for (const face& f : m.faces())
        s << f.vertex[0] << ' ' << f.vertex[1] << ' ' << f.vertex[2] << ' ' << f.style << ' '
          << f.normal.x << ' ' << f.normal.y << ' ' << f.normal.z << ' ' << f.brush << f.pen
          << '\n';
    if (links)
        for (const halfedge& e : m.edges())
            s << e.vertex << ' ' << index_of(e.face, m.faces().data(), sizeof(face)) << ' '
              << index_of(e.next, m.edges().data(), sizeof(halfedge)) << ' '
              << index_of(e.prev, m.edges().data(), sizeof(halfedge)) << ' '
              << index_of(e.m_twinedge, m.edges().data(), sizeof(halfedge)) << ' ' << e.flags
              << '\n';
    for (const texcoord& t : m.texcoords()) s << t.u << ' ' << t.v << '\n';
    for (const carray<vector3d>* a : {&m.normals(), &m.tangents(), &m.bitangents()})
        for (const vector3d& v : *a) s << v.x << ' ' << v.y << ' ' << v.z << '\n';
    for (const graphics::style& t : m.styles())
        s << t.name << ' ' << t.brush << t.pen << t.texture.texture_id << ' '
          << t.texture.norm_map_id << ' ' << t.texture.texture_rotated << ' '
          << static_cast<int>(t.texture.texgen_mode) << ' ' << t.texture.texture_scale.x << '\n';
    return s.str();
}

// Something in every array and a non-default flag, to see what a build leaves alone.
void prefill(indexedfaceset& out) {
    fill(out, cube({0}));
    out.lines().resize(2);
    out.styles().resize(3);
    out.set_backface_culling(true);
    out.set_texture_id(9);
}

}  // namespace

TEST(ShadowVolume, BothBuildersMatchTheReference) {
    mesh_object cubes[] = {mesh_object(cube()),    mesh_object(cube({0, 1, 2, 3, 5})),
                           mesh_object(cube({4})), mesh_object(tangle(7)),
                           mesh_object(tangle(8)), mesh_object(sliver)};
    primitives::cylinder cylinder(2.0, 1.0, 12);
    primitives::cone cone(1.5, 0.7);
    rewired_object rewired;
    std::vector<primitives::basic_object*> objects = {&cylinder, &cone, &rewired};
    for (mesh_object& o : cubes) objects.push_back(&o);
    std::mt19937 rng(7);
    std::uniform_real_distribution<double> coord(-2.0, 2.0);
    for (std::size_t k = 0; k < objects.size(); ++k) {
        const indexedfaceset& src = objects[k]->get_mesh();
        ASSERT_GT(src.num_edges(), 0u);
        // Edge-on to the +z side, within a degree of it, just behind it; a corner; outside.
        std::vector<vector3d> lights = {
            {2.0, 0.5, 1.0},  {2.0, 0.5, 1.0 + 1e-4}, {2.0, 0.5, 1.0 - 1e-9}, {2.0, 0.5, 1.5},
            {1, 1, 1},        {2.5, 3.5, 4.5},        {0.5, 0.5, 0.5},        {0.0, 3.0, 0.0},
            {-3.0, 0.2, 0.1}, {0.5, -2.0, 0.5},       {0.5, -5.0, 0.5}};
        for (int i = 0; i < 20; ++i) lights.emplace_back(coord(rng), coord(rng), coord(rng));
        lights.insert(lights.end(), src.vertices().begin(), src.vertices().end());
        // One output and one volume kept over all lights, rebuilt each time.
        indexedfaceset kept_out, kept_expected;
        prefill(kept_out);
        prefill(kept_expected);
        shadow_volume kept(objects[k], lights[0], std::nan(""), 0);
        for (const vector3d& light : lights) {
            SCOPED_TRACE(testing::Message() << "object " << k << ", light " << light.x << " "
                                            << light.y << " " << light.z);
            indexedfaceset fast, expected, rebuilt;
            prefill(fast);
            prefill(expected);
            src.build_shadow_volume(light, fast);
            reference::shadow_volume(src, light, false, expected);
            EXPECT_EQ(dump(fast), dump(expected));
            shadow_volume v(objects[k], light, 0.0, 0);
            v.rebuild_mesh();
            reference::shadow_volume(src, light, true, rebuilt);
            EXPECT_EQ(dump(v.get_mesh(), true), dump(rebuilt, true));
            src.build_shadow_volume(light, kept_out);
            reference::shadow_volume(src, light, false, kept_expected);
            EXPECT_EQ(dump(kept_out), dump(kept_expected));
            kept.set_light(light, 0.0, 0, true);
            EXPECT_EQ(dump(kept.get_mesh(), true), dump(rebuilt, true));
        }
    }
    indexedfaceset bare, out, expected;  // without half-edges the output is left untouched
    prefill(out);
    prefill(expected);
    bare.build_shadow_volume(vector3d(0.0, 0.0, 5.0), out);
    EXPECT_EQ(dump(out), dump(expected));
}

TEST(ShadowVolume, SetLightRebuildsOnlyOnAChangedLightOrValue) {
    primitives::box b;
    shadow_volume v(&b, vector3d(2.5, 3.5, 4.5), 1.0, 4);
    // Per step: faces, light index, active, value, light x, y, z, largest x of the near corners.
    std::ostringstream log;
    const auto step = [&](double size, vector3d light, double value, std::uint32_t index) {
        b.set_size(vector3d(size, 1.0, 1.0));
        v.set_light(light, value, index, index != 7);
        double x = 0.0;
        for (std::uint32_t i = 0; i < v.get_mesh().num_vertices(); i += 4)
            x = std::fmax(
                x, std::fmax(v.get_mesh().get_vertex(i).x, v.get_mesh().get_vertex(i + 1).x));
        log << v.get_mesh().num_faces() << ' ' << v.get_light_index() << ' ' << v.active() << ' '
            << v.get_light_value() << ' ' << v.get_light().x << ' ' << v.get_light().y << ' '
            << v.get_light().z << ' ' << x << '\n';
    };
    const double nan = std::numeric_limits<double>::quiet_NaN();
    step(1, {2.5, 3.5, 4.5}, 1.0,
         7);  // the light it was made with: no change, index and flag taken
    step(1, {2.5, 3.5, 4.0}, 1.0, 8);
    step(2, {2.5, 3.5, 4.0}, 1.0, 9);  // the same light and value: only the index is taken
    step(2, {2.5, 3.5, 4.0}, 2.0, 9);  // a new value alone rebuilds, from the current mesh
    step(3, {2.6, 3.5, 4.0}, 2.0, 9);  // so does each coordinate, and a NaN value every time
    step(4, {2.6, 3.6, 4.0}, 2.0, 9);
    step(5, {2.6, 3.6, 4.1}, nan, 9);
    step(6, {2.6, 3.6, 4.1}, nan, 9);
    EXPECT_EQ(log.str(),
              "0 7 0 1 2.5 3.5 4.5 0\n12 8 1 1 2.5 3.5 4 1\n12 9 1 1 2.5 3.5 4 1\n"
              "12 9 1 2 2.5 3.5 4 2\n12 9 1 2 2.6 3.5 4 3\n12 9 1 2 2.6 3.6 4 4\n"
              "12 9 1 nan 2.6 3.6 4.1 5\n12 9 1 nan 2.6 3.6 4.1 6\n");
}

TEST(ShadowVolume, LightIsTakenIntoThePlacedMastersObjectSpace) {
    primitives::basic_object parent;
    parent.set_position(vector3d(-4.0, 1.0, 2.0));
    primitives::box placed;
    placed.set_parent(&parent);
    placed.set_position(vector3d(10.0, 2.0, -3.0));
    placed.set_orientation(vector3d(0.2, 1.0, 0.1), 160.0);
    // Seen from the box, the light is on the other side than its world coordinates suggest.
    const vector3d world_light(9.0, 6.0, 3.0);
    shadow_volume v(&placed, world_light, 0.0, 0);
    v.rebuild_mesh();
    indexedfaceset expected;
    const vector3d object_light = primitives::worldspace_to_objectspace(world_light, placed);
    reference::shadow_volume(placed.get_mesh(), object_light, true, expected);
    EXPECT_GT(v.get_mesh().num_faces(), 0u);
    EXPECT_EQ(dump(v.get_mesh(), true), dump(expected, true));
}

TEST(ShadowVolumeDeathTest, OutputMustDifferAndAMasterIsNeeded) {
    indexedfaceset src;
    EXPECT_DEATH(src.build_shadow_volume(vector3d(3.0, 3.0, 3.0), src), "&out != this");
    shadow_volume v(nullptr, vector3d(), 0.0, 0);
    EXPECT_DEATH(v.rebuild_mesh(), "m_master != 0");
}
