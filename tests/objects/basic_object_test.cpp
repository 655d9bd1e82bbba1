// primitives::basic_object: defaults, copies, the hierarchy, dirty marking, the cached mesh, the
// visitor, and world transforms along the parent chain.
#include <gtest/gtest.h>

#include <cmath>
#include <sstream>
#include <string>
#include <vector>

#include "facet/math3d.h"
#include "facet/objects.h"
#include "objects/fixtures.h"

using graphics::brush;
using graphics::color;
using graphics::pen;
using primitives::basic_object;

namespace {

// Every field a copy takes, as text: the flags as digits (backface culling, visible, edges only,
// ghost, marked, hide when ghosted, black in b/w, no shadows, texturing, texture in b/w, texture
// rotated), name, material, position, orientation, angles, brush, pen and texture settings.
std::string fields_of(const basic_object& o) {
    std::ostringstream os;
    for (bool b : {o.get_backface_culling(), o.visible(), o.edges_only(), o.ghost(), o.is_marked(),
                   o.hide_when_ghosted(), o.black_in_bw_mode(), o.ignore_for_shadows(),
                   o.texturing_enabled(), o.show_texture_in_bw_mode(), o.texture_rotated()})
        os << b;
    const vector3d& p = o.get_position();
    const primitives::axis_angle r = o.get_orientation();
    os << ' ' << o.get_name() << '|' << o.get_material_ref_id() << '|' << p.x << ',' << p.y << ','
       << p.z << '|' << r.axis.x << ',' << r.axis.y << ',' << r.axis.z << ',' << r.angle << '|'
       << o.get_smoothing_threshold_angle() << ',' << o.get_visible_edge_threshold_angle() << '|'
       << o.get_brush() << '|' << o.get_pen() << '|' << o.get_texture_id() << ','
       << o.get_norm_map_id() << ',' << static_cast<int>(o.get_texgen_mode()) << ','
       << static_cast<int>(o.get_texture_mode()) << ',' << o.get_texture_scale().x << ','
       << o.get_texture_scale().y;
    return os.str();
}

// Gives every copied field a value other than its default.
void set_everything(basic_object& o) {
    o.set_name("lid");
    o.set_owner_id("owner");
    o.set_material_ref_id("oak");
    o.set_backface_culling(false);
    o.set_visible(false);
    o.set_edges_only(true);
    o.set_ghost(true);
    o.set_marked(true);
    o.set_hide_when_ghosted(true);
    o.set_black_in_bw_mode(true);
    o.set_ignore_for_shadows(true);
    o.set_position(vector3d(1.0, 2.0, 3.0));
    o.set_orientation(vector3d(1.0, 0.0, 0.0), 30.0);
    o.set_smoothing_threshold_angle(10.0);
    o.set_visible_edge_threshold_angle(20.0);
    o.set_brush(brush(color(1, 2, 3), 4));
    o.set_pen(pen(color(5, 6, 7), 2, 3));
    o.enable_texturing(true);
    o.set_show_texture_in_bw_mode(true);
    o.set_texture_rotated(true);
    o.set_texture_id(11);
    o.set_norm_map_id(12);
    o.set_texgen_mode(graphics::texgen_mode::none);
    o.set_texture_scale(2.0, 3.0);
    o.set_texture_mode(graphics::texture_mode::decal);
}

void expect_unlinked_and_dirty(const basic_object& o) {
    EXPECT_EQ(o.get_parent(), nullptr);
    EXPECT_EQ(o.get_parentname() + "|" + o.get_owner_id(), "_null_|_null_");
    EXPECT_TRUE(o.get_children().empty());
    EXPECT_TRUE(o.is_dirty() && o.shadows_dirty());
}

// A primitive whose mesh is one triangle; it counts its rebuilds.
class triangle_object : public basic_object {
public:
    mutable int builds = 0;

protected:
    void update_mesh(indexedfaceset& target) const override {
        ++builds;
        target.vertices().resize(3);
        target.vertices()[1] = vector3d(1.0, 0.0, 0.0);
        target.vertices()[2] = vector3d(0.0, 1.0, 0.0);
        target.faces().resize(1);
        target.faces()[0] = face(0, 1, 2);
        target.compute_normals();
    }
};

matrix44d local_matrix(const vector3d& position, double angle, const vector3d& axis) {
    matrix44d t, r, m;
    make_translation_matrix(t, position.x, position.y, position.z);
    make_rotation_matrix(r, angle, axis.x, axis.y, axis.z);
    multiply(t, r, m);
    return m;
}

}  // namespace

