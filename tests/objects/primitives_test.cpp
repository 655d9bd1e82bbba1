// The solid, planar, line and marker primitives as scene objects, and every type's common duties.
#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "facet/primitives.h"
#include "facet/scene_io.h"
#include "objects/fixtures.h"

using namespace primitives;

TEST(Primitives, EveryTypeShadowsBoundsVisitorAndClone) {
    // Default-made: flat shapes, lines and markers cast no shadow.
    const std::string casting =
        " empty box cylinder cone extruded_polygon mesh path_extrusion custom ";
    auto& types = factory<basic_object, std::string>::instance();
    for (const std::string& key : types.keys()) {
        const std::unique_ptr<basic_object> o(types.create(key));
        EXPECT_EQ(o->ignore_for_shadows(), casting.find(" " + key + " ") == std::string::npos)
            << key;
    }
    EXPECT_FALSE(primitives::line(vector3d(1, 2, 3), vector3d(4, 5, 6)).ignore_for_shadows());

    // Centre, size and mesh size (vertices, faces, lines) per type: lines, markers and annotations
    // report no extent, except the billboard's flat rectangle; the annotations have no geometry.
    std::ostringstream boxes;
    for (const auto& o : one_of_each()) {
        const std::string id = o->class_id();
        SCOPED_TRACE(id);
        const boundingbox b = o->get_boundingbox();
        boxes << id << ' ' << b.center.x << ' ' << b.center.y << ' ' << b.center.z << ' ' << b.width
              << ' ' << b.height << ' ' << b.depth;
        const indexedfaceset& fs = o->get_mesh();
        boxes << ' ' << fs.num_vertices() << ' ' << fs.num_faces() << ' ' << fs.num_lines() << '\n';
        // The operation of its own type (the crosshair has none), then the object is marked
        // dirty; the billboard is never marked.
        recording_visitor v;
        make_clean(*o);
        o->accept(v);
        EXPECT_EQ(v.last, id == "empty" || id == "crosshair" ? "basic_object" : id);
        EXPECT_FALSE(v.dirty_during);
        EXPECT_EQ(o->is_dirty(), id != "billboard");

        // Clones keep every written field but the owner, and the shadow setting.
        o->set_name(id + "_named");
        const std::unique_ptr<basic_object> copy(static_cast<const basic_object&>(*o).clone());
        EXPECT_EQ(copy->get_owner_id(), "_null_");  // the one field a copy does not take
        copy->set_owner_id(o->get_owner_id());
        EXPECT_EQ(block_text(*copy), block_text(*o));
        EXPECT_EQ(copy->ignore_for_shadows(), o->ignore_for_shadows());
    }
    EXPECT_EQ(boxes.str(),
              "empty 0 0 0 0 0 0 0 0 0\n"
              "box 0.166667 0.333333 0.05 0.333333 0.666667 0.1 8 12 0\n"
              "cylinder 0.7 0.55 0.7 1.4 1.1 1.4 20 36 0\n"
              "cone 1.41421 1.1 1.41421 2.82843 2.2 2.82843 14 24 0\n"
              "quad 0 0.1 0 2 0.2 2 4 2 0\n"
              "polygon 0.55 0 0.65 1.1 0 1.3 3 1 0\n"
              "line 0 0 0 0 0 0 2 0 1\n"
              "polyline 0 0 0 0 0 0 3 0 2\n"
              "extruded_polygon 0.55 0.35 0.65 1.1 0.7 1.3 6 8 0\n"
              "mesh 0.5 0.5 0.125 1 1 0.25 3 1 0\n"
              "path_extrusion 0.05 0.05 0.75 0.1 0.1 1.5 6 8 0\n"
              "arrow 0 0 0 0 0 0 6 0 5\n"
              "crosshair 0 0 0 0 0 0 6 0 3\n"
              "custom 0 0 0 0 0 0 0 0 0\n"
              "text 0 0 0 0 0 0 0 0 0\n"
              "billboard 0 0 0 2.5 1.5 0 0 0 0\n"
              "light 0 0 0 0 0 0 0 0 0\n");
}

