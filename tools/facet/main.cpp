// facet: render, export, inspect and convert scenes and OBJ models from the command line.
// Option parsing only; the work is in the command functions (commands.h).
#include <CLI/CLI.hpp>

#include <cmath>
#include <cstdio>
#include <exception>
#include <iostream>
#include <sstream>
#include <string>

#include "commands.h"
#include "facet/version.h"
#include "output_file.h"

namespace {

using facet_tool::tool_error;

// "1280x720" -> width and height, each 1 to 16384.
void parse_size(const std::string& text, int& width, int& height) {
    unsigned w = 0, h = 0;
    char x = 0, rest = 0;
    if (std::sscanf(text.c_str(), "%u%c%u%c", &w, &x, &h, &rest) != 3 || (x != 'x' && x != 'X') ||
        w < 1 || h < 1 || w > 16384 || h > 16384)
        throw tool_error("--size " + text + ": expected WIDTHxHEIGHT, each 1 to 16384 pixels");
    width = static_cast<int>(w);
    height = static_cast<int>(h);
}

// "x,y,z" -> a point with finite coordinates.
vector3d parse_point(const char* option, const std::string& text) {
    std::istringstream in(text);
    vector3d p;
    char c1 = 0, c2 = 0;
    std::string rest;
    if (!(in >> p.x >> c1 >> p.y >> c2 >> p.z) || c1 != ',' || c2 != ',' || (in >> rest) ||
        !std::isfinite(p.x) || !std::isfinite(p.y) || !std::isfinite(p.z))
        throw tool_error(std::string(option) + " " + text + ": expected three numbers x,y,z");
    return p;
}

// The default output of a render: the input's stem with ".png", in the current folder.
std::string default_png_name(const std::string& input) {
    return facet_tool::stem_of(input) + ".png";
}

}  // namespace

int main(int argc, char** argv) {
    CLI::App app{"facet: render, export, inspect and convert scenes and OBJ models"};
    app.require_subcommand(1);
    app.set_version_flag("--version", std::string("facet ") + facet::version());

    facet_tool::render_options render;
    std::string size_text, eye_text, target_text;
    CLI::App* render_cmd = app.add_subcommand("render", "draw a scene or OBJ model into a PNG");
    render_cmd->add_option("input", render.input, "scene file or .obj model")->required();
    render_cmd->add_option("-o,--output", render.output,
                           "PNG to write (default: INPUT's name.png)");
    render_cmd->add_option("--size", size_text, "image size WIDTHxHEIGHT (default 1280x720)");
    render_cmd->add_option("--eye", eye_text, "camera position x,y,z (default: framed)");
    render_cmd->add_option("--target", target_text, "point looked at x,y,z (default: centre)");
    render_cmd->add_flag("--bw", render.bw, "black-and-white mode");
    render_cmd->add_flag("--no-shadows", "draw without shadows");
    render_cmd->add_flag("--no-outlines", "draw without outline edges");
    render_cmd->add_flag("--stats", render.stats, "print the time of each stage on stderr");
    render_cmd->add_flag("-q,--quiet", render.quiet, "no progress on stderr");

    facet_tool::export_options exporting;
    CLI::App* export_cmd = app.add_subcommand("export", "write a scene or OBJ model as glTF 2.0");
    export_cmd->add_option("input", exporting.input, "scene file or .obj model")->required();
    export_cmd->add_option("-o,--output", exporting.output, ".glb or .gltf file to write")
        ->required();
    export_cmd->add_flag("--edges", exporting.edges, "add the outline edges as lines");
    export_cmd->add_flag("--stats", exporting.stats, "print the time of each stage on stderr");
    export_cmd->add_flag("-q,--quiet", exporting.quiet, "no progress on stderr");

    facet_tool::info_options info;
    CLI::App* info_cmd = app.add_subcommand("info", "print the object tree with bounds and counts");
    info_cmd->add_option("input", info.input, "scene file or .obj model")->required();
    info_cmd->add_flag("--json", info.json, "print JSON");

    facet_tool::convert_options convert;
    CLI::App* convert_cmd = app.add_subcommand("convert", "turn an OBJ model into a scene or glTF");
    convert_cmd->add_option("input", convert.input, ".obj model")->required();
    convert_cmd->add_option("-o,--output", convert.output, "scene file, .glb or .gltf to write")
        ->required();
    convert_cmd->add_flag("-q,--quiet", convert.quiet, "no progress on stderr");

    try {
        app.parse(argc, argv);
    } catch (const CLI::CallForHelp& e) {
        return app.exit(e);
    } catch (const CLI::CallForAllHelp& e) {
        return app.exit(e);
    } catch (const CLI::CallForVersion& e) {
        return app.exit(e);
    } catch (const CLI::ParseError& e) {
        std::cerr << "facet: " << e.what() << " (see facet --help)\n";
        return 1;
    }

    try {
        if (*render_cmd) {
            if (!size_text.empty()) parse_size(size_text, render.width, render.height);
            if (!eye_text.empty()) render.eye = parse_point("--eye", eye_text);
            if (!target_text.empty()) render.target = parse_point("--target", target_text);
            render.shadows = render_cmd->count("--no-shadows") == 0;
            render.outlines = render_cmd->count("--no-outlines") == 0;
            if (render.output.empty()) render.output = default_png_name(render.input);
            facet_tool::run_render(render);
        } else if (*export_cmd) {
            facet_tool::run_export(exporting);
        } else if (*info_cmd) {
            facet_tool::run_info(info, std::cout);
        } else if (*convert_cmd) {
            facet_tool::run_convert(convert);
        }
    } catch (const std::exception& e) {
        std::cerr << "facet: " << e.what() << "\n";
        return 1;
    }
    return 0;
}
