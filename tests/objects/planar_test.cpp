// The planar and line primitives as scene objects: defaults, index operators and their dirty
// marking, point lists, bounding boxes, copies and visitors.
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "facet/primitives.h"
#include "recording_visitor.h"

using primitives::basic_object;
using primitives::boundingbox;

namespace {

void expect_box(const boundingbox& b, const vector3d& centre, double w, double h, double d) {
    EXPECT_EQ(b.center, centre);
    EXPECT_EQ(b.width, w);
    EXPECT_EQ(b.height, h);
    EXPECT_EQ(b.depth, d);
}

// Builds the mesh, so that the object is clean, and clears shadows_dirty.
void make_clean(const basic_object& o) {
    o.get_mesh();
    o.set_shadows_dirty(false);
}

std::string range_error_of(const std::function<void()>& f) {
    try {
        f();
    } catch (const std::out_of_range& e) {
        return e.what();
    }
    return "no exception";
}

}  // namespace

TEST(PlanarObjects, Defaults) {
    const primitives::quad q;
    EXPECT_EQ(q[0], vector3d(-1, 0, 1));
    EXPECT_EQ(q[1], vector3d(1, 0, 1));
    EXPECT_EQ(q[2], vector3d(1, 0, -1));
    EXPECT_EQ(q[3], vector3d(-1, 0, -1));
    const float uv[4][2] = {{0, 0}, {1, 0}, {1, 1}, {0, 1}};
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(q.get_texcoord(i).u, uv[i][0]);
        EXPECT_EQ(q.get_texcoord(i).v, uv[i][1]);
    }
    expect_box(q.get_boundingbox(), vector3d(0, 0, 0), 2, 0, 2);

    const primitives::polygon pg;
    const primitives::line l;
    const primitives::polyline pl;
    EXPECT_TRUE(pg.empty());
    EXPECT_EQ(l[0], vector3d(0, 0, 0));
    EXPECT_EQ(l[1], vector3d(0, 0, 0));
    EXPECT_TRUE(pl.empty());

    // Flat shapes cast no shadow, except a line made from two points.
    EXPECT_TRUE(q.ignore_for_shadows());
    EXPECT_TRUE(pg.ignore_for_shadows());
    EXPECT_TRUE(l.ignore_for_shadows());
    EXPECT_TRUE(pl.ignore_for_shadows());
    const primitives::line l2(vector3d(1, 2, 3), vector3d(4, 5, 6));
    EXPECT_FALSE(l2.ignore_for_shadows());
    EXPECT_EQ(l2[0], vector3d(1, 2, 3));
    EXPECT_EQ(l2[1], vector3d(4, 5, 6));

    EXPECT_EQ(q.class_id(), "quad");
    EXPECT_EQ(pg.class_id(), "polygon");
    EXPECT_EQ(l.class_id(), "line");
    EXPECT_EQ(pl.class_id(), "polyline");
}

TEST(PlanarObjects, MutableIndexMarksDirtyConstIndexDoesNot) {
    primitives::quad q;
    primitives::line l;
    primitives::polyline pl;
    primitives::polygon pg;
    pl.add_point(vector3d(1, 1, 1));
    pg.add_point(vector3d(1, 1, 1));

    const auto reading_leaves_clean = [](const basic_object& o, auto&& read) {
        make_clean(o);
        read();
        return !o.is_dirty() && !o.shadows_dirty();
    };
    EXPECT_TRUE(reading_leaves_clean(q, [&] { EXPECT_EQ(std::as_const(q)[1].x, 1.0); }));
    EXPECT_TRUE(reading_leaves_clean(l, [&] { EXPECT_EQ(std::as_const(l)[1].x, 0.0); }));
    EXPECT_TRUE(reading_leaves_clean(pl, [&] { EXPECT_EQ(std::as_const(pl)[0].x, 1.0); }));
    EXPECT_TRUE(reading_leaves_clean(pg, [&] { EXPECT_EQ(std::as_const(pg)[0].x, 1.0); }));

    // The mutable form marks dirty even when only read through.
    const auto dirtied = [](const basic_object& o, auto&& access) {
        make_clean(o);
        access();
        return o.is_dirty() && o.shadows_dirty();
    };
    EXPECT_TRUE(dirtied(q, [&] { q[2] = vector3d(5, 0, -1); }));
    EXPECT_EQ(std::as_const(q)[2], vector3d(5, 0, -1));
    EXPECT_TRUE(dirtied(q, [&] { static_cast<void>(q[0]); }));
    EXPECT_TRUE(dirtied(l, [&] { l[1] = vector3d(0, 3, 0); }));
    EXPECT_TRUE(dirtied(pl, [&] { pl[0].y = 7; }));
    EXPECT_TRUE(dirtied(pg, [&] { pg[0].z = 7; }));
    EXPECT_EQ(std::as_const(pl)[0], vector3d(1, 7, 1));
    EXPECT_EQ(std::as_const(pg)[0], vector3d(1, 1, 7));
}

