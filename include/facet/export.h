// Symbol visibility for the shared library.
//
// The library is built with hidden visibility; everything a host may call or catch is marked
// FACET_API. Exception classes must carry it too, so that their type information is shared
// between the library and the host and a `catch` in the host matches a `throw` in the library.
#pragma once

#if defined(_WIN32)
#define FACET_API
#else
#define FACET_API __attribute__((visibility("default")))
#endif
