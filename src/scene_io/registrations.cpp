// The scene types known to the reader, registered at library load in this order.
#include "facet/primitives.h"
#include "facet/scene_io.h"

namespace {

using primitives::basic_object;
template <class T>
using registrar = factory_registrar<basic_object, T>;

const registrar<basic_object> register_empty("empty");
const registrar<primitives::box> register_box("box");
const registrar<primitives::cylinder> register_cylinder("cylinder");
const registrar<primitives::cone> register_cone("cone");
const registrar<primitives::quad> register_quad("quad");
const registrar<primitives::polygon> register_polygon("polygon");
const registrar<primitives::line> register_line("line");
const registrar<primitives::polyline> register_polyline("polyline");
const registrar<primitives::extruded_polygon> register_extruded_polygon("extruded_polygon");
const registrar<primitives::mesh> register_mesh("mesh");
const registrar<primitives::path_extrusion> register_path_extrusion("path_extrusion");
const registrar<primitives::arrow> register_arrow("arrow");
const registrar<primitives::crosshair> register_crosshair("crosshair");
const registrar<primitives::custom> register_custom("custom");
const registrar<primitives::text> register_text("text");
const registrar<primitives::billboard> register_billboard("billboard");
const registrar<primitives::light> register_light("light");

}  // namespace
