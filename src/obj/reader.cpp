// parse_obj: OBJ text into an obj_info record.
#include <charconv>
#include <cstring>
#include <istream>
#include <limits>
#include <string>
#include <system_error>
#include <unordered_map>

#include "facet/obj_import.h"
#include "obj/line_source.h"

namespace obj_import {

namespace {

bool is_delimiter(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }
bool is_digit(char c) { return c >= '0' && c <= '9'; }

/// Splits one line into tokens, in place.
class tokenizer {
public:
    tokenizer(const char* first, const char* last) : m_pos(first), m_last(last) {}

    /// The next token as [first, last); false when the line has no more.
    bool next(const char*& first, const char*& last) {
        while (m_pos != m_last && is_delimiter(*m_pos)) ++m_pos;
        if (m_pos == m_last) return false;
        first = m_pos;
        while (m_pos != m_last && !is_delimiter(*m_pos)) ++m_pos;
        last = m_pos;
        return true;
    }

private:
    const char* m_pos;
    const char* m_last;
};

bool equals(const char* first, const char* last, const char* word) {
    const std::size_t n = std::strlen(word);
    return static_cast<std::size_t>(last - first) == n && std::memcmp(first, word, n) == 0;
}

/// A base-10 integer with an optional sign at the start of [first, last). Sets `end` behind
/// the digits and returns the value, or 0 when there are none or |n| > INT_MAX (the digits are
/// consumed all the same). `digits` tells whether any digit was read.
int parse_int(const char* first, const char* last, const char*& end, bool& digits) {
    const char* p = first;
    bool negative = false;
    if (p != last && (*p == '+' || *p == '-')) {
        negative = *p == '-';
        ++p;
    }
    constexpr long long limit = std::numeric_limits<int>::max();
    long long value = 0;
    bool overflow = false;
    const char* const digits_begin = p;
    for (; p != last && is_digit(*p); ++p) {
        if (!overflow) {
            value = value * 10 + (*p - '0');
            overflow = value > limit;
        }
    }
    digits = p != digits_begin;
    if (!digits) {
        end = first;
        return 0;
    }
    end = p;
    if (overflow) return 0;
    return static_cast<int>(negative ? -value : value);
}

/// One corner token: "v", "v/t" or "v/t/n", each index one less than its number.
idx parse_corner(const char* first, const char* last) {
    idx corner;
    const char* end = first;
    bool digits = false;
    corner.vertex = parse_int(first, last, end, digits) - 1;
    if (!digits || end == last || *end != '/') return corner;
    // Without digits parse_int leaves `end` where it started, just behind the '/'.
    corner.texcoord = parse_int(end + 1, last, end, digits) - 1;
    if (end == last || *end != '/') return corner;
    corner.normal = parse_int(end + 1, last, end, digits) - 1;
    return corner;
}

/// A decimal number at the start of [first, last) as T (float or double); 0 when the token
/// does not start with one or the value is beyond the range of T.
template <class T>
T parse_number(const char* first, const char* last) {
    const char* p = first;
    if (p != last && *p == '+') ++p;
    const char* q = p != last && *p == '-' ? p + 1 : p;
    if (q == last || !(is_digit(*q) || *q == '.')) return T(0);
    T value = T(0);
    const auto result = std::from_chars(p, last, value, std::chars_format::general);
    if (result.ec != std::errc()) return T(0);
    return value;
}

/// Reads up to `capacity` number tokens into `values` and returns how many tokens the line
/// had, counting at most capacity + 1 of them.
template <class T, std::size_t capacity>
std::size_t read_numbers(tokenizer& tokens, T (&values)[capacity]) {
    std::size_t count = 0;
    const char* first = nullptr;
    const char* last = nullptr;
    while (count <= capacity && tokens.next(first, last)) {
        if (count < capacity) values[count] = parse_number<T>(first, last);
        ++count;
    }
    return count;
}

class obj_reader {
public:
    explicit obj_reader(obj_info& info) : m_info(info) {
        m_info.materials.push_back(material{"__default__"});
        m_material_index.emplace("__default__", 0);
    }

    void read_line(const char* first, const char* last) {
        if (first == last || *first == '#') return;
        tokenizer tokens(first, last);
        const char* key_first = nullptr;
        const char* key_last = nullptr;
        if (!tokens.next(key_first, key_last)) return;
        if (equals(key_first, key_last, "f")) {
            read_face(tokens);
        } else if (equals(key_first, key_last, "v")) {
            float values[4];
            if (read_numbers(tokens, values) >= 3) {
                m_info.vertices.emplace_back(values[0], values[1], values[2]);
            }
        } else if (equals(key_first, key_last, "vt")) {
            double values[2];
            if (read_numbers(tokens, values) == 2) {
                m_info.texcoords.push_back(texcoord{values[0], values[1]});
            }
        } else if (equals(key_first, key_last, "vn")) {
            double values[3];
            if (read_numbers(tokens, values) == 3) {
                m_info.normals.emplace_back(values[0], values[1], values[2]);
            }
        } else if (equals(key_first, key_last, "usemtl")) {
            read_material(tokens);
        }
    }

private:
    void read_face(tokenizer& tokens) {
        face f;
        const char* first = nullptr;
        const char* last = nullptr;
        while (f.corner_count < 4 && tokens.next(first, last)) {
            f.corners[static_cast<std::size_t>(f.corner_count++)] = parse_corner(first, last);
        }
        if (f.corner_count < 3) return;
        f.material = m_current_material;
        m_info.faces.push_back(f);
    }

    void read_material(tokenizer& tokens) {
        const char* first = nullptr;
        const char* last = nullptr;
        if (!tokens.next(first, last)) return;
        m_name.assign(first, last);
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
    std::unordered_map<std::string, int> m_material_index;
    std::string m_name;
    int m_current_material = 0;
};

bool valid_vertex(int index, const std::vector<vector3d>& vertices) {
    return index >= 0 && static_cast<std::size_t>(index) < vertices.size();
}

/// One normal per face from its first three corners; the zero vector where one of their vertex
/// indices is outside the vertex list.
void compute_face_normals(obj_info& info) {
    const std::vector<vector3d>& v = info.vertices;
    info.normals.reserve(info.faces.size());
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
        obj_reader reader(result);
        detail::line_source lines(in);
        const char* first = nullptr;
        const char* last = nullptr;
        while (lines.next(first, last)) reader.read_line(first, last);
    }
    if (result.normals.empty()) compute_face_normals(result);
    calc_bounding_box(result);
    swap_all_yz(result);
    scale(result, 10000.0);
    const bounding_box_3d& box = result.bounding_box;
    translate(result, vector3d(-box.x_min, -box.y_min, -box.z_min));
    info.swap(result);
}

}  // namespace obj_import
