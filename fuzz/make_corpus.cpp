// Writes the seed corpora of the fuzz harnesses into FOLDER/<harness>/ (fuzz/corpus/ in the
// repository), each file made with the library's own writers where the library has one:
//
//   scene/        one scene per object type and a hierarchy of several, by write_scene, and
//                 two by write_objects at the stream's default precision
//   tga/          images by write_tga, and a 24-bit variant of one
//   obj/          small OBJ models: triangles, quads with texture coordinates and normals,
//                 materials, comments
//   triangulate/  outlines in the harness's byte encoding (see triangulate_fuzz.cpp)
//   label/        label requests in the harness's byte encoding (see label_fuzz.cpp)
//
// Usage: facet_fuzz_make_corpus FOLDER. Existing files of the same names are replaced.
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include <facet/facet.h>

namespace {

namespace fs = std::filesystem;
const double pi = 3.14159265358979323846;

void write_file(const fs::path& path, const std::string& bytes) {
    std::ofstream out(path, std::ios::binary);
    out << bytes;
    if (!out) throw std::runtime_error("cannot write " + path.string());
}

template <class T>
T& named(T& object, const char* name) {
    object.set_name(name);
    return object;
}

std::vector<vector3d> ring(int n, double radius, double y = 0.0) {
    std::vector<vector3d> points;
    for (int i = 0; i < n; ++i)
        points.emplace_back(radius * std::cos(2 * pi * i / n), y,
                            -radius * std::sin(2 * pi * i / n));
    return points;
}

/// One scene per object type, each object with a name, a position and an orientation.
std::vector<std::pair<std::string, std::function<void(facet::scene&)>>> single_objects() {
    using namespace primitives;
    return {
        {"empty", [](facet::scene& s) { named(s.emplace<basic_object>(), "group"); }},
        {"box",
         [](facet::scene& s) {
             auto& b = named(s.emplace<box>(2.0, 1.0, 3.0), "crate");
             b.set_position(vector3d(1, 2, 3));
             b.set_orientation(vector3d(0, 0, 1), 30.0);
             b.set_material_ref_id("wood.tga");
         }},
        {"cylinder", [](facet::scene& s) { named(s.emplace<cylinder>(4.0, 0.5, 12), "pillar"); }},
        {"cone", [](facet::scene& s) { named(s.emplace<cone>(2.0, 1.0), "spike"); }},
        {"quad",
         [](facet::scene& s) {
             auto& q = named(s.emplace<quad>(), "wall");
             q[0] = vector3d(0, 0, 0);
             q[1] = vector3d(4, 0, 0);
             q[2] = vector3d(4, 3, 0);
             q[3] = vector3d(0, 3, 0);
             q.set_material_ref_id("hatch");
         }},
        {"polygon",
         [](facet::scene& s) {
             auto& p = named(s.emplace<polygon>(), "star");
             for (int i = 0; i < 10; ++i) {
                 const double r = i % 2 ? 0.4 : 1.0, a = pi / 2 + i * pi / 5;
                 p.add_point(vector3d(r * std::cos(a), 0, -r * std::sin(a)));
             }
         }},
        {"line",
         [](facet::scene& s) {
             named(s.emplace<primitives::line>(vector3d(0, 0, 0), vector3d(1, 1, 1)), "edge");
         }},
        {"polyline",
         [](facet::scene& s) {
             named(s.emplace<polyline>(), "zigzag").set_points({{0, 0, 0}, {1, 1, 0}, {2, 0, 0}});
         }},
        {"extruded_polygon",
         [](facet::scene& s) {
             auto& e = named(s.emplace<extruded_polygon>(), "prism");
             e.set_points({{0, 0, 0}, {0, 0, -3}, {1, 0, -3}, {1, 0, -1}, {2, 0, -1}, {2, 0, 0}});
             e.set_extrusion(vector3d(0, 2, 0));
             e.set_extrusion_scaling(vector3d(0.5, 1, 0.5));
         }},
        {"mesh",
         [](facet::scene& s) {
             auto& m = named(s.emplace<mesh>(), "tent");
             m.set_vertices({{0, 0, 0}, {2, 0, 0}, {2, 0, 2}, {0, 0, 2}, {1, 1.5, 1}});
             for (const auto& t :
                  {mesh::triangle(0, 4, 1), mesh::triangle(1, 4, 2), mesh::triangle(2, 4, 3),
                   mesh::triangle(3, 4, 0), mesh::triangle(0, 1, 2), mesh::triangle(0, 2, 3)})
                 m.add_triangle(t);
         }},
        {"path_extrusion",
         [](facet::scene& s) {
             auto& p = named(s.emplace<path_extrusion>(), "pipe");
             p.set_profile(ring(6, 0.2));
             p.set_path({{0, 0, 0}, {2, 0, 0}, {3, 1, 0}, {3, 3, 1}});
         }},
        {"arrow",
         [](facet::scene& s) {
             auto& a = named(s.emplace<arrow>(), "pointer");
             a.set_length(3.0);
             a.set_head_size(0.5, 0.8);
         }},
        {"crosshair", [](facet::scene& s) { named(s.emplace<crosshair>(), "mark").set_size(2.0); }},
        {"custom", [](facet::scene& s) { named(s.emplace<custom>("gear.obj"), "gear"); }},
        {"text", [](facet::scene& s) { named(s.emplace<text>(), "label").set_text("hello"); }},
        {"billboard",
         [](facet::scene& s) {
             auto& b = named(s.emplace<billboard>(), "sign");
             b.set_width(3.0);
             b.set_height(1.5);
         }},
        {"light",
         [](facet::scene& s) {
             named(s.emplace<light>(), "sun").set_position(vector3d(10, 40, 20));
         }},
    };
}

/// A hierarchy of several types under a light, as a host builds it.
facet::scene hierarchy() {
    using namespace primitives;
    facet::scene s;
    auto& table = named(s.emplace<basic_object>(), "table");
    table.set_orientation(vector3d(0, 1, 0), 20.0);
    auto& top = named(s.add(std::make_unique<box>(3.0, 0.2, 2.0), &table), "top");
    top.set_position(vector3d(0, 1, 0));
    auto& vase = named(s.add(std::make_unique<cylinder>(0.6, 0.2, 16), &top), "vase");
    vase.set_position(vector3d(1, 0.2, 1));
    named(s.add(std::make_unique<cone>(0.4, 0.3), &vase), "flower")
        .set_position(vector3d(0, 0.6, 0));
    named(s.emplace<light>(), "lamp").set_position(vector3d(2, 6, 3));
    auto& floor = named(s.emplace<quad>(), "floor");
    floor[0] = vector3d(-5, 0, 5);
    floor[1] = vector3d(5, 0, 5);
    floor[2] = vector3d(5, 0, -5);
    floor[3] = vector3d(-5, 0, -5);
    return s;
}

std::string scene_text(const facet::scene& s) {
    std::ostringstream os;
    facet::write_scene(s, os);
    return os.str();
}

std::string classic_text(const facet::scene& s) {
    std::ostringstream os;
    write_objects(s.objects(), os);
    return os.str();
}

void make_scenes(const fs::path& folder) {
    for (const auto& [name, build] : single_objects()) {
        facet::scene s;
        build(s);
        write_file(folder / (name + ".txt"), scene_text(s));
    }
    const facet::scene h = hierarchy();
    write_file(folder / "hierarchy.txt", scene_text(h));
    write_file(folder / "hierarchy_classic.txt", classic_text(h));
    facet::scene empty;
    write_file(folder / "nothing.txt", scene_text(empty));
}

graphics::bitmap gradient(unsigned short w, unsigned short h) {
    graphics::bitmap b(w, h);
    for (unsigned short y = 0; y < h; ++y)
        for (unsigned short x = 0; x < w; ++x)
            b.set_pixel(x, y, graphics::color(x * 255u / w, y * 255u / h, (x + y) % 256u, 200));
    return b;
}

void make_images(const fs::path& folder) {
    const std::string small = (folder / "gradient_8x4.tga").string();
    graphics::write_tga(small.c_str(), gradient(8, 4));
    graphics::write_tga((folder / "pixel_1x1.tga").string().c_str(), gradient(1, 1));
    graphics::bitmap hatch;
    graphics::make_hatched_texture(graphics::color(0, 0, 0), graphics::color(255, 255, 255), 0.25f,
                                   0.05f, 0.5f, 16, hatch);
    graphics::write_tga((folder / "hatch_16.tga").string().c_str(), hatch);
    graphics::write_tga((folder / "empty_0x5.tga").string().c_str(), graphics::bitmap(0, 5));

    // The 24-bit form of the small image: same header with 24 bits per pixel, alpha dropped.
    std::ifstream in(small, std::ios::binary);
    std::string bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    std::string rgb = bytes.substr(0, 18);
    rgb[16] = 24;
    rgb[17] = 0;
    for (std::size_t i = 18; i + 4 <= bytes.size(); i += 4) rgb += bytes.substr(i, 3);
    write_file(folder / "gradient_8x4_24bit.tga", rgb);
}

void make_models(const fs::path& folder) {
    write_file(folder / "triangle.obj", "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n");
    write_file(folder / "cube.obj",
               "# a unit cube of quads\n"
               "v 0 0 0\nv 1 0 0\nv 1 1 0\nv 0 1 0\nv 0 0 1\nv 1 0 1\nv 1 1 1\nv 0 1 1\n"
               "vt 0 0\nvt 1 0\nvt 1 1\nvt 0 1\n"
               "vn 0 0 -1\nvn 0 0 1\nvn 0 -1 0\nvn 1 0 0\nvn 0 1 0\nvn -1 0 0\n"
               "usemtl red\n"
               "f 1/1/1 4/4/1 3/3/1 2/2/1\nf 5/1/2 6/2/2 7/3/2 8/4/2\n"
               "usemtl blue\n"
               "f 1/1/3 2/2/3 6/3/3 5/4/3\nf 2/1/4 3/2/4 7/3/4 6/4/4\n"
               "f 3//5 4//5 8//5 7//5\nf 4/1 1/2 5/3 8/4\n");
    write_file(folder / "odd.obj",
               "\r\n# odd but readable\r\nv 1e3 -2.5e-1 +3\r\nv 0 0 0 1\r\nv 5 5 5\r\n"
               "vt 0.5 0.5\r\nusemtl\r\nusemtl a\r\nusemtl __default__\r\nf 1 2 3 4 5\r\n"
               "f -1 2\r\ng group\r\no object\r\ns off\r\n");
}

/// Encodes points for the triangulate harness: integers in [-124, 123] as one byte each.
std::string outline(const std::vector<std::pair<int, int>>& points) {
    std::string bytes;
    for (const auto& [x, y] : points) {
        bytes += static_cast<char>(x + 124);
        bytes += static_cast<char>(y + 124);
    }
    return bytes;
}

void make_outlines(const fs::path& folder) {
    write_file(folder / "square.bin", outline({{0, 0}, {10, 0}, {10, 10}, {0, 10}}));
    write_file(folder / "square_clockwise.bin", outline({{0, 0}, {0, 10}, {10, 10}, {10, 0}}));
    write_file(folder / "comb.bin", outline({{0, 0},
                                             {40, 0},
                                             {40, 30},
                                             {35, 30},
                                             {35, 5},
                                             {25, 5},
                                             {25, 30},
                                             {20, 30},
                                             {20, 5},
                                             {10, 5},
                                             {10, 30},
                                             {5, 30},
                                             {5, 5},
                                             {0, 5}}));
    write_file(folder / "repeats_and_collinear.bin",
               outline({{0, 0}, {0, 0}, {5, 0}, {10, 0}, {10, 10}, {10, 10}, {0, 10}, {0, 0}}));
    write_file(folder / "bow_tie.bin", outline({{0, 0}, {10, 10}, {10, 0}, {0, 10}}));
    std::vector<std::pair<int, int>> star;
    for (int i = 0; i < 14; ++i) {
        const double r = i % 2 ? 30.0 : 100.0, a = 2 * pi * i / 14;
        star.emplace_back(static_cast<int>(std::lround(r * std::cos(a))),
                          static_cast<int>(std::lround(r * std::sin(a))));
    }
    write_file(folder / "star.bin", outline(star));
    std::string special = outline({{0, 0}, {10, 0}, {10, 10}});
    special += "\xf8\x7c\xf9\xfa\x7c\x86";  // (NaN, 0), (+inf, -inf), (0, 10)
    write_file(folder / "non_finite.bin", special);
}

/// A label request for the label harness (see the layout there).
std::string label(std::uint8_t choice, std::int32_t size, std::uint8_t w, std::uint8_t h,
                  const std::string& name, const std::string& text) {
    std::string bytes(1, static_cast<char>(choice));
    for (int shift = 24; shift >= 0; shift -= 8) bytes += static_cast<char>(size >> shift);
    bytes += static_cast<char>(w);
    bytes += static_cast<char>(h);
    bytes += std::string("\x00\x00\xff\xff\xe0\xe0\xff\xff", 8);
    if (choice % 8 == 6) bytes += static_cast<char>(name.size()) + name;
    return bytes + text;
}

void make_labels(const fs::path& folder) {
    write_file(folder / "arial.bin", label(0, 0x35, 64, 64, "", "facet"));
    write_file(folder / "wide.bin", label(1, 0x1c, 200, 40, "", "a wider label"));
    write_file(folder / "unknown_font.bin", label(3, 0x25, 48, 48, "", "x"));
    write_file(folder / "named_font.bin", label(6, 0x25, 32, 32, "Liberation Mono", "M"));
    write_file(folder / "utf8.bin", label(2, 0x35, 64, 32, "", "\xc3\xa9t\xc3\xa9 \xe2\x82\xac"));
    write_file(folder / "latin1.bin", label(0, 0x45, 64, 32, "", "caf\xe9"));
    write_file(folder / "huge_size.bin", label(0, 0x02, 16, 16, "", "W"));
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s FOLDER\n", argv[0]);
        return 2;
    }
    try {
        const fs::path root(argv[1]);
        const std::pair<const char*, void (*)(const fs::path&)> parts[] = {
            {"scene", make_scenes},
            {"tga", make_images},
            {"obj", make_models},
            {"triangulate", make_outlines},
            {"label", make_labels}};
        for (const auto& [name, make] : parts) {
            fs::create_directories(root / name);
            make(root / name);
        }
    } catch (const std::exception& e) {
        std::fprintf(stderr, "%s\n", e.what());
        return 1;
    }
    return 0;
}
