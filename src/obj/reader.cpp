// parse_obj: OBJ text into an obj_info record.
#include <cstring>
#include <istream>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "facet/obj_import.h"
#include "obj/fast_lines.h"
#include "obj/growth.h"
#include "obj/line_source.h"
#include "obj/normalise.h"
#include "obj/numbers.h"

namespace obj_import {

namespace {

using detail::parse_int;
using detail::parse_number;
using detail::skip_delimiters;
using detail::skip_token;

bool equals(const char* first, const char* last, const char* word) {
    const std::size_t n = std::strlen(word);
    return static_cast<std::size_t>(last - first) == n && std::memcmp(first, word, n) == 0;
}

/// One corner token at `pos`: "v", "v/t" or "v/t/n", each index one less than its number;
/// `pos` moves to the end of the token.
idx parse_corner(const char*& pos, const char* last) {
    idx corner;
    const char* end = pos;
    bool digits = false;
    corner.vertex = parse_int(pos, last, end, digits) - 1;
    if (digits && end != last && *end == '/') {
        // Without digits parse_int leaves `end` where it started, just behind the '/'.
        corner.texcoord = parse_int(end + 1, last, end, digits) - 1;
        if (end != last && *end == '/') corner.normal = parse_int(end + 1, last, end, digits) - 1;
    }
    pos = skip_token(end, last);
    return corner;
}

/// Reads up to `capacity` number tokens from `pos` into `values` and returns how many tokens
/// the rest of the line [pos, last) has, counting at most capacity + 1 of them.
template <class T, std::size_t capacity>
std::size_t read_numbers(const char* pos, const char* last, T (&values)[capacity]) {
    std::size_t count = 0;
    for (; count < capacity; ++count) {
        pos = skip_delimiters(pos, last);
        if (pos == last) return count;
        values[count] = parse_number<T>(pos, last);
    }
    return skip_delimiters(pos, last) == last ? count : count + 1;
}

class obj_reader {
public:
    /// Reads into `info` the lines of `lines`, a stream that held `total` bytes at the start (0
    /// when unknown).
    obj_reader(obj_info& info, const detail::line_source& lines, std::size_t total)
        : m_info(info), m_lines(lines), m_total(total) {
        m_info.materials.push_back(material{"__default__"});
        m_material_index.emplace("__default__", 0);
    }

    void read_line(const char* first, const char* last) {
        if (first == last || *first == '#') return;
        const char* const key = skip_delimiters(first, last);
        if (key == last) return;
        const char* const pos = skip_token(key, last);
        if (equals(key, pos, "f")) {
            read_face(pos, last);
        } else if (equals(key, pos, "v")) {
            float values[4];
            if (read_numbers(pos, last, values) >= 3) {
                add(m_info.vertices, m_first[0], values[0], values[1], values[2]);
            }
        } else if (equals(key, pos, "vt")) {
            double values[2];
            if (read_numbers(pos, last, values) == 2) {
                add(m_info.texcoords, m_first[1], texcoord{values[0], values[1]});
            }
        } else if (equals(key, pos, "vn")) {
            double values[3];
            if (read_numbers(pos, last, values) == 3) {
                add(m_info.normals, m_first[2], values[0], values[1], values[2]);
            }
        } else if (equals(key, pos, "usemtl")) {
            read_material(pos, last);
        }
    }

    /// Reads the line at `line` in the line source's window when it has one of the common shapes
    /// that fast_lines.h reads and is no longer than max_line_length; returns its '\n', or
    /// nullptr (having read nothing) for read_line to take it.
    const char* read_common_line(const char* line) {
        const char* newline = nullptr;
        if (line[0] == 'f' && detail::is_blank(line[1])) {
            face& f = add(m_info.faces, m_first[3]);  // read in place
            newline = detail::read_face_corners(line + 1, f);
            if (newline == nullptr || newline - line > max_line) {
                m_info.faces.pop_back();
                return nullptr;
            }
            f.material = m_current_material;
        } else if (line[0] != 'v') {
            return nullptr;
        } else if (detail::is_blank(line[1])) {
            float v[3] = {};
            newline = detail::read_number_line(line + 1, v);
            if (newline == nullptr || newline - line > max_line) return nullptr;
            add(m_info.vertices, m_first[0], v[0], v[1], v[2]);
        } else if (line[1] == 't' && detail::is_blank(line[2])) {
            double t[2] = {};
            newline = detail::read_number_line(line + 2, t);
            if (newline == nullptr || newline - line > max_line) return nullptr;
            add(m_info.texcoords, m_first[1], texcoord{t[0], t[1]});
        } else if (line[1] == 'n' && detail::is_blank(line[2])) {
            double n[3] = {};
            newline = detail::read_number_line(line + 2, n);
            if (newline == nullptr || newline - line > max_line) return nullptr;
            add(m_info.normals, m_first[2], n[0], n[1], n[2]);
        }
        return newline;
    }

