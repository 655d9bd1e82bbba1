// A minimal host: places a few boxes in a scene, looks at them through a camera and prints what
// facet computes for them (world bounds, screen positions, overlaps, the combined matrix).
#include <facet/facet.h>

#include <algorithm>
#include <cstdio>

namespace {

struct placed_box {
    const char* name;
    vector3d size;
    matrix44d placement;
};

void print_matrix(const char* title, const matrix44d& m) {
    std::printf("%s\n", title);
    for (int r = 0; r < 4; ++r)
        std::printf("  [%10.4f %10.4f %10.4f %10.4f]\n", m(r, 0), m(r, 1), m(r, 2), m(r, 3));
}

}  // namespace

int main() {
    placed_box scene[3];
    scene[0] = {"floor", {10.0, 0.2, 10.0}, matrix44d::identity()};
    make_translation_matrix(scene[1].placement, 2.0, 0.2, 2.0);
    scene[1].name = "crate";
    scene[1].size = {1.0, 1.0, 1.0};
    make_translation_matrix(scene[2].placement, 2.5, 0.2, 2.5);
    append_rotation(scene[2].placement, 45.0, 0.0, 1.0, 0.0);
    scene[2].name = "turned crate";
    scene[2].size = {1.0, 2.0, 1.0};

    // Camera looking from the front-right down onto the scene, perspective 60°, 640x480 window.
    matrix44d view, projection, viewport;
    calc_view_matrix({12.0, 8.0, 12.0}, {-1.0, -0.6, -1.0}, {0.0, 1.0, 0.0}, view);
    calc_perspective_matrix(60.0, 640.0 / 480.0, 0.1, 100.0, projection);
    calc_viewport_matrix(0.0, 0.0, 640.0, 480.0, viewport);
    const matrix44d to_screen = viewport * projection * view;

    std::printf("facet example host: %zu boxes\n\n", sizeof scene / sizeof scene[0]);
    for (const placed_box& box : scene) {
        vector3d low(1e300, 1e300, 1e300), high(-1e300, -1e300, -1e300);
        double sx_min = 1e300, sx_max = -1e300, sy_min = 1e300, sy_max = -1e300;
        for (int i = 0; i < 8; ++i) {
            const vector3d local((i >> 2) * box.size.x, ((i >> 1) & 1) * box.size.y,
                                 (i & 1) * box.size.z);
            const vector3d world = transform_vector(box.placement, local);
            low = {std::min(low.x, world.x), std::min(low.y, world.y), std::min(low.z, world.z)};
            high = {std::max(high.x, world.x), std::max(high.y, world.y),
                    std::max(high.z, world.z)};
            const vector3d screen = transform_vector(to_screen, world);
            sx_min = std::min(sx_min, screen.x);
            sx_max = std::max(sx_max, screen.x);
            sy_min = std::min(sy_min, screen.y);
            sy_max = std::max(sy_max, screen.y);
        }
        std::printf("%-13s world bounds (%.3f, %.3f, %.3f) .. (%.3f, %.3f, %.3f)\n", box.name,
                    low.x, low.y, low.z, high.x, high.y, high.z);
        std::printf("%-13s on screen    x %.1f .. %.1f px, y %.1f .. %.1f px\n", "", sx_min, sx_max,
                    sy_min, sy_max);
    }

    std::printf("\noverlaps (tolerance 1e-9):\n");
    for (int i = 0; i < 3; ++i)
        for (int j = i + 1; j < 3; ++j)
            std::printf("  %-13s x %-13s %s\n", scene[i].name, scene[j].name,
                        test_overlapping_boxes(scene[i].size, scene[i].placement, scene[j].size,
                                               scene[j].placement, 1e-9)
                            ? "overlap"
                            : "apart");

    std::printf("\n");
    print_matrix("world to screen (viewport x projection x view):", to_screen);
    print_matrix("screen back to world (inverse):", inverse(to_screen));
    return 0;
}
