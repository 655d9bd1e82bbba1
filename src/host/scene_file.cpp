// Scene files that read back what was written: write_scene and read_scene, with error messages
// that name the line and the object.
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>
#include <sstream>

#include "facet/scene.h"
#include "facet/scene_io.h"

namespace facet {

scene_error::scene_error(const std::string& message, std::size_t line)
    : std::runtime_error(message), m_line(line) {}

scene_error::~scene_error() = default;

void write_scene(const scene& s, std::ostream& os) {
    const std::streamsize precision = os.precision(17);
    const std::ios_base::fmtflags flags = os.flags();
    os.unsetf(std::ios_base::floatfield);
    write_objects(s.objects(), os);
    os.flags(flags);
    os.precision(precision);
}

void write_scene(const scene& s, const std::string& path) {
    const std::string temporary = path + ".tmp" + std::to_string(static_cast<long>(getpid()));
    {
        std::ofstream out(temporary, std::ios::binary | std::ios::trunc);
        if (out) write_scene(s, out);
        if (out) out.flush();
        if (!out) {
            const std::string reason = std::strerror(errno);
            std::remove(temporary.c_str());
            throw std::runtime_error(path + ": cannot write: " + reason);
        }
    }
    if (std::rename(temporary.c_str(), path.c_str()) != 0) {
        const std::string reason = std::strerror(errno);
        std::remove(temporary.c_str());
        throw std::runtime_error(path + ": cannot write: " + reason);
    }
}

namespace {

bool is_space(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '\v' || c == '\f';
}

// The 1-based line of the character at `pos` (the last line for a position at the end).
std::size_t line_at(const std::string& text, std::size_t pos) {
    pos = std::min(pos, text.size());
    return 1 + static_cast<std::size_t>(std::count(text.begin(), text.begin() + pos, '\n'));
}

// The word that starts at or after `pos`, and where it starts.
std::string word_at(const std::string& text, std::size_t& pos) {
    while (pos < text.size() && is_space(text[pos])) ++pos;
    std::size_t end = pos;
    while (end < text.size() && !is_space(text[end])) ++end;
    return text.substr(pos, end - pos);
}

std::string quoted(const std::string& word) { return "'" + word + "'"; }

// "expected 'height', found 'x'" and the position of what was found.
std::string describe(const format_exception& e, const std::string& text, std::size_t& pos) {
    std::string found = e.found();
    if (found.empty()) {
        found = word_at(text, pos);  // a number or word the stream could not take
        if (found.empty())           // the end: report the last line that holds something
            while (pos > 0 && is_space(text[pos - 1])) --pos;
        if (found.empty() && pos > 0) --pos;
    } else {
        pos -= std::min(pos, found.size());
    }
    const bool keyword = e.expected().find(' ') == std::string::npos;
    return "expected " + (keyword ? quoted(e.expected()) : e.expected()) + ", found " +
           (found.empty() ? std::string("the end of the file") : quoted(found));
}

std::string object_part(const std::string& type, const std::string& name) {
    if (type.empty()) return "";
    return name.empty() ? type + ": " : type + " " + quoted(name) + ": ";
}

// The position of the "parent" keyword of the block starting at `block`.
std::size_t parent_field_at(const std::string& text, std::size_t block) {
    std::size_t pos = block;
    for (std::string word = word_at(text, pos); !word.empty(); word = word_at(text, pos)) {
        if (word == "parent") return pos;
        pos += word.size();
    }
    return block;
}

scene read_text(const std::string& text, const std::string& source) {
    std::istringstream in(text);
    std::vector<primitives::basic_object*> read;
    scene_read_position where;
    std::string problem;
    std::size_t pos = 0;
    try {
        read_objects(read, in, scene_dialect::round_trip, &where);
    } catch (const format_exception& e) {
        pos = where.offset < 0 ? text.size() : static_cast<std::size_t>(where.offset);
        problem = describe(e, text, pos);
    } catch (const std::exception& e) {
        if (!where.parent_not_found && !where.parent_cycle) {
            for (auto* object : read) delete object;
            throw scene_error(source + ": " + object_part(where.type, where.name) + e.what(), 0);
        }
        problem = "parent " + quoted(where.parent) +
                  (where.parent_cycle ? " would close a cycle of parents" : " not found");
        pos = parent_field_at(text, where.offset < 0 ? 0 : static_cast<std::size_t>(where.offset));
    }
    if (!problem.empty()) {
        for (auto* object : read) delete object;
        const std::size_t line = line_at(text, pos);
        throw scene_error(source + ":" + std::to_string(line) + ": " +
                              object_part(where.type, where.name) + problem,
                          line);
    }
    std::vector<std::unique_ptr<primitives::basic_object>> owned(read.begin(), read.end());
    try {
        return scene::adopt(std::move(owned));
    } catch (const std::invalid_argument& e) {
        throw scene_error(source + ": " + e.what(), 0);
    }
}

}  // namespace

scene read_scene(std::istream& is, const std::string& source) {
    const std::string text{std::istreambuf_iterator<char>(is), std::istreambuf_iterator<char>()};
    return read_text(text, source);
}

scene read_scene(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in) throw scene_error(path + ": cannot open: " + std::strerror(errno), 0);
    const std::string text{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    if (in.bad()) throw scene_error(path + ": cannot read: " + std::strerror(errno), 0);
    return read_text(text, path);
}

}  // namespace facet
