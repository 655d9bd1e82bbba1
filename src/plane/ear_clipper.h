// Internal: the clipping loop of triangulate().
#pragma once

#include <vector>

#include "facet/geometry.h"
#include "plane/corner_tree.h"
#include "plane/ring_index.h"
#include "plane/z_order_list.h"

namespace facet::plane_detail {

/// The clipping loop with its working memory. The buffers are kept from one run to the next
/// (sized for the largest outline so far), so that repeated runs neither allocate nor touch
/// fresh pages; one object serves one thread at a time.
class ear_clipper {
public:
    /// Clips ears from the cleaned-up outline `order` (indices into `contour`,
    /// counter-clockwise, at least 3 of them) in the order of the textbook loop and appends the
    /// triangles to `result`, corners reversed when `reversed` is set. Throws
    /// std::runtime_error("Triangulation error: bad polygon") where that loop does, after the
    /// same triangles.
    void run(const std::vector<vector2d>& contour, const std::vector<unsigned>& order,
             bool reversed, std::vector<unsigned>& result);

private:
    void start(const std::vector<vector2d>& contour, const std::vector<unsigned>& order);
    bool is_ear(unsigned u, unsigned v, unsigned w);
    unsigned find_inside(unsigned u, unsigned v, unsigned w, double twice_area);
    void clip(unsigned v);
    void reconsider(unsigned corner);

    struct blocked_entry {
        unsigned corner;
        unsigned next;  // the next entry of the same blocker's list, or none
    };

    std::vector<vector2d> m_points;  // per corner of the cleaned-up outline
    std::vector<unsigned> m_prev;    // the ring of remaining corners
    std::vector<unsigned> m_next;
    std::vector<unsigned char> m_alive;
    std::vector<unsigned> m_blocker;       // the corner inside this corner's ear, or none
    std::vector<unsigned> m_blocked_head;  // per corner, the list of corners it blocked
    std::vector<blocked_entry> m_blocked_pool;
    id_set m_candidates;  // corners whose next test is not known to fail
    std::size_t m_remaining = 0;
    bool m_listed = false;        // whether m_list indexes the remaining corners
    unsigned m_list_pause = 0;    // ears left that the tree answers without asking the list
    unsigned m_list_backoff = 1;  // the next pause
    z_order_list m_list;
    corner_tree m_tree;  // built when the list cannot answer
};

}  // namespace facet::plane_detail
