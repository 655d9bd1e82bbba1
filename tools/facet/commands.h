// The four subcommands of the facet tool, as functions of their options. Option parsing lives
// in main.cpp; everything here can be called (and tested) without it.
//
// Errors: each command throws tool_error (or another std::exception) with one line naming the
// file, the place and the problem; main prints it and exits with status 1. No command leaves a
// partial output file behind.
#pragma once

#include <iosfwd>
#include <optional>
#include <stdexcept>
#include <string>

#include "facet/geometry.h"

namespace facet_tool {

/// A failure the tool reports as one line on stderr, exit status 1.
class tool_error : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

struct render_options {
    std::string input;   ///< a scene file or an .obj model
    std::string output;  ///< the PNG to write
    int width = 1280;    ///< pixels
    int height = 720;
    std::optional<vector3d> eye;     ///< camera position; framed from the bounds when absent
    std::optional<vector3d> target;  ///< the point looked at; the bounds' centre when absent
    bool bw = false;                 ///< the black-and-white mode
    bool shadows = true;
    bool outlines = true;
    bool stats = false;  ///< print the time of each stage on stderr
    bool quiet = false;  ///< no progress on stderr
};

/// Renders `input` to a PNG at `output`.
void run_render(const render_options& options);

struct export_options {
    std::string input;   ///< a scene file or an .obj model
    std::string output;  ///< .glb (binary) or .gltf (JSON with the buffer embedded)
    bool edges = false;  ///< add the outline edges as a line primitive per object
    bool stats = false;
    bool quiet = false;
};

/// Exports `input` as glTF 2.0.
void run_export(const export_options& options);

struct info_options {
    std::string input;
    bool json = false;
};

/// Prints the object tree of `input` with type, name, world bounds and mesh counts, and totals,
/// as text or JSON, to `out`.
void run_info(const info_options& options, std::ostream& out);

struct convert_options {
    std::string input;   ///< an .obj model
    std::string output;  ///< a scene file (any other extension than .glb/.gltf) or glTF
    bool quiet = false;
};

/// Converts an OBJ model into a scene file that read_scene reads back, or into glTF.
void run_convert(const convert_options& options);

}  // namespace facet_tool
