// Colors, brushes, pens, styles and the texture enumerations.
#include <sstream>

#include <pybind11/operators.h>

#include "common.h"

namespace facet_python {

namespace {

std::string color_repr(const graphics::color& c) {
    std::ostringstream os;
    os << "Color(" << c.get_red_component() << ", " << c.get_green_component() << ", "
       << c.get_blue_component() << ", " << c.get_alpha_component() << ")";
    return os.str();
}

unsigned component(int v, const char* name) {
    if (v < 0 || v > 255) value_error(std::string(name) + " must be 0 to 255");
    return static_cast<unsigned>(v);
}

}  // namespace

void bind_appearance(py::module_& m) {
    py::enum_<graphics::texture_mode>(m, "TextureMode")
        .value("MODULATE", graphics::texture_mode::modulate)
        .value("REPLACE", graphics::texture_mode::replace)
        .value("DECAL", graphics::texture_mode::decal)
        .value("BLEND", graphics::texture_mode::blend);
    py::enum_<graphics::texgen_mode>(m, "TexgenMode")
        .value("NONE", graphics::texgen_mode::none)
        .value("BOX", graphics::texgen_mode::box)
        .value("OBJECT_LINEAR", graphics::texgen_mode::object_linear)
        .value("EYE_LINEAR", graphics::texgen_mode::eye_linear)
        .value("SPHERE_MAP", graphics::texgen_mode::sphere_map);

    py::class_<graphics::color>(m, "Color", "An RGBA color (components 0 to 255).")
        .def(py::init([](int r, int g, int b, int a) {
                 return graphics::color(component(r, "r"), component(g, "g"), component(b, "b"),
                                        component(a, "a"));
             }),
             py::arg("r") = 0, py::arg("g") = 0, py::arg("b") = 0, py::arg("a") = 255)
        .def_property_readonly("r", &graphics::color::get_red_component)
        .def_property_readonly("g", &graphics::color::get_green_component)
        .def_property_readonly("b", &graphics::color::get_blue_component)
        .def_property_readonly("a", &graphics::color::get_alpha_component)
        .def_property("reflection", &graphics::color::get_reflection,
                      &graphics::color::set_reflection)
        .def_property("shininess", &graphics::color::get_shininess, &graphics::color::set_shininess)
        .def("to_tuple",
             [](const graphics::color& c) {
                 return py::make_tuple(c.get_red_component(), c.get_green_component(),
                                       c.get_blue_component(), c.get_alpha_component());
             })
        .def("to_hsl",
             [](const graphics::color& c) {
                 float h = 0, s = 0, l = 0;
                 c.to_hsl(h, s, l);
                 return py::make_tuple(h, s, l);
             })
        .def(py::self == py::self)
        .def(py::self != py::self)
        .def("__repr__", &color_repr);

    py::class_<graphics::brush>(m, "Brush", "A fill: a color and a style code.")
        .def(py::init<const graphics::color&, unsigned>(), py::arg("color") = graphics::color(),
             py::arg("style") = 0)
        .def_property("color", &graphics::brush::get_color, &graphics::brush::set_color)
        .def_property("style", &graphics::brush::get_style, &graphics::brush::set_style)
        .def(py::self == py::self)
        .def(py::self != py::self)
        .def("__repr__", [](const graphics::brush& b) {
            return "Brush(" + color_repr(b.get_color()) +
                   ", style=" + std::to_string(b.get_style()) + ")";
        });

    py::class_<graphics::pen>(m, "Pen", "A line: a color, a width and a style code.")
        .def(py::init<const graphics::color&, unsigned, unsigned>(),
             py::arg("color") = graphics::color(), py::arg("width") = 1, py::arg("style") = 0)
        .def_property("color", &graphics::pen::get_color, &graphics::pen::set_color)
        .def_property("width", &graphics::pen::get_width, &graphics::pen::set_width)
        .def_property("style", &graphics::pen::get_style, &graphics::pen::set_style)
        .def(py::self == py::self)
        .def(py::self != py::self)
        .def("__repr__", [](const graphics::pen& p) {
            return "Pen(" + color_repr(p.get_color()) + ", width=" + std::to_string(p.get_width()) +
                   ", style=" + std::to_string(p.get_style()) + ")";
        });

    py::class_<graphics::style>(m, "Style", "A named appearance that faces refer to by index.")
        .def(py::init([](const std::string& name, const graphics::brush& b, const graphics::pen& p,
                         const std::string& material) {
                 graphics::style s(name, b, p);
                 s.material_ref_id = material;
                 return s;
             }),
             py::arg("name") = "", py::arg("brush") = graphics::brush(),
             py::arg("pen") = graphics::pen(), py::arg("material") = "")
        .def_readwrite("name", &graphics::style::name)
        .def_readwrite("material", &graphics::style::material_ref_id)
        .def_readwrite("brush", &graphics::style::brush)
        .def_readwrite("pen", &graphics::style::pen)
        .def_property(
            "texture_id", [](const graphics::style& s) { return s.texture.texture_id; },
            [](graphics::style& s, std::uint32_t id) { s.texture.texture_id = id; })
        .def_property(
            "texturing", [](const graphics::style& s) { return s.texture.texturing; },
            [](graphics::style& s, bool on) { s.texture.texturing = on; })
        .def("__repr__", [](const graphics::style& s) { return "Style('" + s.name + "')"; });
}

}  // namespace facet_python
