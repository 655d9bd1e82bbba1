// carray<T>: a fixed-size, heap-allocated, bounds-checked array.
//
// The arrays of a face set are carrays. Resizing discards the old contents; nothing is copied
// over, the new elements are value-initialised. Element access checks the index with
// FACET_CHECK ("index < m_size") in every build type.
#pragma once

#include <cstdint>
#include <utility>

#include "facet/check.h"

template <class T>
class carray {
public:
    using value_type = T;
    using size_type = std::uint32_t;

    carray() noexcept = default;

    /// An array of `n` value-initialised elements.
    explicit carray(size_type n) { resize(n); }

    /// A deep copy: the same number of elements, each copied.
    carray(const carray& other) : carray(other.m_size) {
        for (size_type i = 0; i < m_size; ++i) m_data[i] = other.m_data[i];
    }
    carray(carray&& other) noexcept { swap(other); }
    carray& operator=(carray other) noexcept {
        swap(other);
        return *this;
    }
    ~carray() { delete[] m_data; }

    /// Discards the contents and allocates `n` value-initialised elements. If the allocation
    /// throws, the array is left empty.
    void resize(size_type n) {
        delete[] m_data;
        m_data = nullptr;
        m_size = 0;
        if (n == 0) return;
        m_data = new T[n]();
        m_size = n;
    }

    /// Makes the array hold `n` elements for a caller that overwrites every one of them: an
    /// array that already holds `n` keeps its storage and its old values (no allocation, no
    /// pass over the memory); any other size discards the contents and allocates `n` default-
    /// initialised elements (indeterminate for scalar types). If the allocation throws, the
    /// array is left empty.
    void resize_for_overwrite(size_type n) {
        if (n == m_size) return;
        delete[] m_data;
        m_data = nullptr;
        m_size = 0;
        if (n == 0) return;
        m_data = new T[n];
        m_size = n;
    }

    /// Exchanges sizes and storage; no element is copied or moved, pointers into either array
    /// stay valid (they now belong to the other array object).
    void swap(carray& other) noexcept {
        std::swap(m_size, other.m_size);
        std::swap(m_data, other.m_data);
    }

    size_type size() const noexcept { return m_size; }
    bool empty() const noexcept { return m_size == 0; }

    /// Checked element access; an index at or beyond size() fails "index < m_size".
    T& operator[](size_type index) {
        FACET_CHECK(index < m_size);
        return m_data[index];
    }
    const T& operator[](size_type index) const {
        FACET_CHECK(index < m_size);
        return m_data[index];
    }

    /// Unchecked access for loops whose indices are in range by construction.
    T* data() noexcept { return m_data; }
    const T* data() const noexcept { return m_data; }
    T* begin() noexcept { return m_data; }
    T* end() noexcept { return m_data + m_size; }
    const T* begin() const noexcept { return m_data; }
    const T* end() const noexcept { return m_data + m_size; }

private:
    size_type m_size = 0;
    T* m_data = nullptr;
};

template <class T>
void swap(carray<T>& a, carray<T>& b) noexcept {
    a.swap(b);
}
