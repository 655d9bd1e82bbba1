// Object-to-world transforms along the parent chain.
#include <vector>

#include "facet/check.h"
#include "facet/math3d.h"
#include "facet/objects.h"

namespace primitives {

namespace {

// translation(position) × rotation(orientation) of one object.
matrix44d local_matrix(const basic_object& o) {
    const vector3d& p = o.get_position();
    const axis_angle r = o.get_orientation();
    matrix44d translation;
    make_translation_matrix(translation, p.x, p.y, p.z);
    matrix44d rotation;
    make_rotation_matrix(rotation, r.angle, r.axis.x, r.axis.y, r.axis.z);
    return translation * rotation;
}

}  // namespace

matrix44d calc_transformation_matrix(const basic_object& o) {
    // The chain from `o` up to its root. A second pointer follows at half speed: in a chain it
    // stays behind, in a loop the first one catches it up.
    std::vector<const basic_object*> chain{&o};
    const basic_object* slow = &o;
    for (const basic_object* p = o.get_parent(); p != nullptr; p = p->get_parent()) {
        chain.push_back(p);
        FACET_CHECK(p != slow);  // fails when the parent links form a cycle
        if (chain.size() % 2 == 1) slow = slow->get_parent();
    }
    // From the root down, as the recursive definition multiplies: parent × (T × R).
    matrix44d m = local_matrix(*chain.back());
    for (auto it = chain.rbegin() + 1; it != chain.rend(); ++it) m = m * local_matrix(**it);
    return m;
}

vector3d objectspace_to_worldspace(const vector3d& p, const basic_object& o) {
    return transform_vector(calc_transformation_matrix(o), p);
}

vector3d worldspace_to_objectspace(const vector3d& p, const basic_object& o) {
    return transform_vector(inverse(calc_transformation_matrix(o)), p);
}

}  // namespace primitives