    /// Gives back what the planned growth reserved beyond need.
    void trim() {
        detail::trim_room(m_info.vertices);
        detail::trim_room(m_info.texcoords);
        detail::trim_room(m_info.normals);
        detail::trim_room(m_info.faces);
    }

private:
    static constexpr std::ptrdiff_t max_line = detail::max_line_length;

    /// Appends T(args...) to `v`, whose first line was read at input offset `first`; returns it.
    template <class T, class... Args>
    T& add(std::vector<T>& v, std::size_t& first, Args&&... args) {
        if (v.size() == v.capacity()) {
            const std::size_t offset = m_lines.offset();
            if (v.empty()) first = offset;
            detail::make_room(v, first, offset, m_total);
        }
        return v.emplace_back(std::forward<Args>(args)...);
    }

    void read_face(const char* pos, const char* last) {
        face f;
        while (f.corner_count < 4) {
            pos = skip_delimiters(pos, last);
            if (pos == last) break;
            f.corners[static_cast<std::size_t>(f.corner_count++)] = parse_corner(pos, last);
        }
        if (f.corner_count < 3) return;
        f.material = m_current_material;
        add(m_info.faces, m_first[3], f);
    }

    void read_material(const char* pos, const char* last) {
        const char* const first = skip_delimiters(pos, last);
        if (first == last) return;
        m_name.assign(first, skip_token(first, last));
        const auto found = m_material_index.find(m_name);
        if (found != m_material_index.end()) {
            m_current_material = found->second;
            return;
        }
        const int index = static_cast<int>(m_info.materials.size());
        m_info.materials.push_back(material{m_name});
        m_material_index.emplace(m_name, index);
        m_current_material = index;
    }

    obj_info& m_info;
    const detail::line_source& m_lines;
    const std::size_t m_total;
    std::size_t m_first[4] = {};  // input offsets of the first vertex, texcoord, normal, face
    std::unordered_map<std::string, int> m_material_index;
    std::string m_name;
    int m_current_material = 0;
};

/// What the stream holds, as far as its buffer knows without reading (for files and strings,
/// the rest of their bytes); 0 when it cannot tell.
std::size_t stream_size(std::istream& in) {
    std::streambuf* const buffer = in.rdbuf();
    const std::streamsize available = buffer != nullptr ? buffer->in_avail() : 0;
    return available > 0 ? static_cast<std::size_t>(available) : 0;
}

bool valid_vertex(int index, const std::vector<vector3d>& vertices) {
    return index >= 0 && static_cast<std::size_t>(index) < vertices.size();
}

/// One normal per face from its first three corners; the zero vector where one of their vertex
/// indices is outside the vertex list.
void compute_face_normals(obj_info& info) {
    const std::vector<vector3d>& v = info.vertices;
    info.normals.reserve(info.faces.size());
    detail::advise_huge_pages(info.normals.data(), info.normals.capacity() * sizeof(vector3d));
    int face_index = 0;
    for (face& f : info.faces) {
        vector3d n;
        const int a = f.corners[0].vertex;
        const int b = f.corners[1].vertex;
        const int c = f.corners[2].vertex;
        if (valid_vertex(a, v) && valid_vertex(b, v) && valid_vertex(c, v)) {
            const vector3d& p0 = v[static_cast<std::size_t>(a)];
            n = cross(v[static_cast<std::size_t>(b)] - p0, v[static_cast<std::size_t>(c)] - p0);
            n.normalize();
        }
        info.normals.push_back(n);
        for (int i = 0; i < f.corner_count; ++i) {
            f.corners[static_cast<std::size_t>(i)].normal = face_index;
        }
        ++face_index;
    }
}

}  // namespace

void parse_obj(std::istream& in, obj_info& info) {
    obj_info result;
    {
        detail::line_source lines(in);
        obj_reader reader(result, lines, stream_size(in));
        const char* first = nullptr;
        const char* last = nullptr;
        while (lines.fill()) {
            const char* const newline = reader.read_common_line(lines.cursor());
            if (newline != nullptr) {
                lines.consume_line(newline);
            } else if (lines.next(first, last)) {
                reader.read_line(first, last);
            }
        }
        reader.trim();
    }
    if (result.normals.empty()) compute_face_normals(result);
    detail::normalise(result, 10000.0);
    info.swap(result);
}

}  // namespace obj_import
