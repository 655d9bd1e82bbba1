// The camera, the projector family and the conversions between world, camera and screen space.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <memory>
#include <typeinfo>
#include <vector>

#include "facet/spaces.h"

namespace {

static_assert(!std::is_copy_assignable_v<projector>, "assignment through the base would slice");

// Every field of a camera or a projector.
std::vector<double> fields(const camera& c) {
    const vector3d p = c.get_position(), d = c.get_direction(), u = c.get_updir();
    return {p.x, p.y, p.z, d.x, d.y, d.z, u.x, u.y, u.z, c.get_scene_rotation()};
}
std::vector<double> fields(const projector& p) {
    std::vector<double> f = {p.get_nearplane_distance(), p.get_farplane_distance(), 0, 0, 0, 0};
    p.get_viewport(f[2], f[3], f[4], f[5]);
    if (const auto* o = dynamic_cast<const orthographic_projector*>(&p))
        f.insert(f.end(), {o->get_left(), o->get_right(), o->get_bottom(), o->get_top()});
    if (const auto* s = dynamic_cast<const perspective_projector*>(&p))
        f.insert(f.end(), {s->get_hfov(), s->get_aspect_ratio()});
    if (const auto* e = dynamic_cast<const persp_projector_ex*>(&p))
        f.insert(f.end(), {e->get_left(), e->get_right(), e->get_bottom(), e->get_top()});
    return f;
}
using values = std::vector<double>;

matrix44d matrix_of(const camera& c) {
    matrix44d m;
    c.get_matrix(m);
    return m;
}

TEST(Camera, DirectionsAreNormalisedNearZeroToZeroAndTheViewMatrixUsesOnlyThePlacement) {
    EXPECT_EQ(fields(camera()), (values{0, 0, 0, 0, 0, -1, 0, 1, 0, 0}));
    EXPECT_EQ(matrix_of(camera()), matrix44d::identity());
    EXPECT_EQ(fields(camera({3, 4, 0}, {0, 0, 5})), (values{3, 4, 0, 0, 0, 1, 0, 1, 0, 0}));
    EXPECT_EQ(fields(camera({3, 4, 0}, {-2, 0, 0}, {0, 0, 1e-13})),
              (values{3, 4, 0, -1, 0, 0, 0, 0, 0, 0}));
    camera c({0, 0, 5}, {0, 0, -1});
    c.set_updir({0, 3, 0});
    c.set_scene_rotation(30.0);
    EXPECT_EQ(fields(c), (values{0, 0, 5, 0, 0, -1, 0, 1, 0, 30}));
    matrix44d expected = matrix44d::identity();
    expected(2, 3) = -5.0;
    EXPECT_EQ(matrix_of(c), expected);
    c.set_updir({0, 3, 4});  // need not be orthogonal to the direction
    EXPECT_EQ(matrix_of(c), expected);

    c.set_direction({0, 0, 1e-13});
    EXPECT_EQ(c.get_direction(), vector3d(0, 0, 0));
    c.set_position({1, 1, 1});
    c.look_at({1, 1, -9});  // turns only the direction
    EXPECT_EQ(fields(c), (values{1, 1, 1, 0, 0, -1, 0, 0.6, 0.8, 30}));
    c.look_at(c.get_position());
    EXPECT_EQ(c.get_direction(), vector3d(0, 0, 0));
}

TEST(Camera, ComparisonIsExactOverNineComponentsAndCopiesCarryEveryField) {
    const camera base({1, 2, 3}, {0, 0, -1}, {0, 1, 0});
    camera rotated = base;
    rotated.set_scene_rotation(45.0);
    EXPECT_TRUE(base == rotated && !(base != rotated));
    // One of the nine components differs (a nudge of 1e-9 survives normalisation).
    for (int i = 0; i < 9; ++i) {
        values v = {1, 2, 3, 0, 0, -1, 0, 1, 0};
        v[i] = i < 3 ? v[i] + 0.5 : v[i] == 0 ? 1e-9 : -v[i];
        const camera other({v[0], v[1], v[2]}, {v[3], v[4], v[5]}, {v[6], v[7], v[8]});
        ASSERT_EQ(fields(other)[i], v[i]);
        EXPECT_TRUE(!(base == other) && base != other) << i;
    }
    const camera nan({std::nan(""), 0, 0}, {0, 0, -1});
    EXPECT_TRUE(!(nan == nan) && nan != nan);

    camera copy(rotated), other;
    swap(copy, other);
    EXPECT_TRUE(fields(copy) == fields(camera()) && fields(other) == fields(rotated));
}

TEST(Projector, DefaultsParametersAndClones) {
    orthographic_projector ortho;
    EXPECT_EQ(fields(ortho), (values{1, 50, 0, 0, 800, 600, -2, 2, -1.5, 1.5}));
    ortho.set_ortho_params(10, 20, 1, 100);
    EXPECT_EQ(fields(ortho), (values{1, 100, 0, 0, 800, 600, -5, 5, -10, 10}));
    ortho.set_ortho_params(-1, 3, -2, 5, 0.5, 10);  // bottom before top
    EXPECT_EQ(fields(ortho), (values{0.5, 10, 0, 0, 800, 600, -1, 3, -2, 5}));
    EXPECT_EQ((values{ortho.width(), ortho.height()}), (values{4, 7}));
    EXPECT_EQ(fields(orthographic_projector(6, 2, 0.5, 9)),
              (values{0.5, 9, 0, 0, 800, 600, -3, 3, -1, 1}));
    ortho.set_nearplane_distance(-3.0);
    ortho.set_farplane_distance(-4.0);
    ortho.set_viewport(1, 2, 3, 4);
    EXPECT_EQ(fields(ortho), (values{-3, -4, 1, 2, 3, 4, -1, 3, -2, 5}));
    perspective_projector persp;
    EXPECT_EQ(fields(persp), (values{1, 50, 0, 0, 800, 600, 60, 1.3333}));  // not 4/3
    persp.set_perspective_params(45, 1.5, 2, 30);
    EXPECT_EQ(fields(persp), (values{2, 30, 0, 0, 800, 600, 45, 1.5}));
    EXPECT_EQ(fields(persp_projector_ex()), (values{1, 50, 0, 0, 800, 600, 0, 0, 0, 0}));
    persp_projector_ex ex(-1, 2, -3, 4, 0.1, 90);
    ex.set_viewport(9, 10, 11, 12);
    EXPECT_EQ(fields(ex), (values{0.1, 90, 9, 10, 11, 12, -1, 2, -3, 4}));
    ex.set_perspective_params(0, 2, 0, 1.5, 1, 50);
    EXPECT_EQ(fields(ex), (values{1, 50, 9, 10, 11, 12, 0, 2, 0, 1.5}));

    // Clones keep their type and fields; the matrices take the fields in the math functions' order.
    matrix44d expected[3], viewport;
    calc_ortho_matrix(-1, 3, -2, 5, -3, -4, expected[0]);
    calc_perspective_matrix(45, 1.5, 2, 30, expected[1]);
    calc_perspective_matrix(0, 2, 0, 1.5, 1, 50, expected[2]);
    const projector* all[] = {&ortho, &persp, &ex};
    for (int i = 0; i < 3; ++i) {
        const std::unique_ptr<projector> clone(all[i]->clone());
        EXPECT_TRUE(typeid(*clone) == typeid(*all[i]) && fields(*clone) == fields(*all[i]));
        matrix44d projection, screen;
        clone->get_projection_matrix(projection);
        EXPECT_EQ(projection, expected[i]) << i;
        clone->get_viewport_matrix(viewport);
        clone->get_matrix(screen);
        EXPECT_EQ(screen, viewport * projection) << i;
        clone->set_viewport(0, 0, 1, 1);
        EXPECT_NE(fields(*clone), fields(*all[i]));
    }
}

TEST(Projector, ViewVectorPointsToTheEyeOrAgainstTheDirection) {
    const camera origin, sideways({5, 5, 5}, {2, 0, 0});
    const perspective_projector persp;
    const persp_projector_ex ex(-1, 1, -1, 1, 1, 10);
    for (const projector* p : std::initializer_list<const projector*>{&persp, &ex}) {
        EXPECT_EQ(p->get_viewvector({3, 0, -4}, origin), vector3d(-0.6, 0, 0.8));
        EXPECT_EQ(p->get_viewvector({0, 0, 0}, origin), vector3d(0, 0, 0));
        EXPECT_EQ(p->get_viewvector({5, 5, 7}, sideways), vector3d(0, 0, -1));
    }
    EXPECT_EQ(orthographic_projector().get_viewvector({3, 0, -4}, origin), vector3d(0, 0, 1));
    EXPECT_EQ(orthographic_projector().get_viewvector({5, 5, 5}, sideways), vector3d(-1, 0, 0));
}

}  // namespace
