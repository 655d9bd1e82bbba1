// The scene types known to the reader, registered at library load in this order.
#include "facet/primitives.h"
#include "facet/scene_io.h"

namespace {

using primitives::basic_object;

const factory_registrar<basic_object, basic_object> register_empty("empty");
const factory_registrar<basic_object, primitives::box> register_box("box");
const factory_registrar<basic_object, primitives::cylinder> register_cylinder("cylinder");
const factory_registrar<basic_object, primitives::cone> register_cone("cone");
const factory_registrar<basic_object, primitives::extruded_polygon> register_extruded_polygon(
    "extruded_polygon");
const factory_registrar<basic_object, primitives::mesh> register_mesh("mesh");
const factory_registrar<basic_object, primitives::path_extrusion> register_path_extrusion(
    "path_extrusion");
const factory_registrar<basic_object, primitives::custom> register_custom("custom");

}  // namespace