TEST(BasicObject, Defaults) {
    const basic_object o;
    EXPECT_EQ(
        fields_of(o),
        "11000000000 *unknown*||0,0,0|0,1,0,0|80,65|255 255 192 255 0|0 0 0 255 1 0|0,0,1,0,1,1");
    expect_unlinked_and_dirty(o);
    EXPECT_EQ(o.class_id(), "empty");
    EXPECT_TRUE(o.get_boundingbox().is_degenerate());
    EXPECT_EQ(o.get_mesh().num_faces() + o.get_mesh().num_vertices(), 0u);

    // Degenerate only for an exact zero extent.
    EXPECT_TRUE(primitives::boundingbox(1.0, 1.0, 0.0).is_degenerate());
    EXPECT_FALSE(primitives::boundingbox(1e-300, 1e-300, 1e-300).is_degenerate());
    EXPECT_FALSE(primitives::boundingbox(std::nan(""), 1.0, 1.0).is_degenerate());
    EXPECT_EQ(primitives::boundingbox(2.0, 3.0, 4.0).get_center(), vector3d(0.0, 0.0, 0.0));

    basic_object from_ints;
    from_ints.set_position(vector3<int>(1, -2, 3));
    from_ints.set_orientation(vector3<int>(0, 0, 2), 45.0);
    EXPECT_EQ(from_ints.get_position(), vector3d(1.0, -2.0, 3.0));
    EXPECT_EQ(from_ints.get_orientation().axis, vector3d(0.0, 0.0, 2.0));
    EXPECT_EQ(from_ints.get_orientation().angle, 45.0);
}

TEST(BasicObject, CopiesTakeAppearanceButNotHierarchyOwnerOrMesh) {
    basic_object parent, original, child;
    set_everything(original);
    original.set_parent(&parent);
    child.set_parent(&original);
    const indexedfaceset* original_mesh = &original.get_mesh();

    const std::string fields = fields_of(original);
    EXPECT_EQ(fields,
              "00111111111 lid|oak|1,2,3|1,0,0,30|10,20|1 2 3 255 4|5 6 7 255 2 3|11,12,0,2,2,3");
    const basic_object copy(original);
    EXPECT_EQ(fields_of(copy), fields);
    expect_unlinked_and_dirty(copy);
    EXPECT_NE(&copy.get_mesh(), original_mesh);
    EXPECT_EQ(parent.get_children().size(), 1u);  // the copy did not join the parent
    EXPECT_EQ(child.get_parent(), &original);

    // Assignment resets the links without detaching: the old parent still lists the object, the
    // old child still points to it.
    basic_object old_parent, old_child, target;
    target.set_parent(&old_parent);
    target.set_owner_id("mine");
    old_child.set_parent(&target);
    target.get_mesh();
    target = original;
    EXPECT_EQ(fields_of(target), fields);
    expect_unlinked_and_dirty(target);
    EXPECT_EQ(target.get_mesh().num_vertices(), 0u);
    EXPECT_EQ(old_parent.get_children(), std::vector<basic_object*>{&target});
    EXPECT_EQ(old_child.get_parent(), &target);
    old_parent.remove_child(&target);  // re-linked by hand: no dangling pointers
    old_child.set_parent(nullptr);

    // Self-assignment changes nothing.
    child.get_mesh();
    child = *&child;
    EXPECT_EQ(child.get_parent(), &original);
    EXPECT_FALSE(child.is_dirty());
}

TEST(BasicObject, Hierarchy) {
    basic_object a, b, child;
    a.set_name("a");
    b.set_name("b");
    child.set_parent(&a);
    EXPECT_EQ(child.get_parent(), &a);
    EXPECT_EQ(child.get_parentname(), "a");
    child.set_parent(&b);  // moves between parents
    EXPECT_TRUE(a.get_children().empty());
    EXPECT_EQ(b.get_children(), std::vector<basic_object*>{&child});
    b.set_name("table");  // children's stored parent names follow a rename
    EXPECT_EQ(child.get_parentname(), "table");
    child.set_parent(nullptr);
    EXPECT_TRUE(b.get_children().empty());
    EXPECT_EQ(child.get_parent(), nullptr);
    EXPECT_EQ(child.get_parentname(), "_null_");

    // add_child and remove_child keep order and duplicates and leave the child alone.
    basic_object p, c1, c2, c3, stranger;
    for (basic_object* c : {&c1, &c2, &c1, &c3}) p.add_child(c);
    EXPECT_EQ(c1.get_parent(), nullptr);
    p.remove_child(&c1);
    p.remove_child(&stranger);
    EXPECT_EQ(p.get_children(), (std::vector<basic_object*>{&c2, &c1, &c3}));

    // Destroying a parent orphans its children; destroying a child leaves its parent.
    {
        basic_object root, gone;
        root.set_name("root");
        c1.set_parent(&root);
        c2.set_parent(&root);
        gone.set_parent(&root);
    }
    EXPECT_EQ(c1.get_parent(), nullptr);
    EXPECT_EQ(c2.get_parent(), nullptr);
    EXPECT_EQ(c1.get_parentname(), "root");
    {
        basic_object gone;
        gone.set_parent(&a);
        c3.set_parent(&a);
    }
    EXPECT_EQ(a.get_children(), std::vector<basic_object*>{&c3});
    p.remove_child(&c2);
    p.remove_child(&c1);
    p.remove_child(&c3);
    EXPECT_TRUE(p.get_children().empty());
}

