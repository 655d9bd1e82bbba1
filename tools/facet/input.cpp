#include "input.h"

#include <cerrno>
#include <cstring>
#include <fstream>
#include <memory>
#include <streambuf>
#include <vector>

#include "commands.h"
#include "facet/obj_import.h"
#include "facet/primitives.h"
#include "output_file.h"

namespace facet_tool {

namespace {

// A read-only stream buffer over a file that reports how far reading has come.
class reporting_filebuf : public std::streambuf {
public:
    reporting_filebuf(std::FILE* file, long size, progress& report)
        : m_file(file), m_size(size), m_report(report), m_buffer(1 << 16) {}

protected:
    int_type underflow() override {
        const std::size_t n = std::fread(m_buffer.data(), 1, m_buffer.size(), m_file);
        if (n == 0) return traits_type::eof();
        m_read += static_cast<long>(n);
        if (m_size > 0) m_report.update(static_cast<double>(m_read) / static_cast<double>(m_size));
        setg(m_buffer.data(), m_buffer.data(), m_buffer.data() + n);
        return traits_type::to_int_type(m_buffer[0]);
    }

private:
    std::FILE* m_file;
    long m_size;
    long m_read = 0;
    progress& m_report;
    std::vector<char> m_buffer;
};

bool ends_with_obj(const std::string& s) { return extension_of(s) == ".obj"; }

// Registers the OBJ models that the scene's custom objects name and the mesh map lacks.
void register_referenced_models(const facet::scene& s, const std::string& scene_path,
                                progress& report) {
    auto& meshes = graphics::get_global_mesh_map();
    for (primitives::basic_object& object : s) {
        auto* c = dynamic_cast<primitives::custom*>(&object);
        if (c == nullptr || !ends_with_obj(c->get_mesh_id()) || meshes.contains(c->get_mesh_id()))
            continue;
        const std::string& id = c->get_mesh_id();
        const std::string path = id.front() == '/' ? id : folder_of(scene_path) + id;
        meshes.add_mesh(read_obj_model(path, id, report));
        c->set_dirty(true);
    }
}

}  // namespace

bool is_obj_path(const std::string& path) { return ends_with_obj(path); }

graphics::custom_mesh read_obj_model(const std::string& path, const std::string& name,
                                     progress& report) {
    std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "rb"),
                                                         &std::fclose);
    if (!file) throw tool_error(path + ": cannot open: " + std::strerror(errno));
    long size = -1;
    if (std::fseek(file.get(), 0, SEEK_END) == 0) size = std::ftell(file.get());
    std::rewind(file.get());

    report.stage("reading " + file_name_of(path));
    reporting_filebuf buffer(file.get(), size, report);
    std::istream in(&buffer);
    obj_import::obj_info info;
    obj_import::parse_obj(in, info);
    if (std::ferror(file.get())) throw tool_error(path + ": cannot read: " + std::strerror(errno));
    if (info.faces.empty()) throw tool_error(path + ": no faces: not an OBJ model");

    graphics::custom_mesh mesh;
    try {
        obj_import::obj2mesh(info, name, mesh);
    } catch (const obj_import::bad_face& e) {
        throw tool_error(path + ": " + e.what());
    }
    report.finish();
    return mesh;
}

facet::scene load_input(const std::string& path, progress& report) {
    if (is_obj_path(path)) {
        const std::string name = stem_of(path);
        graphics::get_global_mesh_map().add_mesh(read_obj_model(path, name, report));
        facet::scene s;
        auto& object = s.emplace<primitives::custom>(name);
        object.set_name(name);
        return s;
    }
    try {
        facet::scene s = facet::read_scene(path);
        register_referenced_models(s, path, report);
        return s;
    } catch (const facet::scene_error& e) {
        throw tool_error(e.what());
    }
}

}  // namespace facet_tool
