// Internal helper of the ear clipper: a set of corner ids with "first member at or after"
// queries.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

namespace facet::plane_detail {

/// A set of ids 0..n−1 as a bit tree of 64-bit words: level 0 holds one bit per id, each
/// higher level one bit per non-empty word below. Insert, erase and find_from take
/// O(log64 n) word operations.
class id_set {
public:
    static constexpr std::size_t npos = std::numeric_limits<std::size_t>::max();

    /// Makes the set hold every id below n (the words are reused from one call to the next).
    void fill(std::size_t n) {
        std::size_t bits = n;
        std::size_t level = 0;
        do {
            const std::size_t words = (bits + 63) / 64;
            if (level == m_levels.size()) m_levels.emplace_back();
            std::vector<std::uint64_t>& w = m_levels[level++];
            w.assign(words, ~std::uint64_t(0));
            if (bits % 64 != 0) w.back() = (std::uint64_t(1) << (bits % 64)) - 1;
            bits = words;
        } while (bits > 1);
        m_levels.resize(level);
    }

    void insert(std::size_t id) {
        for (std::vector<std::uint64_t>& level : m_levels) {
            std::uint64_t& word = level[id >> 6];
            const bool was_empty = word == 0;
            word |= std::uint64_t(1) << (id & 63);
            if (!was_empty) return;
            id >>= 6;
        }
    }

    void erase(std::size_t id) {
        for (std::vector<std::uint64_t>& level : m_levels) {
            std::uint64_t& word = level[id >> 6];
            word &= ~(std::uint64_t(1) << (id & 63));
            if (word != 0) return;
            id >>= 6;
        }
    }

    bool contains(std::size_t id) const { return (m_levels[0][id >> 6] >> (id & 63)) & 1; }

    /// The smallest member ≥ id, or npos.
    std::size_t find_from(std::size_t id) const {
        // Climb until a word holds a member at or after the position, then descend to the
        // lowest member under it.
        std::size_t level = 0;
        for (;;) {
            if (level == m_levels.size()) return npos;
            const std::vector<std::uint64_t>& words = m_levels[level];
            if ((id >> 6) >= words.size()) return npos;
            const std::uint64_t word = words[id >> 6] & (~std::uint64_t(0) << (id & 63));
            if (word != 0) {
                id = (id & ~std::size_t(63)) | static_cast<std::size_t>(__builtin_ctzll(word));
                break;
            }
            id = (id >> 6) + 1;
            ++level;
        }
        while (level > 0) {
            --level;
            const std::uint64_t word = m_levels[level][id];
            id = id * 64 + static_cast<std::size_t>(__builtin_ctzll(word));
        }
        return id;
    }

    /// The first member met walking cyclically from id (id itself included), or npos.
    std::size_t find_cyclic(std::size_t id) const {
        const std::size_t found = find_from(id);
        return found != npos || id == 0 ? found : find_from(0);
    }

private:
    std::vector<std::vector<std::uint64_t>> m_levels;
};

}  // namespace facet::plane_detail
