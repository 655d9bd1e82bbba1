// Object-to-world transforms along the parent chain.
#include "facet/math3d.h"
#include "facet/objects.h"

namespace primitives {

matrix44d calc_transformation_matrix(const basic_object& o) {
    const vector3d& p = o.get_position();
    const axis_angle r = o.get_orientation();
    matrix44d translation;
    make_translation_matrix(translation, p.x, p.y, p.z);
    matrix44d rotation;
    make_rotation_matrix(rotation, r.angle, r.axis.x, r.axis.y, r.axis.z);
    matrix44d m = translation * rotation;
    if (const basic_object* parent = o.get_parent()) m = calc_transformation_matrix(*parent) * m;
    return m;
}

vector3d objectspace_to_worldspace(const vector3d& p, const basic_object& o) {
    return transform_vector(calc_transformation_matrix(o), p);
}

vector3d worldspace_to_objectspace(const vector3d& p, const basic_object& o) {
    return transform_vector(inverse(calc_transformation_matrix(o)), p);
}

}  // namespace primitives
