// The box projections of gen_texcoords_box, shared by the texturing of face sets and the mesh
// of oriented shadow volumes.
#pragma once

#include "facet/ifs.h"

namespace facet::detail {

/// The projections for a texture scale (su, sv), indexed by the dominant axis of a face normal
/// (0 = x, 1 = y, 2 = z): plain, and turned by a quarter turn for texture_rotated.
struct box_projection {
    matrix2x3 plain[3];
    matrix2x3 rotated[3];

    box_projection(double su, double sv) {
        enum { x = 0, y = 1, z = 2 };
        plain[0](0, z) = su;
        plain[0](1, y) = sv;
        plain[1](0, x) = su;
        plain[1](1, z) = sv;
        plain[2](0, x) = su;
        plain[2](1, y) = sv;

        rotated[0](0, y) = -su;
        rotated[0](1, z) = sv;
        rotated[1](0, z) = su;
        rotated[1](1, x) = sv;
        rotated[2](0, y) = -su;
        rotated[2](1, x) = sv;
    }
};

}  // namespace facet::detail
