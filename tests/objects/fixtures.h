// Helpers shared by the scene-object, scene-format and scene tests.
#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <exception>
#include <memory>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "facet/primitives.h"

// Records which operation a primitive's accept called, and whether the object was dirty then.
class recording_visitor : public primitives::primitive_visitor {
public:
    std::string last;
    bool dirty_during = true;
    void visit(primitives::basic_object& o) override { note(o, "basic_object"); }
    void visit(primitives::box& o) override { note(o, "box"); }
    void visit(primitives::cylinder& o) override { note(o, "cylinder"); }
    void visit(primitives::cone& o) override { note(o, "cone"); }
    void visit(primitives::quad& o) override { note(o, "quad"); }
    void visit(primitives::polygon& o) override { note(o, "polygon"); }
    void visit(primitives::line& o) override { note(o, "line"); }
    void visit(primitives::polyline& o) override { note(o, "polyline"); }
    void visit(primitives::extruded_polygon& o) override { note(o, "extruded_polygon"); }
    void visit(primitives::mesh& o) override { note(o, "mesh"); }
    void visit(primitives::path_extrusion& o) override { note(o, "path_extrusion"); }
    void visit(primitives::arrow& o) override { note(o, "arrow"); }
    void visit(primitives::custom& o) override { note(o, "custom"); }
    void visit(primitives::light& o) override { note(o, "light"); }
    void visit(primitives::text& o) override { note(o, "text"); }
    void visit(primitives::billboard& o) override { note(o, "billboard"); }

private:
    void note(const primitives::basic_object& o, const char* name) {
        last = name;
        dirty_during = o.is_dirty();
    }
};

inline void expect_box(const primitives::boundingbox& b, const vector3d& centre, double w, double h,
                       double d) {
    EXPECT_EQ(b.center, centre);
    EXPECT_EQ(vector3d(b.width, b.height, b.depth), vector3d(w, h, d));
}

// Builds the mesh (when it can be built) and clears both dirty flags.
inline void make_clean(const primitives::basic_object& o) {
    try {
        o.get_mesh();
    } catch (const std::exception&) {
    }
    o.set_dirty(false);
    o.set_shadows_dirty(false);
}

// Whether `change` marks the cleaned object dirty: mesh and shadows.
template <class Change>
bool dirties(const primitives::basic_object& o, Change&& change) {
    make_clean(o);
    change();
    return o.is_dirty() && o.shadows_dirty();
}

// The object's block in the scene format.
inline std::string block_text(const primitives::basic_object& o) {
    std::ostringstream os;
    os.precision(17);
    o.write(os);
    return os.str();
}

template <class T, class... Args>
T& add_to(std::vector<std::unique_ptr<primitives::basic_object>>& all, Args&&... args) {
    all.push_back(std::make_unique<T>(std::forward<Args>(args)...));
    return static_cast<T&>(*all.back());
}

// One object of each of the seventeen scene types, in the order the reader registers them, with
// common fields and parameters other than the defaults (reals that six digits would not carry).
inline std::vector<std::unique_ptr<primitives::basic_object>> one_of_each() {
    using namespace primitives;
    std::vector<std::unique_ptr<basic_object>> all;
    add_to<basic_object>(all);
    add_to<box>(all, 1.0 / 3, 2.0 / 3, 0.1);
    add_to<cylinder>(all, 1.1, 0.7, 9u);
    add_to<cone>(all, 2.2, std::sqrt(2.0));
    add_to<quad>(all)[2] = {0.1, 0.2, 0.3};
    const std::vector<vector3d> points{{0, 0, 0}, {1.1, 0, 0}, {0, 0, 1.3}};
    auto& pg = add_to<polygon>(all);
    for (const vector3d& p : points) pg.add_point(p);
    add_to<primitives::line>(all, vector3d(0.1, 0.2, 0.3), vector3d(-1, -2, -3.5));
    add_to<polyline>(all).set_points({{0, 0, 0}, {1, 1, 1}, {2, 0, 1e-9}});
    auto& ep = add_to<extruded_polygon>(all);
    ep.set_points(points);
    ep.set_extrusion({0, 0.7, 0});
    ep.set_extrusion_scaling({0.5, 1, 1.0 / 3});
    auto& m = add_to<mesh>(all);
    m.set_vertices({{0, 0, 0}, {1, 0, 0}, {0, 1, 0.25}});
    m.add_triangle(0, 1, 2);
    auto& pe = add_to<path_extrusion>(all);
    pe.set_profile({{0, 0, 0}, {0.1, 0, 0}, {0, 0.1, 0}});
    pe.set_path({{0, 0, 0}, {0, 0, 1.5}});
    add_to<arrow>(all).set_head_size(0.3, 0.45);
    add_to<crosshair>(all).set_size(0.125);
    add_to<custom>(all, "gear_mesh");
    add_to<text>(all).set_text("label");
    auto& b = add_to<billboard>(all);
    b.set_width(2.5);
    b.set_height(1.5);
    add_to<light>(all);
    for (std::size_t k = 0; k < all.size(); ++k) {
        basic_object& o = *all[k];
        o.set_name(o.class_id() + "_" + std::to_string(k));
        o.set_owner_id("owner" + std::to_string(k));
        o.set_position(vector3d{1.0 / 3 + k, -0.1 * k, 1e-300});
        o.set_orientation(vector3d{0.6, 0.8, -1.0 / 7}, 33.333333333333336 + k);
        o.set_brush(graphics::brush(graphics::color(10 + k, 20, 30, 200), 1));
        o.set_pen(graphics::pen(graphics::color(1, 2, 3 + k, 4), 3, 2));
    }
    return all;
}
