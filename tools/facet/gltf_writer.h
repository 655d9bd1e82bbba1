// glTF 2.0 output of a scene: what `facet export` and `facet convert` write.
//
// Layout of the file:
//   - one node per object, in scene order, named after the object; its translation is the
//     object's position and its rotation the unit quaternion of its orientation (axis and
//     degrees). An object whose parent is in the scene is a child node of its parent's node;
//     the others are the roots of the one scene. Objects without geometry are nodes without mesh.
//   - one mesh per object with geometry, in object space, named after the object:
//       * one triangle primitive per style the faces use (faces whose style index names no
//         style share one more, drawn with the object's brush), un-indexed: three vertices per
//         face, in face order, with POSITION (with min and max), NORMAL (the corner normals),
//         TEXCOORD_0 (the corner's texture coordinate, as the face set holds it) and TANGENT
//         (the corner tangent, w = +1 or -1 by the sign of dot(cross(normal, tangent),
//         bitangent));
//       * one LINES primitive for the face set's line records (line, polyline, arrow,
//         crosshair), two vertices per line, coloured by the object's pen;
//       * with edges, one LINES primitive for the outline edges: every drawn half-edge, an edge
//         drawn on both sides once, coloured by the object's pen.
//   - one material per distinct style appearance: base color and alpha from the brush
//     (components / 255), metallic 0, roughness 1, alpha mode BLEND when alpha < 255, double
//     sided when the face set has backface culling off. Line materials use the pen's color.
//
// Attributes that cannot be written as they are: a corner normal that is zero or not finite
// is replaced by the face normal, or (0, 0, 1) when that is zero too; a zero or non-finite
// tangent is replaced by a unit vector perpendicular to the written normal, with w = +1. So
// every NORMAL and TANGENT in the file has unit length. TEXCOORD_0 is written only when every
// face's texture-coordinate indices are in range, TANGENT only with TEXCOORD_0 and a tangent
// frame per corner.
#pragma once

#include <string>

#include "facet/scene.h"
#include "progress.h"

namespace facet_tool {

/// Wall-clock seconds spent in each stage of an export.
struct gltf_times {
    double meshes = 0.0;  ///< building the face sets and packing triangles and lines
    double edges = 0.0;   ///< collecting and packing the outline edges (0 without edges)
    double write = 0.0;   ///< encoding and writing the file
};

/// Writes `s` as glTF 2.0 to `path`: binary for a ".glb" extension, JSON with the buffer
/// embedded for ".gltf" (any case). Builds the objects' meshes (get_mesh) as needed. Throws
/// tool_error naming the path for another extension (before anything is built) or when the
/// file cannot be written, and naming the object for a position, orientation or vertex that is
/// not finite; nothing is left at `path` then. Stage times go to `times` when not null.
void write_gltf(const facet::scene& s, const std::string& path, bool edges, progress& report,
                gltf_times* times = nullptr);

/// Throws tool_error unless `path` ends in ".glb" or ".gltf" (any case).
void check_gltf_path(const std::string& path);

/// True when `path` ends in ".glb" or ".gltf" (any case).
bool is_gltf_path(const std::string& path);

}  // namespace facet_tool
