// Line-by-line access to a stream through one reused buffer.
//
// The stream is read in large blocks with istream::read; a line that lies wholly inside the
// current block is handed out in place, so most lines are neither copied nor allocated. Only
// the unfinished tail of a block (shorter than one line) is moved to the front before the next
// block is read, so every byte is moved at most once. Each line is cut to its first
// max_line_length characters; the rest of it up to '\n' is consumed without being kept.
//
// The unread part of the block (the window) is always followed by a '\n' of its own, so that a
// reader may scan the window for the end of a line without checking bounds: fill() makes sure
// that the window holds the next line whole or more than max_line_length bytes of it, and
// consume_line() takes a line that the reader found there.
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

    /// Makes sure that the window holds the next line up to its '\n', or more than
    /// max_line_length bytes of it, or the rest of the stream. Returns false when nothing is
    /// left to read.
    bool fill() {
        if (m_end - m_begin <= max_line_length && !m_at_end) next_block();
        return m_begin != m_end;
    }
    /// The first byte of the next line. The window from here to the end of the block is followed
    /// by a '\n' that is not part of the stream, so a scan for '\n' stops at the latest there.
    const char* cursor() const { return m_block.data() + m_begin; }
    /// The position of cursor() in the stream: the bytes consumed since construction.
    std::size_t offset() const { return m_read - (m_end - m_begin); }
    /// Consumes the next line, which ends at `newline`: its '\n' in the window, or the one
    /// behind the window where the stream ends without one.
    void consume_line(const char* newline) {
        const auto stop = static_cast<std::size_t>(newline - m_block.data());
        m_begin = stop < m_end ? stop + 1 : m_end;
    }

private:
    /// Moves the unread bytes to the front of the block and reads on behind them.
    void next_block();
    /// Reads the next block behind the kept bytes and puts the '\n' behind them; returns false
    /// when the stream delivered nothing.
    bool refill();
    /// Consumes input up to and including the next '\n' (or to the end of the stream).
    void skip_rest_of_line();

    std::istream& m_in;
    std::vector<char> m_block;  // block_size bytes and the '\n' behind the window
    std::size_t m_begin = 0;    // first unread byte in m_block
    std::size_t m_end = 0;      // one past the last valid byte in m_block
    std::size_t m_read = 0;     // bytes read from the stream
    bool m_at_end = false;      // the stream has delivered everything
    char m_long_line[max_line_length];
};

}  // namespace obj_import::detail
