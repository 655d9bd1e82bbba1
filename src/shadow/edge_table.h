// The compact side table of a face set's edges that the silhouette walk streams instead of the
// half-edges and face records.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "facet/ifs.h"

namespace facet::detail {

/// One edge as the silhouette walk sees it: a pair of mutual twin half-edges, or a half-edge
/// whose twin does not point back (measured on its own).
struct edge_record {
    /// No half-edge (`second` of a lone half-edge).
    static constexpr std::uint32_t none = 0xffffffffu;

    /// The half-edge starting at `a`, and its mutual twin starting at `b` (or none). For a pair
    /// the sides are chosen so that a <= b, so the half-edge that build_shadow_volume takes is
    /// `first`.
    std::uint32_t first = 0;
    std::uint32_t second = none;
    /// The start vertices of `first` and of its twin.
    std::uint32_t a = 0;
    std::uint32_t b = 0;
    /// The normals of the two half-edges' faces, as positions in edge_table::normals.
    std::uint32_t normal_a = 0;
    std::uint32_t normal_b = 0;
};

/// A face in single precision for placing it against a light at once: the position P of its
/// first corner and its normal n, each rounded to the nearest float, and how far the face
/// strays from them: for every point M of the face's edges, |M − P| <= reach and |n · (M − P)|
/// <= tilt (for the exact P and n). A face with a corner that does not exist has an infinite
/// reach.
struct face_extent {
    float corner[3] = {0.0f, 0.0f, 0.0f};
    float normal[3] = {0.0f, 0.0f, 0.0f};
    float reach = 0.0f;
    float tilt = 0.0f;
};

/// The faces of a record, as positions in edge_table::extents, or `none` where the record is
/// decided on its own: a half-edge without a mutual twin, an edge from a vertex to itself, or
/// faces that do not both hold both of the record's vertices.
struct face_pair {
    std::uint32_t a = edge_record::none;
    std::uint32_t b = edge_record::none;
};

/// The edges of a face set with a twin, in the order of their `first` half-edge, and the face
/// normals packed in face order (followed by the normals of faces outside the face array that
/// some half-edge points to), with each face's extent and each record's faces. 32 bytes per
/// edge and 56 per face: about 104 bytes per triangle of a closed mesh.
struct edge_table {
    std::vector<edge_record> records;
    /// One per record.
    std::vector<face_pair> pairs;
    std::vector<vector3d> normals;
    /// One per face of the face array.
    std::vector<face_extent> extents;
    /// At least the largest magnitude of a vertex coordinate that is not NaN.
    double coordinate_bound = 0.0;
    /// At least the length of every normal in `normals` that is not NaN (a little above).
    double normal_bound = 0.0;
    /// False when some half-edge points to a twin or face outside the face set's arrays: those
    /// may change without the face set knowing, so the table is not kept.
    bool cacheable = true;

    /// Builds the table of `fs`. The vertices that build_shadow_volume reads (a pair's, a lone
    /// a < b's) are read checked: a bad index fails "index < m_size" here, before any output.
    explicit edge_table(const indexedfaceset& fs);

    /// The table of `fs`: the one it keeps, or a new one that it keeps from now on (until the
    /// face set may have changed). Safe to call from several threads on one face set.
    static std::shared_ptr<const edge_table> of(const indexedfaceset& fs);
};

}  // namespace facet::detail