TEST(PlanarObjects, IndexPreconditions) {
    primitives::quad q;
    primitives::line l;
    primitives::polyline pl;
    pl.add_point(vector3d(0, 0, 0));
    EXPECT_DEATH(q[4] = vector3d(), "index < 4");
    EXPECT_DEATH(static_cast<void>(std::as_const(q)[4]), "index < 4");
    EXPECT_DEATH(l[2] = vector3d(), "index < 2");
    EXPECT_DEATH(static_cast<void>(std::as_const(l)[2]), "index < 2");
    EXPECT_DEATH(pl[1] = vector3d(), "index < m_points.size\\(\\)");
    EXPECT_DEATH(static_cast<void>(std::as_const(pl)[1]), "index < m_points.size\\(\\)");
}

TEST(PlanarObjects, PolygonIndexIsARangeErrorThatStillMarksDirty) {
    primitives::polygon pg;
    for (int i = 0; i < 3; ++i) pg.add_point(vector3d(i, 0, 0));
    // The message is the standard checked access's for the same index and size.
    const std::vector<vector3d> same_size(3);
    const std::string expected = range_error_of([&] { static_cast<void>(same_size.at(5)); });
    ASSERT_NE(expected, "no exception");

    make_clean(pg);
    EXPECT_EQ(range_error_of([&] { static_cast<void>(std::as_const(pg)[5]); }), expected);
    EXPECT_FALSE(pg.is_dirty());
    EXPECT_EQ(range_error_of([&] { static_cast<void>(pg[5]); }), expected);
    EXPECT_TRUE(pg.is_dirty());
}

TEST(PlanarObjects, TexcoordsAreStoredWithoutMarkingDirty) {
    primitives::quad q;
    make_clean(q);
    q.set_texcoord(2, texcoord(0.5f, 0.25f));
    EXPECT_FALSE(q.is_dirty());
    EXPECT_EQ(q.get_texcoord(2).u, 0.5f);
    EXPECT_EQ(q.get_texcoord(2).v, 0.25f);
    // The mesh shows the change only after a rebuild caused by something else.
    EXPECT_EQ(q.get_mesh().get_texcoord(2).u, 1.0f);
    q.set_texture_scale(1.0, 1.0);
    EXPECT_EQ(q.get_mesh().get_texcoord(2).u, 0.5f);
}

TEST(PlanarObjects, PolygonPointList) {
    primitives::polygon pg;
    const vector3d a(0, 0, 0), b(1, 0, 0), c(1, 1, 0);
    const auto dirtied = [&pg](auto&& change) {
        make_clean(pg);
        change();
        return pg.is_dirty();
    };
    EXPECT_TRUE(dirtied([&] { pg.add_point(a); }));
    pg.add_point(b);
    pg.add_point(c);
    pg.add_point(b);
    EXPECT_EQ(pg.size(), 4u);

    // Only the first equal point goes; an absent point changes nothing but still marks dirty.
    EXPECT_TRUE(dirtied([&] { pg.remove_point(b); }));
    EXPECT_EQ(pg.get_points(), (std::vector<vector3d>{a, c, b}));
    EXPECT_TRUE(dirtied([&] { pg.remove_point(vector3d(0, 0, 1e-300)); }));
    EXPECT_EQ(pg.get_points(), (std::vector<vector3d>{a, c, b}));

    EXPECT_TRUE(dirtied([&] { pg.reverse_points(); }));
    EXPECT_EQ(pg.get_points(), (std::vector<vector3d>{b, c, a}));
    EXPECT_TRUE(dirtied([&] { pg.clear(); }));
    EXPECT_TRUE(pg.empty());
}

