// A host program built against the installed package; exits 0 when the library answers,
// including its text rasterizer (whose FreeType and fontconfig stay private to libfacet).
#include <facet/facet.h>

#include <cstring>

#if defined(FACET_CONSUMER_CXX20)
static_assert(__cplusplus >= 202002L, "the consumer's own -std=c++20 must stay in force");
#endif

int main() {
    matrix44d m;
    make_translation_matrix(m, 1.0, 2.0, 3.0);
    const vector3d p = transform_vector(inverse(m), vector3d(1.0, 2.0, 3.0));
    graphics::bitmap label;
    graphics::make_texture_xy("Arial", 12, graphics::color(0, 0, 0), graphics::color(255, 255, 255),
                              32, 16, "ok", label);
    const bool drawn =
        label.width() == 32 && label.get_pixel(0, 0) == graphics::color(255, 255, 255);
    const bool same_version = std::strcmp(facet::version(), FACET_VERSION_STRING) == 0;
    return p == vector3d(0.0, 0.0, 0.0) && drawn && same_version ? 0 : 1;
}
