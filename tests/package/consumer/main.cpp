// A host program built against the installed package; exits 0 when the library answers,
// including its text rasterizer (whose FreeType and fontconfig stay private to libfacet).
#include <facet/facet.h>

int main() {
    matrix44d m;
    make_translation_matrix(m, 1.0, 2.0, 3.0);
    const vector3d p = transform_vector(inverse(m), vector3d(1.0, 2.0, 3.0));
    graphics::bitmap label;
    graphics::make_texture_xy("Arial", 12, graphics::color(0, 0, 0), graphics::color(255, 255, 255),
                              32, 16, "ok", label);
    const bool drawn =
        label.width() == 32 && label.get_pixel(0, 0) == graphics::color(255, 255, 255);
    return p == vector3d(0.0, 0.0, 0.0) && drawn ? 0 : 1;
}
