// The mesh of shadow_volume::rebuild_mesh, written in one pass over its silhouette.
#pragma once

#include <vector>

#include "facet/ifs.h"
#include "shadow/silhouette.h"

namespace facet::detail {

/// Writes into `mesh` (a new face set, which may hold arrays of an earlier volume to reuse) the
/// oriented volume of `source` over `silhouette` (from find_silhouette with the oriented rule)
/// for `light` in the source's coordinates, as shadow_volume::rebuild_mesh describes it: the
/// quads, the style and backface culling, then what compute_normals, construct_halfedge_data,
/// gen_texcoords_box and compute_tangent_space would give, each array written once.
void write_oriented_volume(const indexedfaceset& source,
                           const std::vector<silhouette_edge>& silhouette, const vector3d& light,
                           indexedfaceset& mesh);

}  // namespace facet::detail
