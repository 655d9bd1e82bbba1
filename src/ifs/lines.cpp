// indexedfaceset: the meshes of the line primitives (line, polyline). Both are built in a local
// face set and exchanged into this one, so only the exchanged arrays change here.
#include <cstdint>

#include "facet/ifs.h"
#include "facet/primitives.h"

void indexedfaceset::create_mesh(const primitives::line& l) {
    indexedfaceset local;
    local.m_vertices.resize(2);
    local.m_vertices[0] = l[0];
    local.m_vertices[1] = l[1];
    local.m_lines.resize(1);
    local.m_lines[0] = line(0, 1, l.get_pen());

    // Runs on this face set's previous contents, before they are exchanged out.
    set_texture_params(l);

    local.m_edges_only = l.edges_only();
    swap(local);
}

void indexedfaceset::create_mesh(const primitives::polyline& p) {
    indexedfaceset local;
    const auto n = static_cast<std::uint32_t>(p.size());
    if (n >= 2) {
        local.m_vertices.resize(n);
        for (std::uint32_t i = 0; i < n; ++i) local.m_vertices[i] = p[i];
        const graphics::pen pen = p.get_pen();
        local.m_lines.resize(n - 1);
        for (std::uint32_t i = 0; i + 1 < n; ++i) local.m_lines[i] = line(i, i + 1, pen);
    }
    local.m_edges_only = p.edges_only();
    swap(local);
}
