// The library's own version, fixed when the library is compiled.
#include "facet/version.h"

namespace facet {

const char* version() noexcept { return FACET_VERSION_STRING; }

}  // namespace facet
