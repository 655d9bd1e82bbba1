// The marker and annotation objects: arrow, crosshair, text, billboard and light.
#include "facet/primitives.h"

namespace primitives {

// ---- arrow ----

arrow::arrow() { set_ignore_for_shadows(true); }

void arrow::set_length(double length) {
    m_length = length;
    set_dirty(true);
}

void arrow::set_head_size(double head_base, double head_length) {
    m_head_base = head_base;
    m_head_length = head_length;
    set_dirty(true);
}

arrow* arrow::clone() const { return new arrow(*this); }

void arrow::accept(primitive_visitor& v) {
    v.visit(*this);
    set_dirty(true);
}

std::string arrow::class_id() const { return "arrow"; }

void arrow::update_mesh(indexedfaceset& target) const { target.create_mesh(*this); }

// ---- crosshair ----

crosshair::crosshair() { set_ignore_for_shadows(true); }

void crosshair::set_size(double size) {
    m_size = size;
    set_dirty(true);
}

crosshair* crosshair::clone() const { return new crosshair(*this); }

void crosshair::accept(primitive_visitor& v) {
    // The visitor has no crosshair operation.
    v.visit(static_cast<basic_object&>(*this));
    set_dirty(true);
}

std::string crosshair::class_id() const { return "crosshair"; }

void crosshair::update_mesh(indexedfaceset& target) const { target.create_mesh(*this); }

// ---- text ----

text::text() { set_ignore_for_shadows(true); }

void text::set_text(const std::string& t) {
    m_text = t;
    set_dirty(true);
}

text* text::clone() const { return new text(*this); }

void text::accept(primitive_visitor& v) {
    v.visit(*this);
    set_dirty(true);
}

std::string text::class_id() const { return "text"; }

// ---- billboard ----

billboard::billboard() { set_ignore_for_shadows(true); }

boundingbox billboard::get_boundingbox() const { return boundingbox(m_width, m_height, 0.0); }

billboard* billboard::clone() const { return new billboard(*this); }

void billboard::accept(primitive_visitor& v) { v.visit(*this); }

std::string billboard::class_id() const { return "billboard"; }

// ---- light ----

light::light() { set_ignore_for_shadows(true); }

light* light::clone() const { return new light(*this); }

void light::accept(primitive_visitor& v) {
    v.visit(*this);
    set_dirty(true);
}

std::string light::class_id() const { return "light"; }

}  // namespace primitives
