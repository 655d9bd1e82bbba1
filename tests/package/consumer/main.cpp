// A host program built against the installed package; exits 0 when the library answers.
#include <facet/facet.h>

int main() {
    matrix44d m;
    make_translation_matrix(m, 1.0, 2.0, 3.0);
    const vector3d p = transform_vector(inverse(m), vector3d(1.0, 2.0, 3.0));
    return p == vector3d(0.0, 0.0, 0.0) ? 0 : 1;
}
