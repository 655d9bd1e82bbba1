// Both shadow-volume builders bit for bit against support/reference_shadow_volume.h on many
// meshes, also after edits of the face set; when set_light rebuilds.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <random>
#include <sstream>

#include "facet/primitives.h"
#include "facet/shadow_volume.h"
#include "support/reference_shadow_volume.h"

namespace {

using mesh_data = std::pair<std::vector<vector3d>, std::vector<face>>;

void fill(indexedfaceset& fs, const mesh_data& m) {
    fs.vertices().resize(static_cast<std::uint32_t>(m.first.size()));
    std::copy(m.first.begin(), m.first.end(), fs.vertices().begin());
    fs.faces().resize(static_cast<std::uint32_t>(m.second.size()));
    std::copy(m.second.begin(), m.second.end(), fs.faces().begin());
    fs.compute_normals();
    fs.construct_halfedge_data();
}

// The unit cube laid out like the box primitive's mesh (vertex 5 is (1, 1, 1)), with the sides
// listed (+z, +x, −z, −x, +y, −y; two triangles each).
mesh_data cube(std::vector<int> sides = {0, 1, 2, 3, 4, 5}) {
    mesh_data m{
        {{0, 0, 1}, {1, 0, 1}, {1, 0, 0}, {0, 0, 0}, {0, 1, 1}, {1, 1, 1}, {1, 1, 0}, {0, 1, 0}},
        {}};
    const std::uint32_t c[] = {0, 1, 5, 0, 5, 4, 1, 2, 6, 1, 6, 5, 2, 3, 7, 2, 7, 6,
                               3, 0, 4, 3, 4, 7, 4, 5, 6, 4, 6, 7, 0, 3, 2, 0, 2, 1};
    for (int s : sides)
        for (int k = 6 * s; k < 6 * s + 6; k += 3) m.second.emplace_back(c[k], c[k + 1], c[k + 2]);
    return m;
}

// Shared, non-manifold, flipped and degenerate triangles on few vertices (one repeated).
mesh_data tangle(unsigned seed) {
    std::mt19937 rng(seed);
    std::uniform_real_distribution<double> coord(-2.0, 2.0);
    mesh_data m;
    for (int i = 0; i < 10; ++i) m.first.emplace_back(coord(rng), coord(rng), coord(rng));
    m.first.push_back(m.first[0]);
    for (int i = 0; i < 60; ++i) m.second.emplace_back(rng() % 10, rng() % 10, rng() % 10 + 1);
    return m;
}

// Links and normals as a host may leave them: twin links that do not point back (earlier, later,
// to itself, to a half-edge whose twin is gone) and a half-edge on a face that does not hold it;
// face normals tilted off their faces.
void rewire(indexedfaceset& fs) {
    halfedge* e = fs.edges().data();
    e[5].m_twinedge = &e[0];
    e[1].m_twinedge = &e[30];
    e[3].m_twinedge = &e[3];
    e[20].m_twinedge->m_twinedge = nullptr;
    e[7].face = &fs.faces()[11];
}
void tilt(indexedfaceset& fs) {
    for (face& f : fs.faces())
        f.normal = reference::unit(vector3d(0.3, -0.2, 0.1) +
                                   (f.normal == f.normal ? f.normal : vector3d()));
}

// The mesh, edited by `edit` after each build.
struct mesh_object : primitives::basic_object {
    mesh_data data;
    void (*edit)(indexedfaceset&);
    explicit mesh_object(mesh_data m, void (*e)(indexedfaceset&) = nullptr)
        : data(std::move(m)), edit(e) {}
    void update_mesh(indexedfaceset& target) const override {
        fill(target, data);
        if (edit) edit(target);
    }
};

// Everything a build writes or may leave alone, exactly (hexadecimal floats); with `links` the
// half-edges as positions in the face set's arrays (only where they belong to its faces).
std::string dump(const indexedfaceset& m, bool links = false) {
    std::ostringstream s;
    s << std::hexfloat << m.num_edges() << ' ' << m.num_lines() << ' ' << m.get_backface_culling()
      << ' ' << m.get_texture_id() << '\n';
    const auto put = [&s](const vector3d& v) { s << v.x << ' ' << v.y << ' ' << v.z << '\n'; };
    for (const carray<vector3d>* a : {&m.vertices(), &m.normals(), &m.tangents(), &m.bitangents()})
        for (const vector3d& v : *a) put(v);
    for (const face& f : m.faces()) {
        for (int k = 0; k < 3; ++k) s << f.vertex[k] << ' ' << f.texcoord[k] << ' ';
        s << f.style << ' ' << f.brush << f.pen << '\n';
        for (const vector3d* v : {&f.normal, &f.tangent, &f.bitangent}) put(*v);
    }
    const halfedge* const e0 = m.edges().data();
    for (const halfedge& e : links ? m.edges() : carray<halfedge>())
        s << e.vertex << ' ' << e.face - m.faces().data() << ' ' << e.next - e0 << ' '
          << e.prev - e0 << ' ' << (e.m_twinedge ? e.m_twinedge - e0 : -1) << e.flags << '\n';
    for (const texcoord& t : m.texcoords()) s << t.u << ' ' << t.v << '\n';
    for (const graphics::style& t : m.styles()) s << t.name << ' ' << t.brush << t.pen << '\n';
    return s.str();
}

// Both builders for one object against the reference, light after light, into outputs kept
// between lights (filled with something else at first, to see what a build leaves alone).
struct volume_check {
    primitives::basic_object& object;
    indexedfaceset out, expected;
    shadow_volume volume{&object, {}, std::nan(""), 0};
    explicit volume_check(primitives::basic_object& o) : object(o) {
        for (indexedfaceset* fs : {&out, &expected})
            fill(*fs, cube({0})), fs->lines().resize(2), fs->set_texture_id(9);
    }
    void expect(const vector3d& light) {  // in world coordinates
        SCOPED_TRACE(testing::Message() << "light " << light.x << " " << light.y << " " << light.z);
        const indexedfaceset& src = object.get_mesh();
        src.build_shadow_volume(light, out);
        reference::shadow_volume(src, light, false, expected);
        EXPECT_EQ(dump(out), dump(expected));
        indexedfaceset rebuilt;
        const vector3d object_light = primitives::worldspace_to_objectspace(light, object);
        reference::shadow_volume(src, object_light, true, rebuilt);
        volume.set_light(light, 0.0, 0, true);
        EXPECT_EQ(dump(volume.get_mesh(), true), dump(rebuilt, true));
    }
};

}  // namespace