TEST(BasicObject, WhichSettersMarkDirty) {
    basic_object o;
    // Only on change.
    EXPECT_FALSE(dirties(o, [&] { o.set_brush(o.get_brush()); }));
    EXPECT_FALSE(dirties(o, [&] { o.set_pen(pen()); }));
    EXPECT_TRUE(dirties(o, [&] { o.set_brush(brush(color(255, 255, 192), 1)); }));
    EXPECT_TRUE(dirties(o, [&] { o.set_pen(pen(color(0, 0, 0), 2)); }));
    EXPECT_FALSE(dirties(o, [&] { o.enable_texturing(false); }));
    EXPECT_TRUE(dirties(o, [&] { o.enable_texturing(true); }));
    EXPECT_FALSE(dirties(o, [&] { o.set_texture_id(0); }));
    EXPECT_TRUE(dirties(o, [&] { o.set_texture_id(4); }));
    EXPECT_FALSE(dirties(o, [&] { o.set_norm_map_id(0); }));
    EXPECT_TRUE(dirties(o, [&] { o.set_norm_map_id(5); }));
    // Always.
    EXPECT_TRUE(dirties(o, [&] { o.set_texture_rotated(false); }));
    EXPECT_TRUE(dirties(o, [&] { o.set_texture_mode(graphics::texture_mode::modulate); }));
    EXPECT_TRUE(dirties(o, [&] { o.set_texgen_mode(graphics::texgen_mode::box); }));
    EXPECT_TRUE(dirties(o, [&] { o.set_texture_scale(1.0, 1.0); }));
    // Never, also not through placement, flags, names or the hierarchy.
    basic_object parent;
    EXPECT_FALSE(dirties(o, [&] {
        o.set_show_texture_in_bw_mode(true);
        o.set_visible(false);
        o.set_ghost(true);
        o.set_backface_culling(false);
        o.set_edges_only(true);
        o.set_marked(true);
        o.set_smoothing_threshold_angle(1.0);
        o.set_visible_edge_threshold_angle(2.0);
        o.set_name("n");
        o.set_owner_id("x");
        o.set_material_ref_id("m");
        o.set_position(vector3d(1, 2, 3));
        o.set_orientation(vector3d(1, 0, 0), 5.0);
        o.set_parent(&parent);
        o.set_parent(nullptr);
    }));
    EXPECT_FALSE(o.shadows_dirty() || o.is_dirty());

    // shadows_dirty follows only the setting of the dirty flag; a rebuild leaves it alone.
    o.set_dirty(true);
    o.set_shadows_dirty(false);
    o.get_mesh();
    EXPECT_FALSE(o.shadows_dirty() || o.is_dirty());
    o.set_dirty(true);
    o.set_dirty(false);
    EXPECT_TRUE(o.shadows_dirty());
}

