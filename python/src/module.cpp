// The extension module facet._facet and the mapping of the library's exceptions.
#include <exception>
#include <stdexcept>
#include <string>

#include "common.h"
#include "facet/bitmap.h"
#include "facet/math3d.h"
#include "facet/obj_import.h"
#include "facet/scene.h"
#include "facet/scene_io.h"
#include "facet/version.h"

namespace facet_python {

void bind_exceptions(py::module_& m) {
    static py::exception<format_exception> format_error(m, "FormatError", PyExc_ValueError);
    static py::exception<obj_import::bad_face> obj_error(m, "ObjError", PyExc_ValueError);
    static py::exception<graphics::tga_exception> image_error(m, "ImageError", PyExc_OSError);
    static py::exception<EMatrix> singular_error(m, "SingularMatrixError", PyExc_ArithmeticError);
    static py::exception<mesh_too_large> too_large(m, "MeshTooLargeError", PyExc_MemoryError);
    static py::exception<std::runtime_error> triangulation_error(m, "TriangulationError",
                                                                 PyExc_ValueError);
    // Raised by render() (python/src/render.cpp looks it up by name).
    static py::exception<std::runtime_error> render_error(m, "RenderError", PyExc_RuntimeError);
    // One translator, so that the derived types are looked at before std::runtime_error.
    py::register_exception_translator([](std::exception_ptr p) {
        try {
            if (p) std::rethrow_exception(p);
        } catch (const py::builtin_exception&) {
            throw;  // ValueError, KeyError, ... raised by the bindings themselves
        } catch (const format_exception& e) {
            format_error(e.what());
        } catch (const facet::scene_error& e) {
            format_error(e.what());
        } catch (const obj_import::bad_face& e) {
            obj_error(e.what());
        } catch (const graphics::tga_exception& e) {
            image_error(e.what());
        } catch (const EMatrix& e) {
            singular_error(e.what());
        } catch (const mesh_too_large& e) {
            too_large(e.what());
        } catch (const std::runtime_error& e) {
            const std::string what = e.what();
            if (what.rfind("Triangulation error", 0) == 0 ||
                what.rfind("Path extrusion error", 0) == 0)
                triangulation_error(e.what());
            else if (what == "intersection of parallel lines")
                PyErr_SetString(PyExc_ValueError, e.what());
            else
                PyErr_SetString(PyExc_RuntimeError, e.what());
        } catch (const geometry::bad_normalization& e) {
            PyErr_SetString(PyExc_ValueError, e.what());
        }
    });
}

}  // namespace facet_python

PYBIND11_MODULE(_facet, m) {
    using namespace facet_python;
    m.doc() = "facet: scene geometry, outlines, shadow volumes and rendering";
    m.attr("__version__") = facet::version();
    bind_exceptions(m);
    bind_appearance(m);
    bind_objects(m);
    bind_primitives(m);
    bind_view(m);
    bind_face_set(m);
    bind_scene(m);
    bind_plane(m);
    bind_media(m);
    bind_render(m);
    bind_timing(m);
}
