// Helpers shared by the scene-object, scene-format and scene tests.
#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <exception>
#include <memory>
#include <sstream>
#include <string>
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

// One object of each of the seventeen scene types, in the order the reader registers them, with
// parameters other than the defaults (reals that six digits would not carry).
inline std::vector<std::unique_ptr<primitives::basic_object>> one_of_each() {
    using namespace primitives;
    std::vector<std::unique_ptr<basic_object>> all;
    const auto add = [&all](basic_object* o) { all.emplace_back(o); };
    add(new basic_object);
    add(new box(1.0 / 3, 2.0 / 3, 0.1));
    add(new cylinder(1.1, 0.7, 9));
    add(new cone(2.2, std::sqrt(2.0)));
    auto* q = new quad;
    (*q)[2] = {0.1, 0.2, 0.3};
    add(q);
    auto* pg = new polygon;
    auto* ep = new extruded_polygon;
    for (const vector3d& p : {vector3d(0, 0, 0), vector3d(1.1, 0, 0), vector3d(0, 0, 1.3)}) {
        pg->add_point(p);
        ep->add_point(p);
    }
    ep->set_extrusion({0, 0.7, 0});
    ep->set_extrusion_scaling({0.5, 1, 1.0 / 3});
    add(pg);
    add(new primitives::line(vector3d(0.1, 0.2, 0.3), vector3d(-1, -2, -3.5)));
    auto* pl = new polyline;
    pl->set_points({{0, 0, 0}, {1, 1, 1}, {2, 0, 1e-9}});
    add(pl);
    add(ep);
    auto* m = new mesh;
    m->set_vertices({{0, 0, 0}, {1, 0, 0}, {0, 1, 0.25}});
    m->add_triangle(0, 1, 2);
    add(m);
    auto* pe = new path_extrusion;
    pe->set_profile({{0, 0, 0}, {0.1, 0, 0}, {0, 0.1, 0}});
    pe->set_path({{0, 0, 0}, {0, 0, 1.5}});
    add(pe);
    auto* a = new arrow;
    a->set_head_size(0.3, 0.45);
    add(a);
    auto* c = new crosshair;
    c->set_size(0.125);
    add(c);
    add(new custom("gear_mesh"));
    auto* t = new text;
    t->set_text("label");
    add(t);
    auto* b = new billboard;
    b->set_width(2.5);
    b->set_height(1.5);
    add(b);
    add(new light);
    return all;
}
