// A primitive visitor that records which of its operations was called last.
#pragma once

#include <string>

#include "facet/primitives.h"

class recording_visitor : public primitives::primitive_visitor {
public:
    std::string last;
    void visit(primitives::basic_object&) override { last = "basic_object"; }
    void visit(primitives::box&) override { last = "box"; }
    void visit(primitives::cylinder&) override { last = "cylinder"; }
    void visit(primitives::cone&) override { last = "cone"; }
    void visit(primitives::quad&) override { last = "quad"; }
    void visit(primitives::polygon&) override { last = "polygon"; }
    void visit(primitives::line&) override { last = "line"; }
    void visit(primitives::polyline&) override { last = "polyline"; }
    void visit(primitives::extruded_polygon&) override { last = "extruded_polygon"; }
    void visit(primitives::mesh&) override { last = "mesh"; }
    void visit(primitives::path_extrusion&) override { last = "path_extrusion"; }
    void visit(primitives::arrow&) override { last = "arrow"; }
    void visit(primitives::custom&) override { last = "custom"; }
    void visit(primitives::light&) override { last = "light"; }
    void visit(primitives::text&) override { last = "text"; }
    void visit(primitives::billboard&) override { last = "billboard"; }
};
