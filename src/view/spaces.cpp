// Conversions between world, camera and screen space.
#include "facet/spaces.h"

namespace {

matrix44d view_matrix(const camera& cam) {
    matrix44d m;
    cam.get_matrix(m);
    return m;
}

matrix44d screen_matrix(const projector& proj) {
    matrix44d m;
    proj.get_matrix(m);
    return m;
}

}  // namespace

matrix44d calc_transformation_matrix(const camera& cam, const projector& proj) {
    return screen_matrix(proj) * view_matrix(cam);
}

vector3d project(const vector3d& point, const camera& cam, const projector& proj) {
    return transform_vector(calc_transformation_matrix(cam, proj), point);
}

vector3d unproject(const vector3d& point, const camera& cam, const projector& proj) {
    return transform_vector(inverse(calc_transformation_matrix(cam, proj)), point);
}

vector3d unproject(int x, int y, const camera& cam, const projector& proj) {
    return unproject(vector3d(static_cast<double>(x), static_cast<double>(y), 1.0), cam, proj);
}

vector3d camera2worldspace(const vector3d& point, const camera& cam) {
    return transform_vector(inverse(view_matrix(cam)), point);
}

vector3d worldspace2camera(const vector3d& point, const camera& cam) {
    return transform_vector(view_matrix(cam), point);
}

vector3d camera2screen(const vector3d& point, const projector& proj) {
    return transform_vector(screen_matrix(proj), point);
}

vector3d screen2camera(const vector3d& point, const projector& proj) {
    return transform_vector(inverse(screen_matrix(proj)), point);
}

camera transform(const camera& cam, const matrix44d& m) {
    const vector3d position = transform_vector(m, cam.get_position());
    const vector3d direction = transform_vector_3x3(m, cam.get_direction());
    const vector3d updir = transform_vector_3x3(m, cam.get_updir());
    return camera(position, direction, updir);
}

// ---- array forms: one matrix per call ---------------------------------------------------------

void project(const vector3d* points, std::size_t count, vector3d* out, const camera& cam,
             const projector& proj) {
    if (count == 0) return;
    transform_vectors(calc_transformation_matrix(cam, proj), points, count, out);
}

void unproject(const vector3d* points, std::size_t count, vector3d* out, const camera& cam,
               const projector& proj) {
    if (count == 0) return;
    transform_vectors(inverse(calc_transformation_matrix(cam, proj)), points, count, out);
}

void camera2worldspace(const vector3d* points, std::size_t count, vector3d* out,
                       const camera& cam) {
    if (count == 0) return;
    transform_vectors(inverse(view_matrix(cam)), points, count, out);
}

void worldspace2camera(const vector3d* points, std::size_t count, vector3d* out,
                       const camera& cam) {
    if (count == 0) return;
    transform_vectors(view_matrix(cam), points, count, out);
}

void camera2screen(const vector3d* points, std::size_t count, vector3d* out,
                   const projector& proj) {
    if (count == 0) return;
    transform_vectors(screen_matrix(proj), points, count, out);
}

void screen2camera(const vector3d* points, std::size_t count, vector3d* out,
                   const projector& proj) {
    if (count == 0) return;
    transform_vectors(inverse(screen_matrix(proj)), points, count, out);
}

bool equal_cam_dirs(const vector3d& a, const vector3d& b) { return (a - b).length() < 1e-6; }
