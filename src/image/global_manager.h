// Access to the registered texture manager for the library's own texture makers.
#pragma once

#include "facet/textures.h"

namespace facet::image {

/// The global texture manager; a missing one fails the check
/// "get_global_texture_manager() != nullptr".
graphics::texture_manager& global_manager();

}  // namespace facet::image
