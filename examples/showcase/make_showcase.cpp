// Writes the showcase: a scene of every primitive kind (showcase.txt) and the OBJ model of a gear
// that one of its custom objects draws (gear.obj), into the folder given as the argument.
//
// The scene is built with the host kit (facet::scene) and written with facet::write_scene, so it
// reads back exactly. Units are the library's: 10000 to the metre, y up. Material references
// that the facet tool understands: "hatch" (the hatch pattern as texture).
#include <facet/facet.h>

#include <cmath>
#include <cstdio>
#include <fstream>
#include <string>

namespace {

const double pi = 3.14159265358979323846;

graphics::brush brush_of(int r, int g, int b, int a = 255) {
    return graphics::brush(graphics::color(r, g, b, a));
}

graphics::pen pen_of(int r, int g, int b, unsigned width) {
    return graphics::pen(graphics::color(r, g, b, 255), width);
}

template <class T>
T& named(T& object, const char* name) {
    object.set_name(name);
    return object;
}

// A spur gear lying in the OBJ's x-y plane, z up (the importer turns z into the scene's y): 14
// teeth, outer radius 0.32 m, 0.08 m thick. Caps are triangle fans, sides are quads.
void write_gear(const std::string& path) {
    std::ofstream out(path, std::ios::binary);
    out << "# A spur gear, metres, z up: made by facet's showcase generator\n";
    const int teeth = 14, per_tooth = 4, n = teeth * per_tooth;
    const double outer = 0.32, root = 0.26, thickness = 0.08;
    const double shape[per_tooth][2] = {{0.0, root}, {0.18, outer}, {0.5, outer}, {0.68, root}};
    for (double z : {0.0, thickness}) {
        for (int t = 0; t < teeth; ++t)
            for (const auto& s : shape) {
                const double a = 2 * pi * (t + s[0]) / teeth;
                out << "v " << s[1] * std::cos(a) << ' ' << s[1] * std::sin(a) << ' ' << z << '\n';
            }
        out << "v 0 0 " << z << '\n';
    }
    const int bottom_centre = n + 1, top = n + 1, top_centre = 2 * n + 2;  // 1-based
    out << "usemtl face\n";
    for (int i = 0; i < n; ++i) {
        const int a = i + 1, b = (i + 1) % n + 1;
        out << "f " << bottom_centre << ' ' << b << ' ' << a << '\n';
        out << "f " << top_centre << ' ' << top + a << ' ' << top + b << '\n';
    }
    out << "usemtl rim\n";
    for (int i = 0; i < n; ++i) {
        const int a = i + 1, b = (i + 1) % n + 1;
        out << "f " << a << ' ' << b << ' ' << top + b << ' ' << top + a << '\n';
    }
}

facet::scene make_scene() {
    using namespace primitives;
    facet::scene s;

    auto& ground = named(s.emplace<box>(60000.0, 1000.0, 40000.0), "ground");
    ground.set_position(vector3d(-30000, -1000, -20000));
    ground.set_brush(brush_of(200, 205, 210));

    // A hierarchy: a group holding a plinth, a column on it, a spire on the column and a
    // crosshair marking the spire's tip.
    auto& table = named(s.emplace<basic_object>(), "table");
    table.set_position(vector3d(-16000, 0, -2000));
    table.set_orientation(vector3d(0, 1, 0), 20.0);
    auto& plinth = named(s.add(std::make_unique<box>(6000.0, 2000.0, 6000.0), &table), "plinth");
    plinth.set_brush(brush_of(150, 110, 80));
    auto& column = named(s.add(std::make_unique<cylinder>(8000.0, 1500.0, 48), &plinth), "column");
    column.set_position(vector3d(3000, 2000, 3000));
    column.set_brush(brush_of(90, 140, 220));
    auto& spire = named(s.add(std::make_unique<cone>(5000.0, 2000.0), &column), "spire");
    spire.set_position(vector3d(0, 8000, 0));
    spire.set_brush(brush_of(230, 120, 60));
    auto& tip = named(s.add(std::make_unique<crosshair>(), &spire), "tip");
    tip.set_size(3000.0);
    tip.set_position(vector3d(0, 5000, 0));
    tip.set_pen(pen_of(200, 0, 0, 2));

    auto& gear = named(s.emplace<custom>("gear.obj"), "gear");
    gear.set_position(vector3d(-2000, 0, 4000));
    gear.set_brush(brush_of(180, 180, 190));
    auto& gear_label = named(s.add(std::make_unique<text>(), &gear), "gear_label");
    gear_label.set_text("gear");
    gear_label.set_position(vector3d(3200, 4000, 3200));

    // A hatched wall behind everything.
    auto& wall = named(s.emplace<quad>(), "wall");
    wall[0] = vector3d(-28000, 0, -16000);
    wall[1] = vector3d(6000, 0, -16000);
    wall[2] = vector3d(6000, 14000, -16000);
    wall[3] = vector3d(-28000, 14000, -16000);
    wall.set_material_ref_id("hatch");

    // A five-pointed star lying on the ground, counter-clockwise seen from above.
    auto& star = named(s.emplace<polygon>(), "star");
    for (int i = 0; i < 10; ++i) {
        const double r = i % 2 ? 2000.0 : 5000.0, a = pi / 2 + i * pi / 5;
        star.add_point(vector3d(r * std::cos(a), 0, -r * std::sin(a)));
    }
    star.set_position(vector3d(-6000, 20, 12000));
    star.set_brush(brush_of(250, 210, 40));

    // An L-shaped prism, tapering upwards.
    auto& prism = named(s.emplace<extruded_polygon>(), "prism");
    for (const vector3d& p :
         {vector3d(0, 0, 0), vector3d(0, 0, -6000), vector3d(2000, 0, -6000),
          vector3d(2000, 0, -2000), vector3d(5000, 0, -2000), vector3d(5000, 0, 0)})
        prism.add_point(p);
    prism.set_extrusion(vector3d(0, 5000, 0));
    prism.set_extrusion_scaling(vector3d(0.8, 1, 0.8));
    prism.set_position(vector3d(10000, 0, -4000));
    prism.set_brush(brush_of(120, 200, 120));

    // A pipe swept along a bent path.
    auto& pipe = named(s.emplace<path_extrusion>(), "pipe");
    std::vector<vector3d> ring;
    for (int i = 0; i < 20; ++i)
        ring.emplace_back(700 * std::cos(2 * pi * i / 20), 700 * std::sin(2 * pi * i / 20), 0);
    pipe.set_profile(ring);
    pipe.set_path(
        {{8000, 700, 10000}, {16000, 700, 10000}, {21000, 5000, 10000}, {21000, 9000, 4000}});
    pipe.set_brush(brush_of(200, 80, 160));

    // A tent as a free mesh.
    auto& tent = named(s.emplace<mesh>(), "tent");
    tent.set_vertices({{0, 0, 0}, {6000, 0, 0}, {6000, 0, 6000}, {0, 0, 6000}, {3000, 4500, 3000}});
    for (const auto& t :
         {mesh::triangle(0, 4, 1), mesh::triangle(1, 4, 2), mesh::triangle(2, 4, 3),
          mesh::triangle(3, 4, 0), mesh::triangle(0, 1, 2), mesh::triangle(0, 2, 3)})
        tent.add_triangle(t);
    tent.set_position(vector3d(18000, 0, -14000));
    tent.set_brush(brush_of(240, 240, 240));

    // Lines: a red edge along the front, a blue zigzag and an arrow pointing along +x.
    auto& edge =
        named(s.emplace<primitives::line>(vector3d(-28000, 30, 18000), vector3d(28000, 30, 18000)),
              "edge");
    edge.set_pen(pen_of(220, 30, 30, 3));
    auto& zigzag = named(s.emplace<polyline>(), "zigzag");
    zigzag.set_points({{-24000, 30, 8000},
                       {-21000, 30, 14000},
                       {-18000, 30, 8000},
                       {-15000, 30, 14000},
                       {-12000, 30, 8000}});
    zigzag.set_pen(pen_of(30, 60, 220, 2));
    auto& pointer = named(s.emplace<arrow>(), "pointer");
    pointer.set_length(9000.0);
    pointer.set_head_size(1500.0, 2000.0);
    pointer.set_position(vector3d(2000, 9000, 8000));
    pointer.set_pen(pen_of(0, 150, 0, 3));

    auto& title = named(s.emplace<text>(), "title");
    title.set_text("facet");
    title.set_position(vector3d(-16000, 19000, -4000));
    auto& sign = named(s.emplace<billboard>(), "sign");
    sign.set_width(6000.0);
    sign.set_height(3000.0);
    sign.set_position(vector3d(19000, 9000, -11000));
    sign.set_brush(brush_of(255, 255, 255, 160));

    auto& sun = named(s.emplace<light>(), "sun");
    sun.set_position(vector3d(20000, 45000, 30000));
    return s;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s FOLDER\n", argv[0]);
        return 2;
    }
    const std::string folder = std::string(argv[1]) + "/";
    try {
        write_gear(folder + "gear.obj");
        facet::write_scene(make_scene(), folder + "showcase.txt");
    } catch (const std::exception& e) {
        std::fprintf(stderr, "%s\n", e.what());
        return 1;
    }
    return 0;
}
