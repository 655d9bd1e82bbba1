// Line-by-line access to a stream through one reused buffer.
//
// The stream is read in large blocks with istream::read; a line that lies wholly inside the
// current block is handed out in place, so most lines are neither copied nor allocated. Only
// the unfinished tail of a block (shorter than one line) is moved to the front before the next
// block is read, so every byte is moved at most once. Each line is cut to its first
// max_line_length characters; the rest of it up to '\n' is consumed without being kept.
#pragma once

#include <cstddef>
#include <istream>
#include <vector>

namespace obj_import::detail {

/// The longest line kept, in characters: what a 1024-character buffer holds with its
/// terminating zero.
inline constexpr std::size_t max_line_length = 1023;

/// The bytes read from the stream at a time.
inline constexpr std::size_t block_size = std::size_t(1) << 16;

class line_source {
public:
    explicit line_source(std::istream& in);

    /// Points [first, last) at the next line, without its '\n' and cut to max_line_length
    /// characters. The range stays valid until the next call. Returns false at the end of
    /// the stream (a last line without '\n' is still returned).
    bool next(const char*& first, const char*& last);

private:
    /// Reads the next block behind the kept bytes; returns false when the stream delivered
    /// nothing.
    bool refill();
    /// Consumes input up to and including the next '\n' (or to the end of the stream).
    void skip_rest_of_line();

    std::istream& m_in;
    std::vector<char> m_block;
    std::size_t m_begin = 0;  // first unread byte in m_block
    std::size_t m_end = 0;    // one past the last valid byte in m_block
    bool m_at_end = false;    // the stream has delivered everything
    char m_long_line[max_line_length];
};

}  // namespace obj_import::detail
