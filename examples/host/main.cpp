// A minimal host: builds a small scene of primitives (a box as floor, a cylinder standing on it
// and a cone on top of the cylinder as its child), looks at it through a camera and prints what
// facet made of it: mesh sizes, bounds, outline edges for the view and world matrices.
#include <facet/facet.h>

#include <algorithm>
#include <cstdio>
#include <vector>

namespace {

void print_matrix(const char* title, const matrix44d& m) {
    std::printf("%s\n", title);
    for (int r = 0; r < 4; ++r)
        std::printf("  [%9.4f %9.4f %9.4f %9.4f]\n", m(r, 0), m(r, 1), m(r, 2), m(r, 3));
}

// Edges drawn as outlines: a paired edge counts once, an open edge once.
unsigned drawn_edges(const indexedfaceset& mesh) {
    unsigned n = 0;
    for (std::uint32_t e = 0; e < mesh.num_edges(); ++e) {
        const halfedge& h = mesh.get_edge(e);
        if (h.drawn() && (h.m_twinedge == nullptr || h.m_twinedge > &h)) ++n;
    }
    return n;
}

// The camera as seen from the object: the mesh is in object space.
camera camera_in_object_space(const camera& cam, const primitives::basic_object& o) {
    const matrix44d to_object = inverse(primitives::calc_transformation_matrix(o));
    return camera(transform_vector(to_object, cam.get_position()),
                  transform_vector_3x3(to_object, cam.get_direction()),
                  transform_vector_3x3(to_object, cam.get_updir()));
}

void report(const primitives::basic_object& o, const camera& cam, const projector& proj,
            const matrix44d& to_screen) {
    indexedfaceset& mesh = o.get_mesh();
    const unsigned sharp = drawn_edges(mesh);
    mesh.determine_visible_edges(camera_in_object_space(cam, o), proj,
                                 mesh.get_visible_edge_treshold());
    const unsigned outline = drawn_edges(mesh);

    const matrix44d world = primitives::calc_transformation_matrix(o);
    vector3d lo(1e300, 1e300, 1e300), hi(-1e300, -1e300, -1e300);
    double sx_lo = 1e300, sx_hi = -1e300, sy_lo = 1e300, sy_hi = -1e300;
    for (std::uint32_t v = 0; v < mesh.num_vertices(); ++v) {
        const vector3d p = transform_vector(world, mesh.get_vertex(v));
        lo = {std::min(lo.x, p.x), std::min(lo.y, p.y), std::min(lo.z, p.z)};
        hi = {std::max(hi.x, p.x), std::max(hi.y, p.y), std::max(hi.z, p.z)};
        const vector3d s = transform_vector(to_screen, p);
        sx_lo = std::min(sx_lo, s.x);
        sx_hi = std::max(sx_hi, s.x);
        sy_lo = std::min(sy_lo, s.y);
        sy_hi = std::max(sy_hi, s.y);
    }
    const primitives::boundingbox b = o.get_boundingbox();
    std::printf("%-8s %-8s parent %-8s %3u vertices %3u faces %3u half-edges\n",
                o.get_name().c_str(), o.class_id().c_str(), o.get_parentname().c_str(),
                mesh.num_vertices(), mesh.num_faces(), mesh.num_edges());
    std::printf("         bounding box centre (%.2f, %.2f, %.2f) size %.2f x %.2f x %.2f\n",
                b.center.x, b.center.y, b.center.z, b.width, b.height, b.depth);
    std::printf("         world bounds (%.2f, %.2f, %.2f) .. (%.2f, %.2f, %.2f)\n", lo.x, lo.y,
                lo.z, hi.x, hi.y, hi.z);
    std::printf("         on screen x %.0f .. %.0f px, y %.0f .. %.0f px\n", sx_lo, sx_hi, sy_lo,
                sy_hi);
    std::printf("         %u sharp edges, %u outline edges for this view%s\n", sharp, outline,
                outline == sharp ? " (no silhouettes)" : "");
}

}  // namespace

int main() {
    primitives::box floor(6.0, 0.2, 6.0);
    floor.set_name("floor");
    floor.set_smoothing_threshold_angle(30.0);

    primitives::cylinder post(2.0, 0.5, 24);
    post.set_name("post");
    post.set_parent(&floor);
    post.set_position(vector3d(3.0, 0.2, 3.0));  // on the floor's top, axis at its centre
    post.set_smoothing_threshold_angle(30.0);

    primitives::cone cap(1.0, 0.8);
    cap.set_name("cap");
    cap.set_parent(&post);
    cap.set_position(vector3d(0.0, 2.0, 0.0));  // on the post's top
    cap.set_orientation(vector3d(0.0, 1.0, 0.0), 15.0);
    cap.set_smoothing_threshold_angle(30.0);

    const std::vector<const primitives::basic_object*> scene{&floor, &post, &cap};

    // Viewer in front, to the right and above; perspective 60 degrees, 640 x 480 pixels.
    const camera cam(vector3d(11.0, 7.0, 13.0), vector3d(-8.0, -5.5, -10.0));
    perspective_projector proj(60.0, 640.0 / 480.0, 0.1, 100.0);
    proj.set_viewport(0.0, 0.0, 640.0, 480.0);
    matrix44d view, screen;
    cam.get_matrix(view);
    proj.get_matrix(screen);
    const matrix44d to_screen = screen * view;

    std::printf("facet example host: %zu primitives\n\n", scene.size());
    for (const primitives::basic_object* o : scene) report(*o, cam, proj, to_screen);

    std::printf("\n");
    print_matrix("world matrix of \"cap\" (floor x post x cap placement):",
                 primitives::calc_transformation_matrix(cap));
    print_matrix("world to screen (viewport x projection x view):", to_screen);
    return 0;
}
