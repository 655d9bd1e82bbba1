// The storage of large face-set arrays, reused from one build to the next.
#pragma once

#include <cstdint>

#include "facet/carray.h"

namespace facet::detail {

/// Sizes `a` to `n` elements for a caller that overwrites every one of them. An array that
/// already holds `n` elements keeps its storage; otherwise its storage goes to the process-wide
/// pool of mesh buffers (see set_mesh_buffer_limit) and `a` takes a pooled array of exactly `n`
/// elements, or a newly allocated one (default-initialised) when the pool holds none. Either
/// way the old values are indeterminate. Thread-safe; defined for vector3d, face, halfedge,
/// texcoord, std::uint32_t, std::uint64_t and double.
template <class T>
void size_for_overwrite(carray<T>& a, std::uint32_t n);

/// Hands the storage of `a` to the pool (or frees it when it is small or the pool is full);
/// `a` ends empty.
template <class T>
void recycle(carray<T>& a);

/// A scratch array of `n` elements from the pool, given back when it goes out of scope.
template <class T>
class scratch {
public:
    explicit scratch(std::uint32_t n) { size_for_overwrite(m_array, n); }
    scratch(const scratch&) = delete;
    scratch& operator=(const scratch&) = delete;
    ~scratch() { recycle(m_array); }
    T* data() { return m_array.data(); }
    const T* data() const { return m_array.data(); }

private:
    carray<T> m_array;
};

}  // namespace facet::detail
