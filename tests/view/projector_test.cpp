// The projector family: defaults, parameters, matrices, view vectors, clone and copies.
#include <gtest/gtest.h>

#include <memory>
#include <type_traits>
#include <typeinfo>

#include "facet/math3d.h"
#include "facet/projector.h"

namespace {

static_assert(std::is_abstract_v<projector>);
static_assert(!std::is_copy_assignable_v<projector>, "assignment through the base would slice");
static_assert(std::is_copy_constructible_v<orthographic_projector> &&
              std::is_copy_assignable_v<perspective_projector> &&
              std::is_copy_assignable_v<persp_projector_ex>);

vector3d to_screen(const projector& p, const vector3d& camera_point) {
    matrix44d m;
    p.get_matrix(m);
    return transform_vector(m, camera_point);
}

void expect_base_fields(const projector& p, double n, double f, double x, double y, double w,
                        double h) {
    EXPECT_EQ(p.get_nearplane_distance(), n);
    EXPECT_EQ(p.get_farplane_distance(), f);
    double vx, vy, vw, vh;
    p.get_viewport(vx, vy, vw, vh);
    EXPECT_EQ(vx, x);
    EXPECT_EQ(vy, y);
    EXPECT_EQ(vw, w);
    EXPECT_EQ(vh, h);
}

TEST(Projector, BaseDefaultsAndViewport) {
    orthographic_projector p;
    expect_base_fields(p, 1.0, 50.0, 0, 0, 800, 600);
    p.set_nearplane_distance(-3.0);
    p.set_farplane_distance(-3.0);
    p.set_viewport(0, 0, 640, 480);
    expect_base_fields(p, -3.0, -3.0, 0, 0, 640, 480);

    matrix44d v;
    p.get_viewport_matrix(v);
    EXPECT_EQ(transform_vector(v, vector3d(-1, -1, 0.25)), vector3d(0, 480, 0.25));
    EXPECT_EQ(transform_vector(v, vector3d(1, 1, 0.25)), vector3d(640, 0, 0.25));
}

TEST(OrthographicProjector, DefaultsAndParameters) {
    orthographic_projector p;
    EXPECT_EQ(p.get_left(), -2.0);
    EXPECT_EQ(p.get_right(), 2.0);
    EXPECT_EQ(p.get_top(), 1.5);
    EXPECT_EQ(p.get_bottom(), -1.5);
    EXPECT_EQ(p.width(), 4.0);
    EXPECT_EQ(p.height(), 3.0);

    p.set_ortho_params(10, 20, 1, 100);
    EXPECT_EQ(p.get_left(), -5.0);
    EXPECT_EQ(p.get_right(), 5.0);
    EXPECT_EQ(p.get_top(), 10.0);
    EXPECT_EQ(p.get_bottom(), -10.0);
    expect_base_fields(p, 1, 100, 0, 0, 800, 600);

    // Six-argument form: bottom comes before top.
    p.set_ortho_params(-1, 3, -2, 5, 0.5, 10);
    EXPECT_EQ(p.get_bottom(), -2.0);
    EXPECT_EQ(p.get_top(), 5.0);
    EXPECT_EQ(p.width(), 4.0);
    EXPECT_EQ(p.height(), 7.0);
    matrix44d actual, expected;
    p.get_projection_matrix(actual);
    calc_ortho_matrix(-1, 3, -2, 5, 0.5, 10, expected);
    EXPECT_EQ(actual, expected);

    const orthographic_projector sized(6, 2, 0.5, 9);
    EXPECT_EQ(sized.get_left(), -3.0);
    EXPECT_EQ(sized.get_top(), 1.0);
    expect_base_fields(sized, 0.5, 9, 0, 0, 800, 600);
}

TEST(OrthographicProjector, ScreenMappingPutsTopLeftAtViewportOrigin) {
    const orthographic_projector p;
    const vector3d top_right = to_screen(p, vector3d(2, 1.5, -3));
    EXPECT_EQ(top_right.x, 800.0);
    EXPECT_EQ(top_right.y, 0.0);
    const vector3d bottom_left = to_screen(p, vector3d(-2, -1.5, -3));
    EXPECT_EQ(bottom_left.x, 0.0);
    EXPECT_EQ(bottom_left.y, 600.0);
    EXPECT_EQ(to_screen(p, vector3d(0, 0, -1)), vector3d(400, 300, -1));
    EXPECT_EQ(to_screen(p, vector3d(0, 0, -50)), vector3d(400, 300, 1));
}

TEST(PerspectiveProjector, DefaultAspectIsTheLiteralDecimal) {
    const perspective_projector p;
    EXPECT_EQ(p.get_hfov(), 60.0);
    EXPECT_EQ(p.get_aspect_ratio(), 1.3333);
    expect_base_fields(p, 1.0, 50.0, 0, 0, 800, 600);

    matrix44d actual, literal, four_thirds;
    p.get_projection_matrix(actual);
    calc_perspective_matrix(60.0, 1.3333, 1.0, 50.0, literal);
    calc_perspective_matrix(60.0, 4.0 / 3.0, 1.0, 50.0, four_thirds);
    EXPECT_EQ(actual, literal);
    EXPECT_NE(actual(1, 1), four_thirds(1, 1));
}

TEST(PerspectiveProjector, ParametersAndScreenMapping) {
    perspective_projector p(90, 2, 0.5, 20);
    EXPECT_EQ(p.get_hfov(), 90.0);
    EXPECT_EQ(p.get_aspect_ratio(), 2.0);
    expect_base_fields(p, 0.5, 20, 0, 0, 800, 600);
    p.set_perspective_params(45, 1.5, 2, 30);
    EXPECT_EQ(p.get_hfov(), 45.0);
    expect_base_fields(p, 2, 30, 0, 0, 800, 600);

    // The centre of the near plane lands in the viewport centre at depth −1.
    EXPECT_EQ(to_screen(perspective_projector(), vector3d(0, 0, -1)), vector3d(400, 300, -1));
}

TEST(PerspProjectorEx, FrustumParametersAndScreenMapping) {
    const persp_projector_ex unset;
    EXPECT_EQ(unset.get_left(), 0.0);
    EXPECT_EQ(unset.get_right(), 0.0);
    EXPECT_EQ(unset.get_bottom(), 0.0);
    EXPECT_EQ(unset.get_top(), 0.0);
    expect_base_fields(unset, 1.0, 50.0, 0, 0, 800, 600);

    persp_projector_ex p(-1, 1, -0.75, 0.75, 1, 50);
    EXPECT_EQ(to_screen(p, vector3d(0, 0, -1)), vector3d(400, 300, -1));
    EXPECT_EQ(to_screen(p, vector3d(1, 0.75, -1)), vector3d(800, 0, -1));

    // An off-centre frustum with its bottom-left corner on the view axis; the viewport offset
    // moves the screen point, so the viewport acts after the projection.
    p.set_perspective_params(0, 2, 0, 1.5, 1, 50);
    p.set_viewport(10, 20, 200, 100);
    EXPECT_EQ(p.get_right(), 2.0);
    EXPECT_EQ(p.get_top(), 1.5);
    EXPECT_EQ(to_screen(p, vector3d(0, 0, -1)), vector3d(10, 120, -1));
    const vector3d top_right = to_screen(p, vector3d(2, 1.5, -1));
    EXPECT_EQ(top_right.x, 210.0);
    EXPECT_DOUBLE_EQ(top_right.y, 20.0);

    matrix44d projection, viewport, combined, expected;
    p.get_projection_matrix(projection);
    calc_perspective_matrix(0, 2, 0, 1.5, 1, 50, expected);
    EXPECT_EQ(projection, expected);
    p.get_viewport_matrix(viewport);
    p.get_matrix(combined);
    EXPECT_EQ(combined, viewport * projection);
}

TEST(Projector, ViewVectorPerKind) {
    const camera origin;
    const perspective_projector persp;
    const persp_projector_ex ex(-1, 1, -1, 1, 1, 10);
    const orthographic_projector ortho;

    EXPECT_EQ(persp.get_viewvector(vector3d(0, 0, -10), origin), vector3d(0, 0, 1));
    EXPECT_EQ(ortho.get_viewvector(vector3d(0, 0, -10), origin), vector3d(0, 0, 1));
    EXPECT_EQ(persp.get_viewvector(vector3d(3, 0, -4), origin), vector3d(-0.6, 0, 0.8));
    EXPECT_EQ(ex.get_viewvector(vector3d(3, 0, -4), origin), vector3d(-0.6, 0, 0.8));
    EXPECT_EQ(persp.get_viewvector(vector3d(0, 0, 0), origin), vector3d(0, 0, 0));
    EXPECT_EQ(ex.get_viewvector(vector3d(0, 0, 0), origin), vector3d(0, 0, 0));

    const camera sideways(vector3d(5, 5, 5), vector3d(2, 0, 0));
    EXPECT_EQ(ortho.get_viewvector(vector3d(3, 0, -4), sideways), vector3d(-1, 0, 0));
    EXPECT_EQ(ortho.get_viewvector(vector3d(5, 5, 5), sideways), vector3d(-1, 0, 0));
    EXPECT_EQ(persp.get_viewvector(vector3d(5, 5, 7), sideways), vector3d(0, 0, -1));
}

TEST(Projector, CloneKeepsDynamicTypeAndEveryField) {
    orthographic_projector ortho;
    ortho.set_ortho_params(-1, 3, -2, 5, 0.5, 10);
    ortho.set_viewport(1, 2, 3, 4);
    perspective_projector persp(75, 1.5, 0.25, 80);
    persp.set_viewport(5, 6, 7, 8);
    persp_projector_ex ex(-1, 2, -3, 4, 0.1, 90);
    ex.set_viewport(9, 10, 11, 12);

    const std::unique_ptr<projector> o(static_cast<const projector&>(ortho).clone());
    const std::unique_ptr<projector> p(static_cast<const projector&>(persp).clone());
    const std::unique_ptr<projector> e(static_cast<const projector&>(ex).clone());
    ASSERT_EQ(typeid(*o), typeid(orthographic_projector));
    ASSERT_EQ(typeid(*p), typeid(perspective_projector));
    ASSERT_EQ(typeid(*e), typeid(persp_projector_ex));

    expect_base_fields(*o, 0.5, 10, 1, 2, 3, 4);
    expect_base_fields(*p, 0.25, 80, 5, 6, 7, 8);
    expect_base_fields(*e, 0.1, 90, 9, 10, 11, 12);
    const auto& oc = static_cast<const orthographic_projector&>(*o);
    EXPECT_EQ(oc.get_left(), -1.0);
    EXPECT_EQ(oc.get_right(), 3.0);
    EXPECT_EQ(oc.get_bottom(), -2.0);
    EXPECT_EQ(oc.get_top(), 5.0);
    const auto& ec = static_cast<const persp_projector_ex&>(*e);
    EXPECT_EQ(ec.get_left(), -1.0);
    EXPECT_EQ(ec.get_right(), 2.0);
    EXPECT_EQ(ec.get_bottom(), -3.0);
    EXPECT_EQ(ec.get_top(), 4.0);

    // The clone is independent of its original.
    auto& pc = static_cast<perspective_projector&>(*p);
    EXPECT_EQ(pc.get_aspect_ratio(), 1.5);
    pc.set_hfov(10);
    pc.set_aspect_ratio(3);
    pc.set_viewport(0, 0, 1, 1);
    EXPECT_EQ(pc.get_hfov(), 10.0);
    EXPECT_EQ(pc.get_aspect_ratio(), 3.0);
    EXPECT_EQ(persp.get_hfov(), 75.0);
    EXPECT_EQ(persp.get_aspect_ratio(), 1.5);
    expect_base_fields(persp, 0.25, 80, 5, 6, 7, 8);
}

TEST(Projector, CopiesCarryBaseAndOwnFields) {
    perspective_projector a(75, 1.5, 0.25, 80);
    a.set_viewport(5, 6, 7, 8);
    const perspective_projector b(a);
    EXPECT_EQ(b.get_hfov(), 75.0);
    EXPECT_EQ(b.get_aspect_ratio(), 1.5);
    expect_base_fields(b, 0.25, 80, 5, 6, 7, 8);

    orthographic_projector o(6, 2, 0.5, 9);
    o.set_viewport(9, 10, 11, 12);
    orthographic_projector assigned;
    assigned = o;
    o.set_ortho_params(1, 1, 1, 1);
    EXPECT_EQ(assigned.width(), 6.0);
    EXPECT_EQ(assigned.height(), 2.0);
    expect_base_fields(assigned, 0.5, 9, 9, 10, 11, 12);
}

}  // namespace