TEST(PlanarObjects, PolylineClearKeepsTheObjectClean) {
    primitives::polyline pl;
    const auto dirtied = [&pl](auto&& change) {
        make_clean(pl);
        change();
        return pl.is_dirty();
    };
    EXPECT_TRUE(dirtied([&] { pl.add_point(vector3d(0, 0, 0)); }));
    pl.add_point(vector3d(1, 0, 0));
    pl.add_point(vector3d(2, 0, 0));
    EXPECT_EQ(pl.get_mesh().num_lines(), 2u);

    EXPECT_FALSE(dirtied([&] { pl.clear(); }));
    EXPECT_TRUE(pl.empty());
    EXPECT_EQ(pl.get_mesh().num_lines(), 2u);  // the old mesh

    EXPECT_TRUE(dirtied([&] { pl.set_points({vector3d(0, 0, 0), vector3d(0, 1, 0)}); }));
    EXPECT_EQ(pl.size(), 2u);
    EXPECT_EQ(pl.get_mesh().num_lines(), 1u);
}

TEST(PlanarObjects, BoundingBoxes) {
    primitives::quad q;
    q[0] = vector3d(-3, 1, 0);
    q[1] = vector3d(1, 2, 0);
    q[2] = vector3d(1, 5, 4);
    q[3] = vector3d(0, 2, 2);
    expect_box(q.get_boundingbox(), vector3d(-1, 3, 2), 4, 4, 4);

    primitives::polygon pg;
    expect_box(pg.get_boundingbox(), vector3d(0, 0, 0), 0, 0, 0);
    pg.add_point(vector3d(1, 1, 1));
    expect_box(pg.get_boundingbox(), vector3d(1, 1, 1), 0, 0, 0);
    pg.add_point(vector3d(3, -1, 1));
    pg.add_point(vector3d(2, 0, 7));
    expect_box(pg.get_boundingbox(), vector3d(2, 0, 4), 2, 2, 6);

    // Lines report no extent.
    expect_box(primitives::line(vector3d(0, 0, 0), vector3d(1, 2, 3)).get_boundingbox(),
               vector3d(0, 0, 0), 0, 0, 0);
    primitives::polyline pl;
    pl.add_point(vector3d(5, 5, 5));
    pl.add_point(vector3d(6, 6, 6));
    expect_box(pl.get_boundingbox(), vector3d(0, 0, 0), 0, 0, 0);
}

TEST(PlanarObjects, CopiesKeepPointsAndTexcoords) {
    primitives::quad q;
    q.set_name("patch");
    q[1] = vector3d(9, 9, 9);
    q.set_texcoord(3, texcoord(2, 3));
    const std::unique_ptr<basic_object> copy(static_cast<const basic_object&>(q).clone());
    auto* qc = dynamic_cast<primitives::quad*>(copy.get());
    ASSERT_NE(qc, nullptr);
    EXPECT_EQ(qc->get_name(), "patch");
    EXPECT_EQ(std::as_const(*qc)[1], vector3d(9, 9, 9));
    EXPECT_EQ(qc->get_texcoord(3).v, 3.0f);
    EXPECT_TRUE(qc->ignore_for_shadows());

    primitives::quad assigned;
    assigned = q;
    EXPECT_EQ(std::as_const(assigned)[1], vector3d(9, 9, 9));
    EXPECT_EQ(assigned.get_texcoord(3).u, 2.0f);

    primitives::polyline pl;
    pl.add_point(vector3d(4, 5, 6));
    EXPECT_EQ(std::unique_ptr<primitives::polyline>(pl.clone())->get_points(), pl.get_points());

    // The point-built line keeps casting shadows in its copies.
    const primitives::line l(vector3d(1, 0, 0), vector3d(2, 0, 0));
    const std::unique_ptr<primitives::line> lc(l.clone());
    EXPECT_EQ(std::as_const(*lc)[1], vector3d(2, 0, 0));
    EXPECT_FALSE(lc->ignore_for_shadows());
}

TEST(PlanarObjects, AcceptCallsTheOwnOperationAndMarksDirty) {
    recording_visitor v;
    primitives::quad q;
    primitives::polygon pg;
    primitives::line l;
    primitives::polyline pl;
    for (basic_object* o : {static_cast<basic_object*>(&q), static_cast<basic_object*>(&pg),
                            static_cast<basic_object*>(&l), static_cast<basic_object*>(&pl)}) {
        make_clean(*o);
        o->accept(v);
        EXPECT_EQ(v.last, o->class_id());
        EXPECT_TRUE(o->is_dirty());
    }
}