TEST(BasicObject, MeshIsRebuiltOnlyWhenDirtyAndCarriesTheTextureSettings) {
    triangle_object o;
    o.enable_texturing(true);
    o.set_texture_id(7);
    o.set_norm_map_id(8);
    o.set_texture_mode(graphics::texture_mode::blend);
    o.set_texture_rotated(true);
    const indexedfaceset& m = o.get_mesh();
    EXPECT_EQ(o.builds, 1);
    EXPECT_FALSE(o.is_dirty());
    EXPECT_EQ(m.num_faces(), 1u);
    EXPECT_TRUE(m.get_textured() && m.texture_rotated());
    EXPECT_EQ(m.get_texture_id(), 7u);
    EXPECT_EQ(m.get_normal_map_id(), 8u);
    EXPECT_EQ(m.get_texture_mode(), graphics::texture_mode::blend);
    EXPECT_EQ(&o.get_mesh(), &m);
    EXPECT_EQ(o.builds, 1);
    o.set_texture_id(9);
    EXPECT_EQ(o.get_mesh().get_texture_id(), 9u);
    EXPECT_EQ(o.builds, 2);

    // Edges-only and marked take effect without a rebuild.
    EXPECT_FALSE(m.edges_only() || m.is_marked());
    o.set_edges_only(true);
    o.set_marked(true);
    o.get_mesh();
    EXPECT_EQ(o.builds, 2);
    EXPECT_TRUE(m.edges_only() && m.is_marked());

    // fill_mesh builds into the target and leaves the cache and the dirty flag alone.
    indexedfaceset target;
    o.set_texture_id(3);
    o.fill_mesh(target);
    EXPECT_EQ(target.num_faces(), 1u);
    EXPECT_EQ(target.get_texture_id(), 3u);
    EXPECT_TRUE(o.is_dirty());
    EXPECT_EQ(m.get_texture_id(), 9u);
    o.get_mesh();
    o.fill_mesh(target);
    EXPECT_FALSE(o.is_dirty());
    EXPECT_EQ(o.builds, 5);
}

TEST(Transformation, ParentTimesTranslationTimesRotationBitExact) {
    basic_object root, middle, leaf;
    root.set_position(vector3d(0.3, -1.7, 2.9));
    root.set_orientation(vector3d(1.0, 2.0, 3.0), 33.0);
    middle.set_position(vector3d(-4.1, 0.7, 0.2));
    middle.set_orientation(vector3d(0.0, 1.0, 0.0), 71.0);
    leaf.set_position(vector3d(1.1, 2.2, -3.3));
    leaf.set_orientation(vector3d(-1.0, 0.5, 0.25), 123.0);
    middle.set_parent(&root);
    leaf.set_parent(&middle);

    const matrix44d r = local_matrix(root.get_position(), 33.0, vector3d(1.0, 2.0, 3.0));
    const matrix44d m = local_matrix(middle.get_position(), 71.0, vector3d(0.0, 1.0, 0.0));
    const matrix44d l = local_matrix(leaf.get_position(), 123.0, vector3d(-1.0, 0.5, 0.25));
    // Each ancestor multiplies from the left: (root × middle) × leaf.
    matrix44d root_middle, expected;
    multiply(r, m, root_middle);
    multiply(root_middle, l, expected);
    EXPECT_EQ(primitives::calc_transformation_matrix(root), r);
    EXPECT_EQ(primitives::calc_transformation_matrix(middle), root_middle);
    EXPECT_EQ(primitives::calc_transformation_matrix(leaf), expected);

    // Nothing is cached: the matrix follows the current hierarchy.
    root.set_position(vector3d(6.0, 0.0, 0.0));
    EXPECT_NE(primitives::calc_transformation_matrix(leaf), expected);
    leaf.set_parent(nullptr);
    EXPECT_EQ(primitives::calc_transformation_matrix(leaf), l);

    // To world and back; a quarter turn about z maps (1, 0, 0) to (0, 1, 0) before translating.
    leaf.set_parent(&middle);
    const vector3d local(0.25, -3.0, 7.5);
    const vector3d world = primitives::objectspace_to_worldspace(local, leaf);
    const vector3d back = primitives::worldspace_to_objectspace(world, leaf);
    EXPECT_NEAR((back - local).length(), 0.0, 1e-12);
    EXPECT_EQ(back, transform_vector(inverse(primitives::calc_transformation_matrix(leaf)), world));
    basic_object turned;
    turned.set_position(vector3d(10.0, 20.0, 30.0));
    turned.set_orientation(vector3d(0.0, 0.0, 1.0), 90.0);
    const vector3d p = primitives::objectspace_to_worldspace(vector3d(1.0, 0.0, 0.0), turned);
    EXPECT_NEAR((p - vector3d(10.0, 21.0, 30.0)).length(), 0.0, 1e-12);
}

TEST(TransformationDeathTest, ParentLinksThatLoopFailTheCheck) {
    basic_object a, b, c, self;
    a.set_parent(&b);
    b.set_parent(&c);
    c.set_parent(&a);
    EXPECT_DEATH(primitives::calc_transformation_matrix(a), "p != slow");
    self.set_parent(&self);
    EXPECT_DEATH(primitives::calc_transformation_matrix(self),
                 "(^|\n)src/objects/transforms\\.cpp:[0-9]+: precondition failed");
    self.set_parent(nullptr);
    c.set_parent(nullptr);
}
