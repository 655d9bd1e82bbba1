// The version of facet: the macros give the version of the headers a host was compiled
// against, facet::version() that of the library it runs with.
//
// CMake reads the version from this header (project(facet VERSION ...)), so the macros, the
// shared library's file name (libfacet.so.MAJOR) and the installed package versions agree.
#pragma once

#include "facet/export.h"

/// Major version: changes when the interface changes incompatibly.
#define FACET_VERSION_MAJOR 0
/// Minor version: changes when the interface grows compatibly.
#define FACET_VERSION_MINOR 1
/// Patch version: changes with fixes that leave the interface alone.
#define FACET_VERSION_PATCH 0
/// The version as "MAJOR.MINOR.PATCH".
#define FACET_VERSION_STRING "0.1.0"
/// The version as one comparable number: MAJOR * 10000 + MINOR * 100 + PATCH.
#define FACET_VERSION \
    (FACET_VERSION_MAJOR * 10000 + FACET_VERSION_MINOR * 100 + FACET_VERSION_PATCH)

namespace facet {

/// The version of the library the program runs with, as "MAJOR.MINOR.PATCH" (a static string,
/// never null). Compare it with FACET_VERSION_STRING to detect a header/library mismatch.
FACET_API const char* version() noexcept;

}  // namespace facet
