// primitives::basic_object: the cached mesh and the virtual operations of the base type.
#include "facet/check.h"
#include "facet/objects.h"

namespace primitives {

namespace {

void push_texture_settings(const basic_object& o, indexedfaceset& target) {
    target.set_textured(o.texturing_enabled());
    target.set_texture_id(o.get_texture_id());
    target.set_normal_map_id(o.get_norm_map_id());
    target.set_texture_mode(o.get_texture_mode());
    target.set_texture_rotated(o.texture_rotated());
}

}  // namespace

indexedfaceset& basic_object::get_mesh() const {
    FACET_CHECK(m_mesh != 0);
    if (m_dirty) {
        update_mesh(*m_mesh);
        push_texture_settings(*this, *m_mesh);
        set_dirty(false);
    }
    m_mesh->set_edges_only(m_edges_only);
    m_mesh->set_marked(m_marked);
    return *m_mesh;
}

void basic_object::fill_mesh(indexedfaceset& target) const {
    update_mesh(target);
    push_texture_settings(*this, target);
}

basic_object* basic_object::clone() const { return new basic_object(*this); }

boundingbox basic_object::get_boundingbox() const { return boundingbox(); }

void basic_object::accept(primitive_visitor& v) {
    v.visit(*this);
    set_dirty(true);
}

std::string basic_object::class_id() const { return "empty"; }

void basic_object::update_mesh(indexedfaceset&) const {}

}  // namespace primitives
