#include "gltf_writer.h"

#include <tiny_gltf.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <map>
#include <ostream>
#include <tuple>
#include <utility>
#include <vector>

#include "commands.h"
#include "facet/ifs.h"
#include "facet/objects.h"
#include "output_file.h"

namespace facet_tool {

namespace {

using std::uint32_t;

bool finite(const vector3d& v) {
    return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z);
}

// `v` scaled to unit length, or `fallback` when `v` is zero or not finite.
vector3d unit_or(const vector3d& v, const vector3d& fallback) {
    const double len = std::sqrt(v.x * v.x + v.y * v.y + v.z * v.z);
    if (!(len > 1e-12) || !std::isfinite(len)) return fallback;
    return vector3d(v.x / len, v.y / len, v.z / len);
}

// A unit vector perpendicular to the unit vector `n`.
vector3d perpendicular(const vector3d& n) {
    const vector3d axis = std::fabs(n.x) < 0.9 ? vector3d(1.0, 0.0, 0.0) : vector3d(0.0, 1.0, 0.0);
    return unit_or(cross(n, axis), vector3d(0.0, 0.0, 1.0));
}

// The unit quaternion (x, y, z, w) of a rotation by `degrees` about `axis`; identity for a zero
// axis or angle.
std::vector<double> quaternion(const vector3d& axis, double degrees) {
    const vector3d a = unit_or(axis, vector3d());
    if (degrees == 0.0 || (a.x == 0.0 && a.y == 0.0 && a.z == 0.0)) return {};
    const double half = degrees * (3.14159265358979323846 / 180.0) * 0.5;
    const double s = std::sin(half);
    return {a.x * s, a.y * s, a.z * s, std::cos(half)};
}

// A triangle primitive: the faces of one material, by index.
struct face_group {
    int material = 0;
    std::vector<uint32_t> faces;
};

// What one object contributes, gathered before the buffer is sized.
struct object_plan {
    const primitives::basic_object* object = nullptr;
    const indexedfaceset* mesh = nullptr;
    std::vector<face_group> groups;
    bool normals = false;    // a corner normal per face corner
    bool texcoords = false;  // every texture-coordinate index in range
    bool tangents = false;
    int line_material = -1;
    std::vector<uint32_t> edge_ends;  // outline edges as pairs of vertex indices
    int mesh_index = -1;
};

// One material per distinct (name, color, double-sided) appearance.
class material_table {
public:
    explicit material_table(tinygltf::Model& model) : m_model(model) {}

