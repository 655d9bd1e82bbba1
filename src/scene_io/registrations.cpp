// The scene types known to the reader, registered at library load in this order.
#include "facet/primitives.h"
#include "facet/scene_io.h"

namespace {

using primitives::basic_object;

const factory_registrar<basic_object, basic_object> register_empty("empty");
const factory_registrar<basic_object, primitives::box> register_box("box");
const factory_registrar<basic_object, primitives::cylinder> register_cylinder("cylinder");
const factory_registrar<basic_object, primitives::cone> register_cone("cone");

}  // namespace
