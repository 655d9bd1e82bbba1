// OBJ model import: reading, normalising and converting polygon models.
//
//   obj_import::idx               one face corner: vertex, texture-coordinate and normal index
//   obj_import::face              up to four corners and a material index
//   obj_import::texcoord          a texture coordinate (u, v)
//   obj_import::material          a material, known by its name only
//   obj_import::bounding_box_3d   x_min, x_max, y_min, y_max, z_min, z_max
//   obj_import::obj_info          everything read from one file
//   obj_import::parse_obj         reads OBJ text and normalises it
//   calc_bounding_box, swap_all_yz, scale, translate   the normalisation steps, callable alone
//   obj_import::obj2mesh          converts a record into a graphics::custom_mesh
//   obj_import::bad_face          what obj2mesh throws for a face it cannot convert
//
// The reader understands the keywords "f", "v", "vt", "vn" and "usemtl"; every other line is
// skipped. It never reports an error: malformed data reads as documented at parse_obj, and
// indices are not checked against the sequences they refer to. Whatever the input, reading
// stays in bounds, consumes input on every step and takes time and memory linear in the size of
// the text.
#pragma once

#include <array>
#include <cstddef>
#include <iosfwd>
#include <stdexcept>
#include <string>
#include <vector>

#include "facet/custom_mesh.h"
#include "facet/export.h"
#include "facet/geometry.h"

namespace obj_import {

/// One face corner. The indices are zero-based (one less than the file's numbers); -1 stands
/// for a field that is absent, empty or unreadable.
struct FACET_API idx {
    int vertex = -1;
    int texcoord = -1;
    int normal = -1;

    /// All three indices -1.
    idx() = default;
    idx(int v, int t, int n) : vertex(v), texcoord(t), normal(n) {}

    bool operator==(const idx& o) const {
        return vertex == o.vertex && texcoord == o.texcoord && normal == o.normal;
    }
    bool operator!=(const idx& o) const { return !(*this == o); }
};

/// A face of three or four corners. Only corners[0] to corners[corner_count - 1] are used; the
/// others stay idx(). `material` indexes obj_info::materials.
struct FACET_API face {
    std::array<idx, 4> corners{};
    int corner_count = 0;
    int material = 0;
};

/// A texture coordinate.
struct FACET_API texcoord {
    double u = 0.0;
    double v = 0.0;
};

/// A material, told apart from the others by its name only.
struct FACET_API material {
    std::string name;
};

/// An axis-aligned box as minimum and maximum per axis; all six values are 0 when constructed.
struct FACET_API bounding_box_3d {
    double x_min = 0.0;
    double x_max = 0.0;
    double y_min = 0.0;
    double y_max = 0.0;
    double z_min = 0.0;
    double z_max = 0.0;
};

/// Everything read from one OBJ file, in file order.
struct FACET_API obj_info {
    std::vector<vector3d> vertices;
    std::vector<texcoord> texcoords;
    std::vector<vector3d> normals;
    std::vector<face> faces;
    /// Material 0 is "__default__" in every record that parse_obj produces.
    std::vector<material> materials;
    bounding_box_3d bounding_box;

