// Point lists and named lists of the scene format.
#include "scene_io/tokens.h"

namespace scene_io {

void write_points(std::ostream& os, const std::vector<vector3d>& points) {
    write_field(os, "numpoints", points.size());
    for (const vector3d& p : points) {
        os << "  ";
        write_vector(os, p);
        os << "\r\n";
    }
}

namespace {

std::vector<vector3d> read_vectors(std::istream& is, std::uint32_t count) {
    std::vector<vector3d> out;
    for (std::uint32_t i = 0; i < count && is; ++i) {
        const vector3d v = read_vector(is);
        if (!is) break;
        out.push_back(v);
    }
    return out;
}

}  // namespace

std::vector<vector3d> read_points(std::istream& is) {
    expect(is, "numpoints");
    return read_vectors(is, read_count(is));
}

void write_vector_list(std::ostream& os, const char* name, const std::vector<vector3d>& list) {
    os << "  num_" << name << ' ' << list.size() << "\r\n";
    for (const vector3d& v : list) {
        os << "    ";
        write_vector(os, v);
        os << "\r\n";
    }
}

std::vector<vector3d> read_vector_list(std::istream& is, const char* name) {
    expect(is, (std::string("num_") + name).c_str());
    return read_vectors(is, read_count(is));
}

}  // namespace scene_io

namespace scene_io {

namespace {

int round_trip_slot() {
    static const int slot = std::ios_base::xalloc();
    return slot;
}

}  // namespace

bool reads_round_trip(std::ios_base& is) { return is.iword(round_trip_slot()) != 0; }

round_trip_guard::round_trip_guard(std::ios_base& is, bool on)
    : m_stream(is), m_previous(is.iword(round_trip_slot())) {
    is.iword(round_trip_slot()) = on ? 1 : 0;
}

round_trip_guard::~round_trip_guard() { m_stream.iword(round_trip_slot()) = m_previous; }

std::string read_material_reference(std::istream& is) {
    static const std::string keyword = "  position ";
    using traits = std::istream::traits_type;
    if (is.peek() == ' ') is.get();
    std::string text;
    for (;;) {
        const int c = is.peek();
        if (c == traits::eof() || c == '\n') break;
        text.push_back(static_cast<char>(is.get()));
        if (text.size() >= keyword.size() &&
            text.compare(text.size() - keyword.size(), keyword.size(), keyword) == 0) {
            text.erase(text.size() - keyword.size());
            return text;
        }
    }
    if (!text.empty() && text.back() == '\r') text.pop_back();
    expect(is, "position");
    return text;
}

}  // namespace scene_io
