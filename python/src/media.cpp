// OBJ import, TGA files, bitmaps as (h, w, 4) arrays, hatch patterns, text labels and an
// in-memory texture manager that receives the library's textures.
#include <cerrno>
#include <cstring>
#include <fstream>
#include <map>

#include "common.h"
#include "facet/bitmap.h"
#include "facet/obj_import.h"
#include "facet/textures.h"

namespace facet_python {

namespace {

// A bitmap as an (h, w, 4) uint8 array that owns it (no pixel is copied).
py::array bitmap_array(graphics::bitmap&& image) {
    auto* held = new graphics::bitmap(std::move(image));
    py::capsule owner(held, [](void* p) { delete static_cast<graphics::bitmap*>(p); });
    static const unsigned char none[4] = {0, 0, 0, 0};
    const unsigned char* data = held->begin() != nullptr ? held->begin() : none;
    return py::array(py::dtype::of<std::uint8_t>(),
                     {static_cast<py::ssize_t>(held->height()),
                      static_cast<py::ssize_t>(held->width()), py::ssize_t(4)},
                     data, owner);
}

// An (h, w, 4) uint8 array as a bitmap (copied in).
graphics::bitmap array_bitmap(const py::handle& a) {
    const auto arr = py::array_t<std::uint8_t, py::array::c_style>::ensure(a);
    if (!arr || arr.ndim() != 3 || arr.shape(2) != 4) {
        PyErr_Clear();
        value_error("image: expected a uint8 array of shape (height, width, 4)");
    }
    if (arr.shape(0) > 65535 || arr.shape(1) > 65535)
        value_error("image: width and height must be at most 65535");
    graphics::bitmap out(static_cast<unsigned short>(arr.shape(1)),
                         static_cast<unsigned short>(arr.shape(0)));
    if (arr.size() > 0) std::memcpy(out.begin(), arr.data(), static_cast<std::size_t>(arr.size()));
    return out;
}

[[noreturn]] void file_error(const std::string& path) {
    errno = errno != 0 ? errno : ENOENT;
    PyErr_SetFromErrnoWithFilename(PyExc_OSError, path.c_str());
    throw py::error_already_set();
}

unsigned short pixels(int v, const char* what) {
    if (v < 1 || v > 65535) value_error(std::string(what) + " must be 1 to 65535 pixels");
    return static_cast<unsigned short>(v);
}

// Textures kept in memory: what the library's label and pattern makers hand over.
class memory_textures : public graphics::texture_manager {
public:
    unsigned create_texture(const graphics::bitmap& image) override {
        m_levels[++m_last] = {image};
        return m_last;
    }
    void update_texture(unsigned id, const graphics::bitmap& image) override {
        auto it = m_levels.find(id);
        if (it != m_levels.end()) it->second = {image};
    }
    void delete_texture(unsigned id) override { m_levels.erase(id); }
    void set_texture_level(unsigned id, const graphics::bitmap& image, unsigned level) override {
        auto it = m_levels.find(id);
        if (it == m_levels.end() || level == 0) return;
        if (it->second.size() <= level) it->second.resize(level + 1);
        it->second[level] = image;
    }
    void bind_texture(unsigned) override {}
    void unbind_texture() override {}

