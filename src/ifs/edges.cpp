// indexedfaceset: outline marks, independent of the view (sharp edges) and for a view
// (creases and silhouettes).
#include <cmath>
#include <functional>
#include <vector>

#include "facet/camera.h"
#include "facet/check.h"
#include "facet/ifs.h"
#include "facet/projector.h"

namespace {

// One degree in radians, used as a tolerance on the dot products of the silhouette test.
constexpr double silhouette_tolerance = 0.017453292519943295;

// Whether the faces with normals na and nb may lie on different sides of the view direction:
// false only when both are clearly in front or clearly behind.
bool is_silhouette(const vector3d& na, const vector3d& nb, const vector3d& view) {
    const double a = dot(na, view);
    const double b = dot(nb, view);
    if (a >= silhouette_tolerance && b >= silhouette_tolerance) return false;
    if (a <= -silhouette_tolerance && b <= -silhouette_tolerance) return false;
    return true;
}

void mark_pair(halfedge& e, bool drawn) {
    e.set_drawn(drawn);
    e.m_twinedge->set_drawn(drawn);
}

}  // namespace

void indexedfaceset::determine_sharp_edges(double angle) {
    const double threshold = std::cos(angle * geometry::pi / 180.0);
    // Walking the half-edges in order, each one with a twin marks itself and its twin, so a
    // half-edge ends with the mark of the last walk step that touched it. When the twins pair
    // the half-edges two by two (each one's twin has it as its twin, or it is its own twin),
    // both steps of a pair give both the same mark (the dot product commutes bit for bit), so
    // each pair is marked once, at its first half-edge. That pairing is checked on the way: a
    // later twin must point back, and the half-edges whose twin comes earlier must be exactly
    // the second halves of the pairs seen; otherwise the walk is done step by step.
    halfedge* const edges = m_edges.data();
    const std::uint32_t num_edges = m_edges.size();
    std::uint32_t pairs = 0;
    std::uint32_t seconds = 0;
    bool paired = true;
    for (std::uint32_t i = 0; i < num_edges && paired; ++i) {
        halfedge& e = edges[i];
        halfedge* const twin = e.m_twinedge;
        if (twin == nullptr) {
            e.set_drawn(true);
        } else if (std::less<const halfedge*>()(&e, twin)) {
            paired = twin->m_twinedge == &e;
            mark_pair(e, dot(e.face->normal, twin->face->normal) <= threshold);
            ++pairs;
        } else if (twin == &e) {
            e.set_drawn(dot(e.face->normal, e.face->normal) <= threshold);
        } else {
            ++seconds;
        }
    }
    if (paired && pairs == seconds) return;
    for (halfedge& e : m_edges) {
        if (e.m_twinedge == nullptr) {
            e.set_drawn(true);
            continue;
        }
        const double d = dot(e.face->normal, e.m_twinedge->face->normal);
        mark_pair(e, d <= threshold);
    }
}

void indexedfaceset::determine_visible_edges(const camera& cam, const projector& proj,
                                             double angle) {
    if (!m_silhouette_edges) return;
    const double threshold = std::cos(angle * geometry::pi / 180.0);

    // The view vector depends on the start vertex alone, so it is asked of the projector once
    // per vertex rather than once per half-edge. The buffer outlives the call so that a face set
    // redrawn every frame does not allocate.
    thread_local std::vector<vector3d> views;
    const std::uint32_t num_vertices = m_vertices.size();
    views.resize(num_vertices);
    for (std::uint32_t v = 0; v < num_vertices; ++v)
        views[v] = proj.get_viewvector(m_vertices[v], cam);

    // Both half-edges of a pair set the marks of both; the one later in the array decides (with
    // its own start vertex's view vector), so each pair is marked once, at that half-edge.
    halfedge* const edges = m_edges.data();
    const std::uint32_t num_edges = m_edges.size();
    for (std::uint32_t i = 0; i < num_edges; ++i) {
        halfedge& e = edges[i];
        if (e.m_twinedge == nullptr) {
            e.set_drawn(true);
            continue;
        }
        if (e.m_twinedge > &e && e.m_twinedge->m_twinedge == &e) continue;  // the twin decides
        FACET_CHECK(e.vertex < num_vertices);
        const vector3d& na = e.face->normal;
        const vector3d& nb = e.m_twinedge->face->normal;
        const double d = dot(na, nb);
        mark_pair(e, d <= threshold || is_silhouette(na, nb, views[e.vertex]));
    }
}