    int get(const std::string& name, const graphics::color& c, bool double_sided) {
        const auto key =
            std::make_tuple(name, c.get_red_component(), c.get_green_component(),
                            c.get_blue_component(), c.get_alpha_component(), double_sided);
        const auto found = m_index.find(key);
        if (found != m_index.end()) return found->second;
        tinygltf::Material m;
        m.name = name;
        m.pbrMetallicRoughness.baseColorFactor = {
            c.get_red_component() / 255.0, c.get_green_component() / 255.0,
            c.get_blue_component() / 255.0, c.get_alpha_component() / 255.0};
        m.pbrMetallicRoughness.metallicFactor = 0.0;
        m.pbrMetallicRoughness.roughnessFactor = 1.0;
        m.alphaMode = c.get_alpha_component() < 255 ? "BLEND" : "OPAQUE";
        m.doubleSided = double_sided;
        const int index = static_cast<int>(m_model.materials.size());
        m_model.materials.push_back(std::move(m));
        m_index.emplace(key, index);
        return index;
    }

private:
    tinygltf::Model& m_model;
    std::map<std::tuple<std::string, unsigned, unsigned, unsigned, unsigned, bool>, int> m_index;
};

// Groups the faces by style: one group per style index in use, in style order, then the faces
// whose index names no style (drawn with the object's brush).
void plan_faces(object_plan& plan, material_table& materials) {
    const indexedfaceset& m = *plan.mesh;
    const uint32_t nf = m.num_faces();
    if (nf == 0) return;
    const uint32_t ns = m.num_styles();
    std::vector<uint32_t> count(ns + 1, 0);
    const face* faces = m.faces().data();
    auto bucket = [&](const face& f) {
        return f.style >= 0 && static_cast<uint32_t>(f.style) < ns ? static_cast<uint32_t>(f.style)
                                                                   : ns;
    };
    for (uint32_t i = 0; i < nf; ++i) ++count[bucket(faces[i])];
    const bool double_sided = !m.get_backface_culling();
    std::vector<uint32_t> group_of(ns + 1, 0);
    for (uint32_t b = 0; b <= ns; ++b) {
        if (count[b] == 0) continue;
        face_group g;
        if (b < ns) {
            const graphics::style& st = m.get_style(b);
            g.material = materials.get(st.name, st.brush.get_color(), double_sided);
        } else {
            g.material = materials.get(plan.object->get_name(),
                                       plan.object->get_brush().get_color(), double_sided);
        }
        g.faces.reserve(count[b]);
        group_of[b] = static_cast<uint32_t>(plan.groups.size());
        plan.groups.push_back(std::move(g));
    }
    for (uint32_t i = 0; i < nf; ++i) plan.groups[group_of[bucket(faces[i])]].faces.push_back(i);

    plan.normals = m.normals().size() >= 3ull * nf;
    plan.texcoords = m.num_texcoords() > 0;
    for (uint32_t i = 0; i < nf && plan.texcoords; ++i)
        for (uint32_t k = 0; k < 3; ++k)
            if (faces[i].texcoord[k] >= m.num_texcoords()) plan.texcoords = false;
    plan.tangents =
        plan.texcoords && m.tangents().size() >= 3ull * nf && m.bitangents().size() >= 3ull * nf;
}

// The drawn half-edges as vertex pairs; an edge drawn on both of its half-edges once.
void plan_edges(object_plan& plan) {
    const indexedfaceset& m = *plan.mesh;
    const halfedge* edges = m.edges().data();
    for (uint32_t i = 0; i < m.num_edges(); ++i) {
        const halfedge& e = edges[i];
        if (!e.drawn() || e.next == nullptr) continue;
        const halfedge* twin = e.m_twinedge;
        if (twin != nullptr && twin->drawn() && twin < &e) continue;
        plan.edge_ends.push_back(e.vertex);
        plan.edge_ends.push_back(e.next->vertex);
    }
}

// Hands out float accessors in one buffer, each in its own buffer view.
class buffer_packer {
public:
    buffer_packer(tinygltf::Model& model, std::size_t floats) : m_model(model) {
        m_model.buffers.emplace_back();
        m_model.buffers[0].data.resize(floats * sizeof(float));
    }

    // A new accessor of `count` elements of `components` floats; returns where to write them.
    float* take(std::size_t count, int components, int& accessor) {
        const std::size_t bytes = count * components * sizeof(float);
        tinygltf::BufferView view;
        view.buffer = 0;
        view.byteOffset = m_used;
        view.byteLength = bytes;
        view.target = TINYGLTF_TARGET_ARRAY_BUFFER;
        tinygltf::Accessor a;
        a.bufferView = static_cast<int>(m_model.bufferViews.size());
        a.componentType = TINYGLTF_COMPONENT_TYPE_FLOAT;
        a.count = count;
        a.type = components == 2 ? TINYGLTF_TYPE_VEC2
                                 : (components == 3 ? TINYGLTF_TYPE_VEC3 : TINYGLTF_TYPE_VEC4);
        m_model.bufferViews.push_back(view);
        accessor = static_cast<int>(m_model.accessors.size());
        m_model.accessors.push_back(std::move(a));
        float* out = reinterpret_cast<float*>(m_model.buffers[0].data.data() + m_used);
        m_used += bytes;
        return out;
    }

private:
    tinygltf::Model& m_model;
    std::size_t m_used = 0;
};

// Running minimum and maximum of written positions, for the POSITION accessor.
struct float_bounds {
    float min[3] = {std::numeric_limits<float>::max(), std::numeric_limits<float>::max(),
                    std::numeric_limits<float>::max()};
    float max[3] = {std::numeric_limits<float>::lowest(), std::numeric_limits<float>::lowest(),
                    std::numeric_limits<float>::lowest()};

