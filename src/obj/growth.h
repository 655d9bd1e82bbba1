// How the reader's vectors grow: ahead of the input, when the stream tells how much it holds.
//
// Growing a vector of millions of faces by doubling copies it about once more and touches about
// twice its memory, which for a model of 100 MB costs a good part of the reading. Where the stream
// tells its size (files and strings do, through in_avail), a vector that is full is instead given
// room for what the rest of the input holds at the rate at which its kind of line has come so far,
// measured from its first line. Without a size, or before enough lines to measure, it doubles.
//
// The memory of a large vector is advised to be backed by huge pages where the system offers
// them: the kernel then fills 2 MB at a fault instead of 4 KB, and for a model of 100 MB its page
// faults took about a fifth of the reading.
#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

namespace obj_import::detail {

/// The elements a vector holds before the rate of its lines is trusted.
inline constexpr std::size_t growth_sample = 4096;

/// Advises the system to back the whole 2 MB pages inside [data, data + bytes) by huge pages
/// (Linux; elsewhere nothing). Only a hint: contents and validity are unchanged.
void advise_huge_pages(const void* data, std::size_t bytes);

/// Makes room in `v` for at least one more element. `offset` is the input's position (bytes from
/// the start) of the line being read, `first` that of the first line that added to `v`, `total`
/// the input's size as the stream told it at the start (0 when unknown). The room planned is at
/// least twice the size, and at most what the rest of the input can hold at 7 bytes a line (the
/// shortest line that adds an element).
template <class T>
void make_room(std::vector<T>& v, std::size_t first, std::size_t offset, std::size_t total) {
    const std::size_t size = v.size();
    std::size_t room = std::max<std::size_t>(2 * size, 64);
    if (size >= growth_sample && offset > first && total > offset) {
        const std::size_t rest = total - offset;
        const double expected = static_cast<double>(size) / static_cast<double>(offset - first) *
                                static_cast<double>(rest) * 1.0625;
        const std::size_t most = rest / 7;
        room = std::max(room, size + std::min(static_cast<std::size_t>(expected), most));
    }
    v.reserve(room);
    advise_huge_pages(v.data(), v.capacity() * sizeof(T));
}

/// Gives back the memory of a vector whose planned room turned out more than four times what it
/// holds (a kind of line that stopped early).
template <class T>
void trim_room(std::vector<T>& v) {
    if (v.capacity() > 4 * std::max(v.size(), growth_sample)) v.shrink_to_fit();
}

}  // namespace obj_import::detail
