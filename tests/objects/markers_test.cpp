// The marker and annotation objects: defaults, dirty marking (and the billboard's lack of it),
// bounding boxes, empty meshes, copies and visitors.
#include <gtest/gtest.h>

#include <memory>

#include "facet/primitives.h"
#include "recording_visitor.h"

using primitives::basic_object;

namespace {

void expect_box(const primitives::boundingbox& b, const vector3d& centre, double w, double h,
                double d) {
    EXPECT_EQ(b.center, centre);
    EXPECT_EQ(b.width, w);
    EXPECT_EQ(b.height, h);
    EXPECT_EQ(b.depth, d);
}

void make_clean(const basic_object& o) {
    o.get_mesh();
    o.set_shadows_dirty(false);
}

}  // namespace

TEST(Markers, Defaults) {
    const primitives::arrow a;
    EXPECT_EQ(a.get_length(), 10000.0);
    EXPECT_EQ(a.get_head_base(), 1000.0);
    EXPECT_EQ(a.get_head_length(), 1000.0);
    EXPECT_EQ(primitives::crosshair().get_size(), 1.0);
    EXPECT_EQ(primitives::text().get_text(), "");
    EXPECT_EQ(primitives::billboard().get_width(), 0.0);
    EXPECT_EQ(primitives::billboard().get_height(), 0.0);

    const primitives::crosshair c;
    const primitives::text t;
    const primitives::billboard b;
    const primitives::light l;
    for (const basic_object* o :
         {static_cast<const basic_object*>(&a), static_cast<const basic_object*>(&c),
          static_cast<const basic_object*>(&t), static_cast<const basic_object*>(&b),
          static_cast<const basic_object*>(&l)})
        EXPECT_TRUE(o->ignore_for_shadows()) << o->class_id();
    EXPECT_EQ(a.class_id(), "arrow");
    EXPECT_EQ(c.class_id(), "crosshair");
    EXPECT_EQ(t.class_id(), "text");
    EXPECT_EQ(b.class_id(), "billboard");
    EXPECT_EQ(l.class_id(), "light");
}

TEST(Markers, SettersMarkDirtyExceptTheBillboards) {
    primitives::arrow a;
    primitives::crosshair c;
    primitives::text t;
    const auto dirtied = [](const basic_object& o, auto&& change) {
        make_clean(o);
        change();
        return o.is_dirty() && o.shadows_dirty();
    };
    EXPECT_TRUE(dirtied(a, [&] { a.set_length(a.get_length()); }));
    EXPECT_TRUE(dirtied(a, [&] { a.set_head_size(2, 3); }));
    EXPECT_EQ(a.get_head_base(), 2.0);
    EXPECT_EQ(a.get_head_length(), 3.0);
    EXPECT_TRUE(dirtied(c, [&] { c.set_size(4); }));
    EXPECT_EQ(c.get_size(), 4.0);
    EXPECT_TRUE(dirtied(t, [&] { t.set_text("two words"); }));
    EXPECT_EQ(t.get_text(), "two words");

    primitives::billboard b;
    make_clean(b);
    b.set_width(4);
    b.set_height(2);
    EXPECT_FALSE(b.is_dirty());
    EXPECT_FALSE(b.shadows_dirty());
    EXPECT_EQ(b.get_width(), 4.0);
    expect_box(b.get_boundingbox(), vector3d(0, 0, 0), 4, 2, 0);
}

TEST(Markers, AnnotationsHaveNoGeometry) {
    primitives::text t;
    t.set_text("label");
    primitives::billboard b;
    b.set_width(3);
    primitives::light l;
    for (const basic_object* o :
         {static_cast<const basic_object*>(&t), static_cast<const basic_object*>(&b),
          static_cast<const basic_object*>(&l)}) {
        const indexedfaceset& fs = o->get_mesh();
        EXPECT_EQ(fs.num_vertices() + fs.num_faces() + fs.num_lines() + fs.num_styles(), 0u)
            << o->class_id();
        EXPECT_FALSE(o->is_dirty());
    }
    expect_box(t.get_boundingbox(), vector3d(0, 0, 0), 0, 0, 0);
    expect_box(l.get_boundingbox(), vector3d(0, 0, 0), 0, 0, 0);
    expect_box(primitives::arrow().get_boundingbox(), vector3d(0, 0, 0), 0, 0, 0);
}

TEST(Markers, VisitorDispatch) {
    recording_visitor v;
    primitives::arrow a;
    primitives::text t;
    primitives::light l;
    for (basic_object* o : {static_cast<basic_object*>(&a), static_cast<basic_object*>(&t),
                            static_cast<basic_object*>(&l)}) {
        make_clean(*o);
        o->accept(v);
        EXPECT_EQ(v.last, o->class_id());
        EXPECT_TRUE(o->is_dirty());
    }

    // There is no crosshair operation: the crosshair arrives as a basic_object.
    primitives::crosshair c;
    make_clean(c);
    c.accept(v);
    EXPECT_EQ(v.last, "basic_object");
    EXPECT_TRUE(c.is_dirty());

    // The billboard is visited without being marked dirty.
    primitives::billboard b;
    make_clean(b);
    b.accept(v);
    EXPECT_EQ(v.last, "billboard");
    EXPECT_FALSE(b.is_dirty());
}

TEST(Markers, ClonesKeepTypeAndParameters) {
    primitives::arrow a;
    a.set_length(5);
    a.set_head_size(1, 2);
    a.set_name("pointer");
    const std::unique_ptr<basic_object> copy(static_cast<const basic_object&>(a).clone());
    const auto* ac = dynamic_cast<const primitives::arrow*>(copy.get());
    ASSERT_NE(ac, nullptr);
    EXPECT_EQ(ac->get_name(), "pointer");
    EXPECT_EQ(ac->get_length(), 5.0);
    EXPECT_EQ(ac->get_head_base(), 1.0);
    EXPECT_EQ(ac->get_head_length(), 2.0);

    primitives::billboard b;
    b.set_width(4);
    b.set_height(2);
    const std::unique_ptr<primitives::billboard> bc(b.clone());
    EXPECT_EQ(bc->get_width(), 4.0);
    EXPECT_EQ(bc->get_height(), 2.0);
    primitives::text t;
    t.set_text("hello");
    EXPECT_EQ(std::unique_ptr<primitives::text>(t.clone())->get_text(), "hello");
    const std::unique_ptr<basic_object> lc(
        static_cast<const basic_object&>(primitives::light()).clone());
    EXPECT_EQ(lc->class_id(), "light");
    EXPECT_TRUE(lc->ignore_for_shadows());
}