    void write(float* out, const vector3d& p) {
        out[0] = static_cast<float>(p.x);
        out[1] = static_cast<float>(p.y);
        out[2] = static_cast<float>(p.z);
        for (int i = 0; i < 3; ++i) {
            min[i] = std::min(min[i], out[i]);
            max[i] = std::max(max[i], out[i]);
        }
    }
    void add(const float_bounds& o) {
        for (int i = 0; i < 3; ++i) {
            min[i] = std::min(min[i], o.min[i]);
            max[i] = std::max(max[i], o.max[i]);
        }
    }
    void store(tinygltf::Accessor& a) const {
        a.minValues.assign(min, min + 3);
        a.maxValues.assign(max, max + 3);
    }
};

void write3(float* out, const vector3d& v) {
    out[0] = static_cast<float>(v.x);
    out[1] = static_cast<float>(v.y);
    out[2] = static_cast<float>(v.z);
}

std::string object_label(const primitives::basic_object& o) {
    return o.class_id() + " '" + o.get_name() + "'";
}

// Throws when a vertex used by the object is not finite (it could not be bounded).
void check_vertices(const object_plan& plan) {
    const indexedfaceset& m = *plan.mesh;
    for (uint32_t i = 0; i < m.num_vertices(); ++i)
        if (!finite(m.get_vertex(i)))
            throw tool_error(object_label(*plan.object) + ": vertex " + std::to_string(i) +
                             " is not finite");
}

// Where the corners of a run of faces go: one array per attribute (null when not written).
struct corner_arrays {
    float* pos = nullptr;
    float* nrm = nullptr;
    float* tex = nullptr;
    float* tan = nullptr;
};

// Writes the corners of faces[begin, end) of `group`, starting at corner 3 * begin of `out`,
// and widens `bounds` by their positions.
void pack_face_range(const object_plan& plan, const face_group& group, std::size_t begin,
                     std::size_t end, corner_arrays out, float_bounds& bounds) {
    const indexedfaceset& m = *plan.mesh;
    const vector3d* vertices = m.vertices().data();
    const face* faces = m.faces().data();
    const vector3d* normals = m.normals().data();
    const texcoord* texcoords = m.texcoords().data();
    const vector3d* tangents = m.tangents().data();
    const vector3d* bitangents = m.bitangents().data();
    const vector3d up(0.0, 0.0, 1.0);
    float* pos = out.pos + 9 * begin;
    float* nrm = out.nrm + 9 * begin;
    float* tex = out.tex != nullptr ? out.tex + 6 * begin : nullptr;
    float* tan = out.tan != nullptr ? out.tan + 12 * begin : nullptr;
    for (std::size_t g = begin; g < end; ++g) {
        const uint32_t fi = group.faces[g];
        const face& f = faces[fi];
        const vector3d face_normal = unit_or(f.normal, up);
        for (uint32_t k = 0; k < 3; ++k) {
            const std::size_t corner = 3ull * fi + k;
            bounds.write(pos, vertices[f.vertex[k]]);
            pos += 3;
            const vector3d normal =
                plan.normals ? unit_or(normals[corner], face_normal) : face_normal;
            write3(nrm, normal);
            nrm += 3;
            if (tex != nullptr) {
                const texcoord& t = texcoords[f.texcoord[k]];
                tex[0] = t.u;
                tex[1] = t.v;
                tex += 2;
            }
            if (tan != nullptr) {
                const vector3d t = unit_or(tangents[corner], vector3d());
                const bool zero = t.x == 0.0 && t.y == 0.0 && t.z == 0.0;
                write3(tan, zero ? perpendicular(normal) : t);
                tan[3] = !zero && dot(cross(normal, t), bitangents[corner]) < 0.0 ? -1.0f : 1.0f;
                tan += 4;
            }
        }
    }
}

// The triangle primitive of `group`: three vertices per face.
tinygltf::Primitive pack_faces(const object_plan& plan, const face_group& group,
                               buffer_packer& packer, tinygltf::Model& model) {
    const std::size_t nf = group.faces.size();
    tinygltf::Primitive prim;
    prim.mode = TINYGLTF_MODE_TRIANGLES;
    prim.material = group.material;
    int pos_acc = 0, nrm_acc = 0, tex_acc = 0, tan_acc = 0;
    corner_arrays out;
    out.pos = packer.take(3 * nf, 3, pos_acc);
    out.nrm = packer.take(3 * nf, 3, nrm_acc);
    if (plan.texcoords) out.tex = packer.take(3 * nf, 2, tex_acc);
    if (plan.tangents) out.tan = packer.take(3 * nf, 4, tan_acc);
    float_bounds bounds;
    pack_face_range(plan, group, 0, nf, out, bounds);
    bounds.store(model.accessors[pos_acc]);
    prim.attributes["POSITION"] = pos_acc;
    prim.attributes["NORMAL"] = nrm_acc;
    if (plan.texcoords) prim.attributes["TEXCOORD_0"] = tex_acc;
    if (plan.tangents) prim.attributes["TANGENT"] = tan_acc;
    return prim;
}

// A LINES primitive over `ends` (pairs of vertex indices of the object's face set).
tinygltf::Primitive pack_lines(const object_plan& plan, const std::vector<uint32_t>& ends,
                               buffer_packer& packer, tinygltf::Model& model) {
    tinygltf::Primitive prim;
    prim.mode = TINYGLTF_MODE_LINE;
    prim.material = plan.line_material;
    int pos_acc = 0;
    float* pos = packer.take(ends.size(), 3, pos_acc);
    float_bounds bounds;
    for (const uint32_t v : ends) {
        bounds.write(pos, plan.mesh->get_vertex(v));
        pos += 3;
    }
    bounds.store(model.accessors[pos_acc]);
    prim.attributes["POSITION"] = pos_acc;
    return prim;
}

// The line records of a face set as vertex pairs; records beyond the vertices are left out.
std::vector<uint32_t> line_ends(const indexedfaceset& m) {
    std::vector<uint32_t> ends;
    ends.reserve(2ull * m.num_lines());
    for (const line& l : m.lines())
        if (l.start < m.num_vertices() && l.end < m.num_vertices()) {
            ends.push_back(l.start);
            ends.push_back(l.end);
        }
    return ends;
}

// The node of `o`: name, translation and rotation.
tinygltf::Node make_node(const primitives::basic_object& o) {
    tinygltf::Node node;
    node.name = o.get_name();
    const vector3d& p = o.get_position();
    const primitives::axis_angle r = o.get_orientation();
    if (!finite(p) || !finite(r.axis) || !std::isfinite(r.angle))
        throw tool_error(object_label(o) + ": position or orientation is not finite");
    if (p.x != 0.0 || p.y != 0.0 || p.z != 0.0) node.translation = {p.x, p.y, p.z};
    node.rotation = quaternion(r.axis, r.angle);
    return node;
}

tinygltf::Model build_model(const facet::scene& s, bool edges, progress& report,
                            gltf_times& times) {
    tinygltf::Model model;
    model.asset.version = "2.0";
    model.asset.generator = "facet";
    material_table materials(model);

    stopwatch meshes_clock;
    report.stage("building meshes");
    std::vector<object_plan> plans(s.size());
    std::size_t floats = 0;
    std::size_t done = 0;
    std::vector<std::vector<uint32_t>> lines(s.size());
    for (std::size_t i = 0; i < s.size(); ++i) {
        object_plan& plan = plans[i];
        plan.object = &s[i];
        plan.mesh = &plan.object->get_mesh();
        check_vertices(plan);
        plan_faces(plan, materials);
        lines[i] = line_ends(*plan.mesh);
        for (const face_group& g : plan.groups)
            floats += g.faces.size() * 3 * (6 + (plan.texcoords ? 2 : 0) + (plan.tangents ? 4 : 0));
        floats += lines[i].size() * 3;
        report.update(static_cast<double>(++done) / static_cast<double>(s.size()));
    }
    times.meshes += meshes_clock.seconds();

    stopwatch edges_clock;
    if (edges) {
        report.stage("collecting edges");
        for (std::size_t i = 0; i < plans.size(); ++i) {
            plan_edges(plans[i]);
            floats += plans[i].edge_ends.size() * 3;
            report.update(static_cast<double>(i + 1) / static_cast<double>(plans.size()));
        }
    }
    times.edges += edges_clock.seconds();

    // Pack: the buffer is sized once, then every primitive writes its own part of it.
    stopwatch pack_clock;
    report.stage("packing meshes");
    double edge_seconds = 0.0;
    if (floats > 0) {
        buffer_packer packer(model, floats);
        for (std::size_t i = 0; i < plans.size(); ++i) {
            object_plan& plan = plans[i];
            const bool has_lines = !lines[i].empty() || !plan.edge_ends.empty();
            if (plan.groups.empty() && !has_lines) continue;
            if (has_lines)
                plan.line_material = materials.get(plan.object->get_name() + " lines",
                                                   plan.object->get_pen().get_color(), false);
            tinygltf::Mesh mesh;
            mesh.name = plan.object->get_name();
            for (const face_group& g : plan.groups)
                mesh.primitives.push_back(pack_faces(plan, g, packer, model));
            if (!lines[i].empty())
                mesh.primitives.push_back(pack_lines(plan, lines[i], packer, model));
            if (!plan.edge_ends.empty()) {
                stopwatch edge_clock;
                mesh.primitives.push_back(pack_lines(plan, plan.edge_ends, packer, model));
                edge_seconds += edge_clock.seconds();
            }
            plan.mesh_index = static_cast<int>(model.meshes.size());
            model.meshes.push_back(std::move(mesh));
            report.update(static_cast<double>(i + 1) / static_cast<double>(plans.size()));
        }
    }
    times.meshes += pack_clock.seconds() - edge_seconds;
    times.edges += edge_seconds;

    // Nodes: one per object in scene order; children under their parent's node.
    model.nodes.reserve(s.size());
    for (std::size_t i = 0; i < s.size(); ++i) {
        model.nodes.push_back(make_node(s[i]));
        model.nodes.back().mesh = plans[i].mesh_index;
    }
    tinygltf::Scene root;
    root.name = "scene";  // so that a scene without nodes is still written as an object
    for (std::size_t i = 0; i < s.size(); ++i) {
        const primitives::basic_object* parent = s[i].get_parent();
        const std::ptrdiff_t p = parent == nullptr ? -1 : s.index_of(*parent);
        if (p < 0)
            root.nodes.push_back(static_cast<int>(i));
        else
            model.nodes[static_cast<std::size_t>(p)].children.push_back(static_cast<int>(i));
    }
    model.scenes.push_back(std::move(root));
    model.defaultScene = 0;
    return model;
}

}  // namespace

void write_gltf(const facet::scene& s, const std::string& path, bool edges, progress& report,
                gltf_times* times) {
    check_gltf_path(path);
    gltf_times local;
    gltf_times& t = times != nullptr ? *times : local;
    tinygltf::Model model = build_model(s, edges, report, t);
    stopwatch write_clock;
    report.stage("writing " + path);
    const bool binary = extension_of(path) == ".glb";
    write_file_atomically(path, [&](std::ostream& out) {
        tinygltf::TinyGLTF writer;
        if (!writer.WriteGltfSceneToStream(&model, out, false, binary))
            throw tool_error(path + ": cannot write glTF");
    });
    report.finish();
    t.write += write_clock.seconds();
}

bool is_gltf_path(const std::string& path) {
    const std::string ext = extension_of(path);
    return ext == ".glb" || ext == ".gltf";
}

void check_gltf_path(const std::string& path) {
    if (!is_gltf_path(path))
        throw tool_error(path + ": unknown output extension '" + extension_of(path) +
                         "': expected .glb or .gltf");
}

}  // namespace facet_tool
