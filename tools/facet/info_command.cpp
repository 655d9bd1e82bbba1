// facet info: the object tree with type, name, world bounds and mesh counts, and totals.
//
// Text: one line per object, depth first from the roots in scene order (children in the order
// they were added), indented two spaces per level up to 32 levels, deeper ones marked
// "[depth N]":
//   box 'lid'  vertices 8  faces 12  lines 0  bounds (0, 0, 0) .. (1, 2, 3)
// then a line "total: N objects, V vertices, F faces, L lines, bounds ...". An object without
// vertices shows "bounds none".
//
// JSON: {"input": path, "objects": [...], "totals": {...}}. "objects" lists every object in scene
// order as {"index", "type", "name", "parent" (index of the parent, null for a root), "depth",
// "vertices", "faces", "lines", "bounds": {"min": [x, y, z], "max": [x, y, z]} or null};
// "totals" holds "objects", "vertices", "faces", "lines" and "bounds".
#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdint>
#include <functional>
#include <ostream>
#include <sstream>
#include <vector>

#include "commands.h"
#include "input.h"
#include "progress.h"

namespace facet_tool {

namespace {

struct object_row {
    std::string type;
    std::string name;
    std::ptrdiff_t parent = -1;
    int depth = 0;
    std::uint64_t vertices = 0, faces = 0, lines = 0;
    facet::world_box bounds;
};

std::string point_text(const vector3d& p) {
    std::ostringstream out;
    out << '(' << p.x << ", " << p.y << ", " << p.z << ')';
    return out.str();
}

std::string bounds_text(const facet::world_box& b) {
    return b.empty() ? "none" : point_text(b.min) + " .. " + point_text(b.max);
}

nlohmann::json bounds_json(const facet::world_box& b) {
    if (b.empty()) return nullptr;
    return {{"min", {b.min.x, b.min.y, b.min.z}}, {"max", {b.max.x, b.max.y, b.max.z}}};
}

// Depth-first order from the roots: children follow their parent, in the order they were added.
std::vector<std::size_t> tree_order(const facet::scene& s, std::vector<object_row>& rows) {
    std::vector<std::vector<std::size_t>> children(s.size());
    std::vector<std::size_t> roots;
    for (std::size_t i = 0; i < s.size(); ++i)
        if (rows[i].parent < 0) roots.push_back(i);
    for (std::size_t i = 0; i < s.size(); ++i)
        for (const primitives::basic_object* c : s[i].get_children()) {
            const std::ptrdiff_t ci = s.index_of(*c);
            if (ci >= 0 &&
                rows[static_cast<std::size_t>(ci)].parent == static_cast<std::ptrdiff_t>(i))
                children[i].push_back(static_cast<std::size_t>(ci));
        }
    std::vector<std::size_t> order;
    order.reserve(s.size());
    std::vector<std::size_t> stack(roots.rbegin(), roots.rend());
    while (!stack.empty()) {
        const std::size_t i = stack.back();
        stack.pop_back();
        order.push_back(i);
        for (auto it = children[i].rbegin(); it != children[i].rend(); ++it) {
            rows[*it].depth = rows[i].depth + 1;
            stack.push_back(*it);
        }
    }
    return order;
}

}  // namespace

void run_info(const info_options& options, std::ostream& out) {
    progress report(false);
    const facet::scene s = load_input(options.input, report);
    const std::vector<facet::world_box> bounds = s.world_bounds();
    std::vector<object_row> rows(s.size());
    object_row total;
    for (std::size_t i = 0; i < s.size(); ++i) {
        const primitives::basic_object& o = s[i];
        const indexedfaceset& m = o.get_mesh();
        object_row& r = rows[i];
        r.type = o.class_id();
        r.name = o.get_name();
        r.parent = o.get_parent() == nullptr ? -1 : s.index_of(*o.get_parent());
        r.vertices = m.num_vertices();
        r.faces = m.num_faces();
        r.lines = m.num_lines();
        r.bounds = bounds[i];
        total.vertices += r.vertices;
        total.faces += r.faces;
        total.lines += r.lines;
        total.bounds.add(r.bounds);
    }
    const std::vector<std::size_t> order = tree_order(s, rows);

    if (options.json) {
        nlohmann::json objects = nlohmann::json::array();
        for (std::size_t i = 0; i < rows.size(); ++i) {
            const object_row& r = rows[i];
            objects.push_back(
                {{"index", i},
                 {"type", r.type},
                 {"name", r.name},
                 {"parent", r.parent < 0 ? nlohmann::json(nullptr) : nlohmann::json(r.parent)},
                 {"depth", r.depth},
                 {"vertices", r.vertices},
                 {"faces", r.faces},
                 {"lines", r.lines},
                 {"bounds", bounds_json(r.bounds)}});
        }
        const nlohmann::json doc = {{"input", options.input},
                                    {"objects", objects},
                                    {"totals",
                                     {{"objects", rows.size()},
                                      {"vertices", total.vertices},
                                      {"faces", total.faces},
                                      {"lines", total.lines},
                                      {"bounds", bounds_json(total.bounds)}}}};
        out << doc.dump(2, ' ', false, nlohmann::json::error_handler_t::replace) << '\n';
        return;
    }
    for (const std::size_t i : order) {
        const object_row& r = rows[i];
        // Deep chains keep their lines short: the indentation stops growing at max_indent.
        const int max_indent = 32;
        out << std::string(2 * static_cast<std::size_t>(std::min(r.depth, max_indent)), ' ');
        if (r.depth > max_indent) out << "[depth " << r.depth << "] ";
        out << r.type << " '" << r.name << "'  vertices " << r.vertices << "  faces " << r.faces
            << "  lines " << r.lines << "  bounds " << bounds_text(r.bounds) << '\n';
    }
    out << "total: " << rows.size() << " objects, " << total.vertices << " vertices, "
        << total.faces << " faces, " << total.lines << " lines, bounds "
        << bounds_text(total.bounds) << '\n';
}

}  // namespace facet_tool