    /// Exchanges all contents with `other` in constant time.
    void swap(obj_info& other) noexcept;
};

/// a.swap(b).
inline void swap(obj_info& a, obj_info& b) noexcept { a.swap(b); }

/// Replaces `info` with the model read from `in` (to the end of the stream), then normalises it:
/// calc_bounding_box, swap_all_yz, scale by 10000.0, and translate by (-x_min, -y_min, -z_min)
/// of the resulting box, so that the model's lower corner lies at the origin.
///
/// The text is taken line by line; a line ends at a line feed. Empty lines and lines starting
/// with '#' are skipped. A line is split into tokens at spaces, tabs, carriage returns and line
/// feeds; any other byte, binary junk included, belongs to a token. The first token selects the
/// rule (case matters):
///   "f"      up to 4 corner tokens are read (more are ignored); a face needs at least 3 and
///            gets the current material. A corner token is "v", "v/t" or "v/t/n": a base-10
///            integer (optional sign) less one is the vertex index; only if digits were read and
///            a '/' follows, the next integer less one is the texture-coordinate index, and if a
///            further '/' follows, the next integer less one is the normal index. An empty or
///            unreadable field reads as 0 and gives -1 ("7//3" is vertex 6, texcoord -1,
///            normal 2). Negative (relative) numbers are not resolved: "-1" gives index -2.
///   "v"      up to 4 numbers are read; with at least 3 the first three, each rounded to the
///            nearest single-precision value, make a vertex. Fewer than 3 drop the line.
///   "vt"     exactly 2 numbers (u, v) make a texture coordinate; any other count drops the line.
///   "vn"     exactly 3 numbers make a normal, stored as read; any other count drops the line.
///   "usemtl" the next token names the current material: found by name among the materials
///            or appended to them. Without a name the line is skipped.
/// Material 0 is "__default__" and is current until the first "usemtl". On "f", "v", "vt" and
/// "vn" lines every token after the keyword counts, whatever it holds: one that does not start
/// with a number reads as 0. A trailing comment ("f 1 2 3 # note") is thus a fourth corner with
/// vertex index -1, which obj2mesh rejects. Numbers are decimal ([+-]digits[.digits][e[+-]digits]);
/// "inf", "nan" and hexadecimal forms are not numbers, and a number beyond the range of its type
/// (float for "v", double for "vt" and "vn", |n| <= 2147483647 for indices) reads as 0, so every
/// value read is finite.
///
/// Lines are read into a buffer of 1024 characters: a line longer than 1023 characters keeps
/// its first 1023, the rest of it up to its line feed is skipped, and reading goes on with the next
/// line. The cut can fall inside a token, which is then read as far as it goes.
///
/// When the text holds no normals at all, each face gets a computed normal: normals[i] for
/// faces[i] is cross(p1 - p0, p2 - p0) normalised, from its first three corners' vertices, and
/// every used corner's normal index is set to i. A face with one of these vertex indices outside
/// the vertex list (-1 included) gets the zero vector; the face itself is kept.
///
/// Indices are not checked against the sequences here; obj2mesh checks the vertex indices. The
/// record is built aside and swapped into `info` at the end, so if the stream throws (an
/// exception mask set on it) or memory runs out, `info` is unchanged. The stream is read with
/// istream::read and is left at its end with eofbit and failbit set.
///
/// Memory: where the stream tells its size (files and string streams do), the record's vectors
/// are sized ahead of the input at the rate their kinds of line have come, and may keep up to
/// four times the room they end up using (untouched, so only reserved); vectors over 2 MB are
/// advised onto huge pages on Linux.
FACET_API void parse_obj(std::istream& in, obj_info& info);

/// Sets the bounding box to the minimum and maximum of the vertices per axis, starting from
/// vertex 0. Without vertices the box is left as it is. NaN coordinates do not widen the box.
FACET_API void calc_bounding_box(obj_info& info);

/// Turns the y axis into the z axis: every vertex and every normal (x, y, z) becomes
/// (x, z, -y), where y passes through a single-precision temporary first, so the new z values
/// are rounded to float precision (a magnitude beyond the float range becomes an infinity).
/// The box's y range becomes its old z range and its z range becomes (-old y_max, -old y_min),
/// in double precision.
FACET_API void swap_all_yz(obj_info& info);

/// Multiplies every vertex coordinate and all six box values by `factor`. Normals are left
/// alone. A negative factor leaves each box minimum above its maximum.
FACET_API void scale(obj_info& info, double factor);

/// Adds `offset` to every vertex and to the box (x_min and x_max by offset.x, and so on).
FACET_API void translate(obj_info& info, const vector3d& offset);

/// Thrown by obj2mesh for a face that cannot become triangles: a corner count other than 3 or 4,
/// or a corner whose vertex index lies outside the vertex list. what() names the face (its
/// position in obj_info::faces) and the fault: "obj2mesh: face 7: corner 2 has vertex index 41,
/// outside the 40 vertices" or "obj2mesh: face 3: 2 corners, 3 or 4 are needed".
class FACET_API bad_face : public std::runtime_error {
public:
    bad_face(std::size_t face_index, const std::string& message);
    /// The position of the face in obj_info::faces.
    std::size_t face_index() const noexcept { return m_face_index; }

private:
    std::size_t m_face_index;
};

/// Replaces `out` with a custom mesh called `name` made from `info`:
///   - the vertices, in order;
///   - per face, in order, one graphics::custom_mesh_face per triangle with the face's material
///     index as its style index: a triangle (c0, c1, c2) as it is, a quad (c0, c1, c2, c3) as
///     the fan (c0, c1, c2), (c0, c2, c3) around its first corner;
///   - per material, in order, the style (name, brush of color (255, 255, 255), pen of color
///     (0, 0, 0)), so that style i belongs to material i and "__default__" is style 0.
/// Texture coordinates and normals are not carried over (a custom mesh holds neither); the
/// drawing object computes its normals. Material indices are copied unchecked: a face whose
/// index names no style is drawn with the custom object's own brush and pen.
/// Every vertex index of the mesh lies within its vertex list, so the mesh can be registered
/// and drawn safely. A face that does not allow this throws obj_import::bad_face, and `out` is
/// left unchanged. When `out` already has room for the vertices and triangles (a target
/// converted into before), it is refilled in place and keeps its memory.
FACET_API void obj2mesh(const obj_info& info, const std::string& name, graphics::custom_mesh& out);

}  // namespace obj_import