    std::vector<unsigned> ids() const {
        std::vector<unsigned> out;
        for (const auto& e : m_levels) out.push_back(e.first);
        return out;
    }
    std::size_t levels(unsigned id) const { return at(id).size(); }
    py::array image(unsigned id, unsigned level) const {
        const auto& l = at(id);
        if (level >= l.size()) throw py::index_error("no level " + std::to_string(level));
        return bitmap_array(graphics::bitmap(l[level]));
    }

private:
    const std::vector<graphics::bitmap>& at(unsigned id) const {
        auto it = m_levels.find(id);
        if (it == m_levels.end()) throw py::key_error("no texture " + std::to_string(id));
        return it->second;
    }
    std::map<unsigned, std::vector<graphics::bitmap>> m_levels;
    unsigned m_last = 0;
};

void require_manager() {
    if (graphics::get_global_texture_manager() == nullptr)
        throw std::runtime_error(
            "no texture manager is set: call facet.set_texture_manager(facet.TextureStore())");
}

using obj_model = obj_import::obj_info;

void bind_obj(py::module_& m) {
    py::class_<obj_model, std::shared_ptr<obj_model>>(
        m, "ObjModel", "An OBJ model as read. The arrays are views into the model (no copies).")
        .def_property_readonly("vertices",
                               [](const py::object& self) {
                                   const auto& v = self.cast<const obj_model&>().vertices;
                                   return view(self, v.empty() ? nullptr : &v[0].x,
                                               {static_cast<py::ssize_t>(v.size()), 3},
                                               {sizeof(vector3d), sizeof(double)});
                               })
        .def_property_readonly("normals",
                               [](const py::object& self) {
                                   const auto& v = self.cast<const obj_model&>().normals;
                                   return view(self, v.empty() ? nullptr : &v[0].x,
                                               {static_cast<py::ssize_t>(v.size()), 3},
                                               {sizeof(vector3d), sizeof(double)});
                               })
        .def_property_readonly("texcoords",
                               [](const py::object& self) {
                                   const auto& v = self.cast<const obj_model&>().texcoords;
                                   return view(self, v.empty() ? nullptr : &v[0].u,
                                               {static_cast<py::ssize_t>(v.size()), 2},
                                               {sizeof(obj_import::texcoord), sizeof(double)});
                               })
        .def_property_readonly(
            "faces",
            [](const py::object& self) {
                const auto& f = self.cast<const obj_model&>().faces;
                return view(self, f.empty() ? nullptr : &f[0].corners[0].vertex,
                            {static_cast<py::ssize_t>(f.size()), 4},
                            {sizeof(obj_import::face), sizeof(obj_import::idx)});
            },
            "(f, 4) int32 zero-based vertex indices per corner; -1 past a triangle's third.")
        .def_property_readonly("materials",
                               [](const obj_model& o) {
                                   std::vector<std::string> out;
                                   for (const auto& mat : o.materials) out.push_back(mat.name);
                                   return out;
                               })
        .def_property_readonly(
            "bounding_box",
            [](const obj_model& o) {
                const auto& b = o.bounding_box;
                return std::make_pair(vector3d(b.x_min, b.y_min, b.z_min),
                                      vector3d(b.x_max, b.y_max, b.z_max));
            },
            "(min, max) as last computed.")
        .def("calc_bounding_box", [](obj_model& o) { obj_import::calc_bounding_box(o); })
        .def(
            "swap_yz", [](obj_model& o) { obj_import::swap_all_yz(o); },
            "(x, y, z) becomes (x, z, -y) for vertices, normals and the box.")
        .def(
            "scale", [](obj_model& o, double f) { obj_import::scale(o, f); }, py::arg("factor"))
        .def(
            "translate", [](obj_model& o, const vector3d& v) { obj_import::translate(o, v); },
            py::arg("offset"))
        .def(
            "to_mesh",
            [](const obj_model& o, const std::string& name) {
                graphics::custom_mesh out;
                obj_import::obj2mesh(o, name, out);
                return out;
            },
            py::arg("name"),
            "A CustomMesh: the faces as triangles, a style per material. ObjError for a face "
            "that cannot be drawn.")
        .def("__repr__", [](const obj_model& o) {
            return "<facet.ObjModel: " + std::to_string(o.vertices.size()) + " vertices, " +
                   std::to_string(o.faces.size()) + " faces>";
        });

    m.def(
        "read_obj",
        [](const std::string& path, double scale, const vector3d& offset) {
            std::ifstream in(path, std::ios::binary);
            if (!in) file_error(path);
            auto model = std::make_shared<obj_model>();
            obj_import::parse_obj(in, *model);
            if (scale != 1.0) obj_import::scale(*model, scale);
            if (offset != vector3d()) obj_import::translate(*model, offset);
            return model;
        },
        py::arg("path"), py::kw_only(), py::arg("scale") = 1.0, py::arg("offset") = vector3d(),
        "Reads an OBJ file and normalises it as the library does (y and z swapped, scaled by "
        "10000, lower corner at the origin), then scales by `scale` and moves by `offset`.");
}

void bind_images(py::module_& m) {
    m.def(
        "read_tga",
        [](const std::string& path) {
            graphics::bitmap image;
            graphics::read_tga(path.c_str(), image);
            return bitmap_array(std::move(image));
        },
        py::arg("path"),
        "A 24- or 32-bit uncompressed TGA file as an (h, w, 4) uint8 array (RGBA, file row "
        "order). ImageError for a file it cannot read.");
    m.def(
        "write_tga",
        [](const std::string& path, const py::handle& image) {
            const graphics::bitmap b = array_bitmap(image);
            {
                std::ofstream probe(path, std::ios::binary | std::ios::app);
                if (!probe) file_error(path);
            }
            graphics::write_tga(path.c_str(), b);
        },
        py::arg("path"), py::arg("image"),
        "Writes an (h, w, 4) uint8 array as a 32-bit TGA file, bytes as they are (so read_tga "
        "returns red and blue exchanged).");
    m.def(
        "mipmap",
        [](const py::handle& image) {
            graphics::bitmap out;
            graphics::create_next_mipmap_level(array_bitmap(image), out);
            return bitmap_array(std::move(out));
        },
        py::arg("image"), "The next smaller mipmap level (2 x 2 box filter).");
    m.def(
        "hatch_texture",
        [](const graphics::color& line, const graphics::color& back, float period, float width,
           float sharpness, int size) {
            graphics::bitmap out;
            graphics::make_hatched_texture(line, back, period, width, sharpness,
                                           pixels(size, "size"), out);
            return bitmap_array(std::move(out));
        },
        py::arg("line_color") = graphics::color(0, 0, 0),
        py::arg("back_color") = graphics::color(255, 255, 255), py::arg("period") = 0.5f,
        py::arg("line_width") = 0.1f, py::arg("sharpness") = 0.5f, py::arg("size") = 64,
        "A size x size square of diagonal stripes as an (h, w, 4) uint8 array.");
    m.def(
        "text_texture",
        [](const std::string& text, int width, int height, const std::string& font, int font_size,
           const graphics::color& color, const graphics::color& background) {
            graphics::bitmap out;
            graphics::make_texture_xy(font.c_str(), font_size, color, background,
                                      pixels(width, "width"), pixels(height, "height"),
                                      text.c_str(), out);
            return bitmap_array(std::move(out));
        },
        py::arg("text"), py::arg("width") = 64, py::arg("height") = 64, py::arg("font") = "Arial",
        py::arg("font_size") = 48, py::arg("color") = graphics::color(0, 0, 255),
        py::arg("background") = graphics::color(224, 224, 255),
        "One line of text drawn centred into an (h, w, 4) uint8 array (bottom line first).");
}

void bind_textures(py::module_& m) {
    py::class_<memory_textures, std::shared_ptr<memory_textures>>(
        m, "TextureStore",
        "A texture manager that keeps the library's textures (labels, patterns) in memory.")
        .def(py::init<>())
        .def_property_readonly("ids", &memory_textures::ids)
        .def("levels", &memory_textures::levels, py::arg("id"))
        .def("image", &memory_textures::image, py::arg("id"), py::arg("level") = 0,
             "A copy of a texture level as an (h, w, 4) uint8 array.");

    m.def(
        "set_texture_manager",
        [m](const std::optional<std::shared_ptr<memory_textures>>& given) mutable {
            const std::shared_ptr<memory_textures> store = given ? *given : nullptr;
            // The module keeps the store alive while it is registered.
            m.attr("_texture_manager") = store ? py::cast(store) : py::none();
            graphics::set_global_texture_manager(store.get());
            graphics::get_pattern_repos() = graphics::pattern_repos();
            graphics::get_label_repos() = graphics::label_repos();
            if (store) graphics::get_pattern_repos().init();
        },
        py::arg("store"),
        "Registers the store that receives label and pattern textures (None unregisters); "
        "labels and patterns made for an earlier store are forgotten.");
    m.def(
        "hatch_texture_id",
        [] {
            require_manager();
            return graphics::get_pattern_repos().get_texture_id(graphics::pattern_repos::hatch);
        },
        "The id of the hatch pattern in the registered texture store.");
    m.def(
        "string_texture",
        [](const std::string& text) {
            require_manager();
            return graphics::make_string_texture(text.c_str());
        },
        py::arg("text"), "A new 64 x 64 label texture of `text`; returns its id.");

    py::class_<graphics::label_repos>(m, "Labels",
                                      "The label cache: text labels rendered once per text.")
        .def_property("color", &graphics::label_repos::get_fg_color,
                      &graphics::label_repos::set_fg_color)
        .def_property("background", &graphics::label_repos::get_bg_color,
                      &graphics::label_repos::set_bg_color)
        .def_property("font_size", &graphics::label_repos::get_font_size,
                      &graphics::label_repos::set_font_size)
        .def_property("mipmap_levels", &graphics::label_repos::get_mipmap_gen_level,
                      &graphics::label_repos::set_mipmap_gen_level)
        .def(
            "set_size",
            [](graphics::label_repos& l, int w, int h) {
                pixels(w, "width");
                pixels(h, "height");
                l.set_size(w, h);
            },
            py::arg("width"), py::arg("height"))
        .def(
            "texture_id",
            [](graphics::label_repos& l, const std::string& text) {
                require_manager();
                return l.get_texture_id(text);
            },
            py::arg("text"),
            "The texture id of the label `text` in the registered store (drawn on first use).");
    m.def(
        "labels", []() -> graphics::label_repos& { return graphics::get_label_repos(); },
        py::return_value_policy::reference, "The library's label cache.");
}

}  // namespace

void bind_media(py::module_& m) {
    bind_obj(m);
    bind_images(m);
    bind_textures(m);
}

}  // namespace facet_python