TEST(ShadowVolume, BothBuildersMatchTheReference) {
    // Closed, open, tangled, rewired, tilted; a zero-area face (normal zero: lit) next to a
    // face; a vertex at NaN; a cube so small that its points are all within 1e-12 of each other
    // (tilted, for normals that are not zero).
    const mesh_data sliver{{{0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {0.5, 0, 1}}, {{0, 1, 2}, {1, 0, 3}}};
    mesh_data with_nan = tangle(11), tiny = cube();
    with_nan.first[4].y = std::nan("");
    for (vector3d& v : tiny.first) v = v * 1e-13;
    mesh_object meshes[] = {mesh_object(cube()),          mesh_object(cube({0, 1, 2, 3, 5})),
                            mesh_object(cube({4})),       mesh_object(tangle(7)),
                            mesh_object(tangle(8)),       mesh_object(cube(), rewire),
                            mesh_object(tangle(9), tilt), mesh_object(sliver),
                            mesh_object(with_nan, tilt),  mesh_object(tiny, tilt)};
    primitives::cylinder cylinder(2.0, 1.0, 12);
    primitives::cone cone(1.5, 0.7);
    // A placed box: seen from it, the light lies elsewhere than in the world.
    primitives::box placed;
    placed.set_position(vector3d(6.0, 3.0, -1.0));
    placed.set_orientation(vector3d(0.2, 1.0, 0.1), 160.0);
    std::vector<primitives::basic_object*> objects = {&cylinder, &cone, &placed};
    for (mesh_object& o : meshes) objects.push_back(&o);
    // Edge-on to the cube's +z side, within a degree of it, just behind it, just above a corner
    // (closer to it than its size); a corner; outside;
    // then seen from the midpoint (0.5, 0, 1) of an edge at one degree from its +z face (either
    // side) with its −y face clearly on the same side, and at 1.05 degrees; 1e-13 from it.
    std::vector<vector3d> lights = {{2.0, 0.5, 1.0},
                                    {2.0, 0.5, 1.0 + 1e-4},
                                    {2.0, 0.5, 1.0 - 1e-9},
                                    {0.01, 0.01, 1.005},
                                    {2.0, 0.5, 1.5},
                                    {0.5, 0.5, 3.0},
                                    {1, 1, 1},
                                    {2.5, 3.5, 4.5},
                                    {0.5, 0.5, 0.5},
                                    {0.0, 3.0, 0.0},
                                    {-3.0, 0.2, 0.1},
                                    {0.5, -2.0, 0.5},
                                    {0.5, 1e-13, 1 + 1e-13},
                                    {9.0, 6.0, 3.0}};
    const double e = 0.017453292519943295;
    for (double t : {1.5, 2.0, 3.0, 7.0})
        for (double z : {e, -e, 1.05 * e})
            lights.push_back(vector3d(0.5, 0.0, 1.0) -
                             t * vector3d(std::sqrt(0.75 - z * z), z > 0 ? -0.5 : 0.5, z));
    for (unsigned seed : {9, 10})
        for (const vector3d& p : tangle(seed).first) lights.push_back(p);
    for (std::size_t k = 0; k < objects.size(); ++k) {
        SCOPED_TRACE(testing::Message() << "object " << k);
        volume_check check(*objects[k]);
        for (const vector3d& light : lights) check.expect(light);
        for (const vector3d& light : objects[k]->get_mesh().vertices()) check.expect(light);
    }
    volume_check untouched(cylinder);  // by a face set without half-edges
    indexedfaceset().build_shadow_volume(vector3d(0.0, 0.0, 5.0), untouched.out);
    EXPECT_EQ(dump(untouched.out), dump(untouched.expected));
}

// A closed UV sphere of `slices` · 2 · (stacks − 1) triangles, radius `scale` about (c, c, c),
// its ring vertices moved by up to `noise` · scale along each axis.
mesh_data sphere(std::uint32_t slices, std::uint32_t stacks, double scale, double c, double noise,
                 std::mt19937_64& rng) {
    std::uniform_real_distribution<double> jitter(-noise / 2, noise / 2);
    const double pi = 3.141592653589793;
    mesh_data m{{{c, c + scale, c}}, {}};
    for (std::uint32_t r = 1; r < stacks; ++r)
        for (std::uint32_t s = 0; s < slices; ++s) {
            const double th = pi * r / stacks, ph = 2 * pi * s / slices;
            m.first.push_back(vector3d(c, c, c) +
                              scale * vector3d(std::sin(th) * std::sin(ph) + jitter(rng),
                                               std::cos(th) + jitter(rng),
                                               std::sin(th) * std::cos(ph) + jitter(rng)));
        }
    const auto south = static_cast<std::uint32_t>(m.first.size());
    m.first.push_back(vector3d(c, c - scale, c));
    const auto at = [slices](std::uint32_t r, std::uint32_t s) {
        return 1 + (r - 1) * slices + s % slices;
    };
    for (std::uint32_t s = 0; s < slices; ++s) {
        m.second.emplace_back(0, at(1, s), at(1, s + 1));
        m.second.emplace_back(south, at(stacks - 1, s + 1), at(stacks - 1, s));
        for (std::uint32_t r = 1; r + 1 < stacks; ++r) {
            m.second.emplace_back(at(r, s), at(r + 1, s), at(r + 1, s + 1));
            m.second.emplace_back(at(r, s), at(r + 1, s + 1), at(r, s + 1));
        }
    }
    return m;
}

TEST(ShadowVolume, RandomSpheresSeenFromTheSilhouetteBounds) {
    // Spheres of any size and place, some uneven or tilted; lights around them and where an
    // edge's face lies within a few units of rounding of the bounds (±1 degree, or edge-on).
    std::mt19937_64 rng(5);
    std::uniform_real_distribution<double> u(0.0, 1.0);
    const double e = 0.017453292519943295, nudge[] = {0.0, 1e-12, -1e-9, 1e-7, -1e-5};
    for (int trial = 0; trial < 40; ++trial) {
        const double scale = std::pow(10.0, 12 * u(rng) - 6);
        const double c = trial % 3 == 0 ? std::pow(10.0, 8 * u(rng)) : 0.0;
        mesh_object object(sphere(3 + rng() % 14, 2 + rng() % 9, scale, c, 0.2 * (trial % 2), rng),
                           trial % 5 == 0 ? tilt : nullptr);
        volume_check check(object);
        const indexedfaceset& src = object.get_mesh();
        for (int k = 0; k < 8; ++k) {
            const halfedge& h = src.get_edge(static_cast<std::uint32_t>(rng() % src.num_edges()));
            const vector3d m = (src.get_vertex(h.vertex) + src.get_vertex(h.next->vertex)) / 2.0;
            const vector3d side = reference::unit(cross(h.face->normal, vector3d(0.3, 0.7, 0.1)));
            const double z = e * (static_cast<double>(k % 3) - 1.0) * (1.0 + nudge[rng() % 5]);
            check.expect(k == 0 ? vector3d(c, c, c) + scale * 3.0 * vector3d(u(rng), u(rng), 1.0)
                                : m - std::pow(10.0, 3 * u(rng) - 1) * scale *
                                          (z * h.face->normal + std::sqrt(1 - z * z) * side));
        }
    }
}

TEST(ShadowVolume, EditsOfTheFaceSetReachTheNextVolume) {
    // The first volumes build the face sets' edge tables; every edit must drop them.
    const std::function<void(indexedfaceset&, indexedfaceset&)> edits[] = {
        [](auto& fs, auto&) { fs.faces()[8].normal = vector3d(0, -1, 0); },
        [](auto& fs, auto&) { fs.edges()[25].m_twinedge = nullptr; },
        [](auto& fs, auto&) { fs.vertices()[5] = vector3d(1.5, 1.5, 1.5), fs.compute_normals(); },
        [](auto& fs, auto&) { fs.faces()[0] = face(0, 1, 4), fs.construct_halfedge_data(); },
        [](auto& fs, auto& other) { fs.swap(other); }};
    for (const auto& edit : edits) {
        mesh_object first(cube()), second(cube({0, 1, 2, 3, 5}));
        volume_check checks[] = {volume_check(first), volume_check(second)};
        // A half-edge of `second` on a face of `first`, which may change unseen by `second`.
        second.get_mesh().edges()[24].face = &first.get_mesh().faces()[8];
        for (volume_check& c : checks) c.expect(vector3d(0.5, 3.0, 0.5));
        edit(first.get_mesh(), second.get_mesh());
        for (volume_check& c : checks) c.expect(vector3d(0.6, 3.0, 0.5));
    }
}

TEST(ShadowVolume, SetLightRebuildsOnlyOnAChangedLightOrValue) {
    primitives::box b;
    shadow_volume v(&b, vector3d(2.5, 3.5, 4.5), 1.0, 4);
    // Each coordinate and the value count, compared exactly (a NaN always differs); the index
    // and the flag are taken either way. A rebuild makes a new mesh.
    const vector3d lights[] = {{2.5, 3.5, 4.5}, {2.5, 3.5, 4.0}, {2.5, 3.5, 4.0}, {2.5, 3.5, 4.0},
                               {2.6, 3.5, 4.0}, {2.6, 3.6, 4.0}, {2.6, 3.6, 4.0}, {2.6, 3.6, 4.0}};
    const double values[] = {1.0, 1.0, 1.0, 2.0, 2.0, 2.0, std::nan(""), std::nan("")};
    for (std::uint32_t i = 0; i < 8; ++i) {
        const indexedfaceset* before = &v.get_mesh();
        v.set_light(lights[i], values[i], i, i % 2 == 0);
        EXPECT_TRUE((&v.get_mesh() != before) == (i != 0 && i != 2) && v.get_light() == lights[i] &&
                    v.get_light_index() == i && v.active() == (i % 2 == 0) &&
                    (v.get_light_value() == values[i]) != (i > 5))
            << i;
    }
}

TEST(ShadowVolumeDeathTest, BadInput) {
    indexedfaceset src;
    EXPECT_DEATH(src.build_shadow_volume(vector3d(3.0, 3.0, 3.0), src), "&out != this");
    shadow_volume v(nullptr, vector3d(), 0.0, 0);
    EXPECT_DEATH(v.rebuild_mesh(), "m_master != 0");
    // A vertex that does not exist, read by both rules on a paired edge; on a half-edge whose
    // twin is open (20), only by the oriented rule when it starts at the larger index.
    mesh_object paired(cube()), lone(cube(), rewire);
    paired.get_mesh().edges()[0].vertex = 99;
    lone.get_mesh().edges()[20].vertex = 99;
    EXPECT_DEATH(paired.get_mesh().build_shadow_volume(vector3d(3, 3, 3), src), "index < m_size");
    lone.get_mesh().build_shadow_volume(vector3d(3.0, 3.0, 3.0), src);
    shadow_volume of_lone(&lone, vector3d(3.0, 3.0, 3.0), 0.0, 0);
    EXPECT_DEATH(of_lone.rebuild_mesh(), "index < m_size");
}
