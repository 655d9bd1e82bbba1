// Block-wise line reading with a fixed line limit.
#include "obj/line_source.h"

#include <algorithm>
#include <cstring>

namespace obj_import::detail {

static_assert(block_size > 2 * max_line_length, "a block must hold an unfinished line and more");

line_source::line_source(std::istream& in) : m_in(in), m_block(block_size + 1, '\n') {}

bool line_source::refill() {
    std::size_t got = 0;
    if (!m_at_end) {
        const std::size_t room = block_size - m_end;
        m_in.read(m_block.data() + m_end, static_cast<std::streamsize>(room));
        got = static_cast<std::size_t>(m_in.gcount());
        m_end += got;
        m_read += got;
        if (got < room) m_at_end = true;
    }
    m_block[m_end] = '\n';
    return got > 0;
}

void line_source::skip_rest_of_line() {
    for (;;) {
        const char* data = m_block.data();
        const void* nl = std::memchr(data + m_begin, '\n', m_end - m_begin);
        if (nl != nullptr) {
            m_begin = static_cast<std::size_t>(static_cast<const char*>(nl) - data) + 1;
            return;
        }
        m_begin = m_end = 0;
        if (!refill()) return;
    }
}

void line_source::next_block() {
    const std::size_t pending = m_end - m_begin;
    std::memmove(m_block.data(), m_block.data() + m_begin, pending);
    m_begin = 0;
    m_end = pending;
    refill();
}

bool line_source::next(const char*& first, const char*& last) {
    for (;;) {
        const char* data = m_block.data();
        const std::size_t pending = m_end - m_begin;
        const void* nl = std::memchr(data + m_begin, '\n', pending);
        if (nl != nullptr) {
            const auto stop = static_cast<std::size_t>(static_cast<const char*>(nl) - data);
            first = data + m_begin;
            last = data + std::min(stop, m_begin + max_line_length);
            m_begin = stop + 1;
            return true;
        }
        if (pending > max_line_length) {
            // Longer than a line may be, and its end is not in sight: keep the first part aside
            // and drop the rest.
            std::memcpy(m_long_line, data + m_begin, max_line_length);
            m_begin += max_line_length;
            skip_rest_of_line();
            first = m_long_line;
            last = m_long_line + max_line_length;
            return true;
        }
        if (m_at_end) {
            if (pending == 0) return false;
            first = data + m_begin;
            last = first + pending;
            m_begin = m_end;
            return true;
        }
        // An unfinished line of at most max_line_length bytes: move it to the front and read on.
        next_block();
    }
}

}  // namespace obj_import::detail