TEST(Primitives, EverySetterMarksDirtyEvenWithTheSameValueExceptTheBillboards) {
    box b;
    cylinder c;
    cone k;
    arrow a;
    crosshair x;
    text t;
    EXPECT_TRUE(dirties(b, [&] { b.set_width(b.get_width()); }));
    EXPECT_TRUE(dirties(b, [&] { b.set_height(2.0); }));
    EXPECT_TRUE(dirties(b, [&] { b.set_depth(3.0); }));
    EXPECT_TRUE(dirties(b, [&] { b.set_size(vector3d(4, 5, 6)); }));
    EXPECT_TRUE(dirties(c, [&] { c.set_height(c.get_height()); }));
    EXPECT_TRUE(dirties(c, [&] { c.set_radius(2.0); }));
    EXPECT_TRUE(dirties(c, [&] { c.set_number_of_divisions(6.0); }));
    EXPECT_TRUE(dirties(k, [&] { k.set_height(k.get_height()); }));
    EXPECT_TRUE(dirties(k, [&] { k.set_radius(2.0); }));
    EXPECT_TRUE(dirties(a, [&] { a.set_length(a.get_length()); }));
    EXPECT_TRUE(dirties(a, [&] { a.set_head_size(2, 3); }));
    EXPECT_TRUE(dirties(x, [&] { x.set_size(4); }));
    EXPECT_TRUE(dirties(t, [&] { t.set_text("two words"); }));
    billboard bb;
    EXPECT_FALSE(dirties(bb, [&] {
        bb.set_width(4);
        bb.set_height(2);
    }));
    EXPECT_FALSE(bb.shadows_dirty() || bb.is_dirty());
}

TEST(Primitives, MutableIndexMarksDirtyConstIndexDoesNot) {
    quad q;
    primitives::line l;
    polyline pl;
    polygon pg;
    pl.add_point(vector3d(1, 1, 1));
    expect_box(pg.get_boundingbox(), vector3d(0, 0, 0), 0, 0, 0);
    pg.add_point(vector3d(1, 1, 1));
    expect_box(pg.get_boundingbox(), vector3d(1, 1, 1), 0, 0, 0);
    // The mutable form marks dirty even when only read through.
    EXPECT_TRUE(dirties(q, [&] { q[2] = vector3d(5, 0, -1); }));
    EXPECT_EQ(std::as_const(q)[2], vector3d(5, 0, -1));
    EXPECT_TRUE(dirties(q, [&] { static_cast<void>(q[0]); }));
    EXPECT_TRUE(dirties(l, [&] { l[1] = vector3d(0, 3, 0); }));
    EXPECT_TRUE(dirties(pl, [&] { pl[0].y = 7; }));
    EXPECT_TRUE(dirties(pg, [&] { pg[0].z = 7; }));
    EXPECT_EQ(std::as_const(pl)[0], vector3d(1, 7, 1));
    EXPECT_EQ(std::as_const(pg)[0], vector3d(1, 1, 7));

    EXPECT_DEATH(q[4] = vector3d(), "index < 4");
    EXPECT_DEATH(static_cast<void>(std::as_const(q)[4]), "index < 4");
    EXPECT_DEATH(l[2] = vector3d(), "index < 2");
    EXPECT_DEATH(static_cast<void>(std::as_const(l)[2]), "index < 2");
    EXPECT_DEATH(pl[1] = vector3d(), "index < m_points.size\\(\\)");
    EXPECT_DEATH(static_cast<void>(std::as_const(pl)[1]), "index < m_points.size\\(\\)");

    // The polygon's is the standard checked access's range error, and still marks dirty.
    EXPECT_FALSE(dirties(pg, [&] { EXPECT_THROW(std::as_const(pg)[5], std::out_of_range); }));
    EXPECT_TRUE(dirties(pg, [&] { EXPECT_THROW(pg[5], std::out_of_range); }));
}

TEST(Primitives, PointLists) {
    polygon pg;
    const vector3d a(0, 0, 0), b(1, 0, 0), c(1, 1, 0);
    EXPECT_TRUE(dirties(pg, [&] { pg.add_point(a); }));
    for (const vector3d& p : {b, c, b}) pg.add_point(p);
    // Only the first equal point goes; an absent point changes nothing but still marks dirty.
    EXPECT_TRUE(dirties(pg, [&] { pg.remove_point(b); }));
    EXPECT_EQ(pg.get_points(), (std::vector<vector3d>{a, c, b}));
    EXPECT_TRUE(dirties(pg, [&] { pg.remove_point(vector3d(0, 0, 1e-300)); }));
    EXPECT_TRUE(dirties(pg, [&] { pg.reverse_points(); }));
    EXPECT_EQ(pg.get_points(), (std::vector<vector3d>{b, c, a}));
    EXPECT_TRUE(dirties(pg, [&] { pg.clear(); }));

    // The polyline's clear keeps the object clean, with its old mesh.
    polyline pl;
    EXPECT_TRUE(dirties(pl, [&] { pl.add_point(a); }));
    pl.add_point(b);
    pl.add_point(c);
    EXPECT_EQ(pl.get_mesh().num_lines(), 2u);
    EXPECT_FALSE(dirties(pl, [&] { pl.clear(); }));
    EXPECT_TRUE(pl.empty());
    EXPECT_EQ(pl.get_mesh().num_lines(), 2u);
    EXPECT_TRUE(dirties(pl, [&] { pl.set_points({a, b}); }));
    EXPECT_EQ(pl.get_mesh().num_lines(), 1u);
}
