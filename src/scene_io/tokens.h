// Token-level reading and writing shared by every object's scene-file fields.
#pragma once

#include <cstdint>
#include <istream>
#include <ostream>
#include <string>
#include <vector>

#include "facet/geometry.h"
#include "facet/scene_io.h"

namespace scene_io {

/// True while read_objects reads `is` in the round-trip dialect.
bool reads_round_trip(std::ios_base& is);

/// Marks `is` as read in the round-trip dialect for the lifetime of the guard.
class round_trip_guard {
public:
    round_trip_guard(std::ios_base& is, bool on);
    ~round_trip_guard();
    round_trip_guard(const round_trip_guard&) = delete;
    round_trip_guard& operator=(const round_trip_guard&) = delete;

private:
    std::ios_base& m_stream;
    long m_previous;
};

/// Reads the material reference of the round-trip dialect, standing just after "mat_ref":
/// skips the one separating space, takes the text up to "  position " on the same line and
/// consumes that keyword too, or takes the rest of the line (without its "\r") and then expects
/// "position" as a word.
std::string read_material_reference(std::istream& is);

/// Extracts one word and throws format_exception(word, keyword) unless it is `keyword`.
inline void expect(std::istream& is, const char* keyword) {
    std::string word;
    is >> word;
    if (word != keyword) throw format_exception(word, keyword);
}

/// One white-space-delimited word (empty when the stream has failed or ended).
inline std::string read_word(std::istream& is) {
    std::string word;
    is >> word;
    return word;
}

inline double read_double(std::istream& is) {
    double v = 0.0;
    is >> v;
    return v;
}

/// Expects `keyword`, then reads the real that follows it.
inline double read_double_field(std::istream& is, const char* keyword) {
    expect(is, keyword);
    return read_double(is);
}

inline vector3d read_vector(std::istream& is) {
    vector3d v;
    is >> v.x >> v.y >> v.z;
    return v;
}

inline std::uint32_t read_count(std::istream& is) {
    std::uint32_t n = 0;
    is >> n;
    return n;
}

/// "x y z".
inline void write_vector(std::ostream& os, const vector3d& v) {
    os << v.x << ' ' << v.y << ' ' << v.z;
}

/// A field line: two spaces, the keyword, a space, the value, "\r\n".
template <class T>
void write_field(std::ostream& os, const char* keyword, const T& value) {
    os << "  " << keyword << ' ' << value << "\r\n";
}

inline void write_vector_field(std::ostream& os, const char* keyword, const vector3d& v) {
    os << "  " << keyword << ' ';
    write_vector(os, v);
    os << "\r\n";
}

/// A "numpoints" count followed by one point line per point ("  x y z").
void write_points(std::ostream& os, const std::vector<vector3d>& points);

/// Reads "numpoints", the count and that many points. Stops at the first failed extraction
/// (the caller's next expect then reports it); never reserves from the count.
std::vector<vector3d> read_points(std::istream& is);

/// A list: "  num_<name> <count>\r\n", then "    <element>\r\n" per vector.
void write_vector_list(std::ostream& os, const char* name, const std::vector<vector3d>& list);

/// Reads "num_<name>", the count and that many vectors, stopping at the first failed
/// extraction.
std::vector<vector3d> read_vector_list(std::istream& is, const char* name);

}  // namespace scene_io
