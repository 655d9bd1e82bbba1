// facet::scene: owned objects in order, name lookup, and links that never dangle.
#include <algorithm>
#include <stdexcept>

#include "facet/check.h"
#include "facet/scene.h"
#include "host/hierarchy.h"

namespace facet {

namespace {

using primitives::basic_object;

// Detaches `object` from its parent and its children from it (they become roots).
void unlink(basic_object& object) {
    object.set_parent(nullptr);
    const std::vector<basic_object*> children = object.get_children();
    for (basic_object* child : children) child->set_parent(nullptr);
}

bool is_self_or_ancestor(const basic_object& candidate, const basic_object* from) {
    for (const basic_object* p = from; p != nullptr; p = p->get_parent())
        if (p == &candidate) return true;
    return false;
}

}  // namespace

scene::scene() = default;
scene::~scene() { clear(); }
scene::scene(scene&& other) noexcept
    : m_objects(std::move(other.m_objects)), m_index(std::move(other.m_index)) {
    other.m_objects.clear();
    other.m_index.clear();
}

scene& scene::operator=(scene&& other) noexcept {
    if (this != &other) {
        clear();
        m_objects = std::move(other.m_objects);
        m_index = std::move(other.m_index);
        other.m_objects.clear();
        other.m_index.clear();
    }
    return *this;
}

primitives::basic_object& scene::add(std::unique_ptr<basic_object> object, basic_object* parent) {
    if (!object) throw std::invalid_argument("scene::add: null object");
    if (contains(object.get())) {
        object.release();  // already owned by this scene: must not be destroyed twice
        throw std::invalid_argument("scene::add: the object is already in the scene");
    }
    if (parent != nullptr && !contains(parent))
        throw std::invalid_argument("scene::add: the parent of '" + object->get_name() +
                                    "' is not in the scene");
    basic_object* keep = object->get_parent();
    if (parent == nullptr && contains(keep)) parent = keep;
    object->set_parent(parent);
    m_index.emplace(object.get(), m_objects.size());
    m_objects.push_back(std::move(object));
    return *m_objects.back();
}

void scene::set_parent(basic_object& child, basic_object* parent) {
    if (!contains(&child))
        throw std::invalid_argument("scene::set_parent: '" + child.get_name() +
                                    "' is not in the scene");
    if (parent != nullptr && !contains(parent))
        throw std::invalid_argument("scene::set_parent: the parent '" + parent->get_name() +
                                    "' is not in the scene");
    if (parent != nullptr && is_self_or_ancestor(child, parent))
        throw std::invalid_argument("scene::set_parent: hanging '" + child.get_name() +
                                    "' under '" + parent->get_name() + "' would close a cycle");
    child.set_parent(parent);
}

bool scene::remove(const basic_object& object) { return release(object) != nullptr; }

std::unique_ptr<basic_object> scene::release(const basic_object& object) {
    if (!contains(&object)) return nullptr;
    const std::ptrdiff_t i = index_of(object);
    m_index.erase(&object);
    std::unique_ptr<basic_object> out = std::move(m_objects[static_cast<std::size_t>(i)]);
    m_objects.erase(m_objects.begin() + i);
    for (std::size_t k = static_cast<std::size_t>(i); k < m_objects.size(); ++k)
        m_index[m_objects[k].get()] = k;
    unlink(*out);
    return out;
}

void scene::clear() {
    // Parents before their children: a parent's destructor lets go of all its children at once,
    // so no child is looked up in its parent's list and clearing stays linear for any shape.
    std::vector<std::size_t> order;
    try {
        order = top_down_order(m_objects);
    } catch (const std::invalid_argument&) {  // a cycle linked behind the scene's back
        for (auto& object : m_objects) unlink(*object);
        for (std::size_t i = 0; i < m_objects.size(); ++i) order.push_back(i);
    }
    for (const std::size_t i : order) m_objects[i].reset();
    m_objects.clear();
    m_index.clear();
}

bool scene::contains(const basic_object* object) const {
    return object != nullptr && m_index.count(object) != 0;
}

scene scene::adopt(std::vector<std::unique_ptr<basic_object>> objects) {
    scene out;
    for (auto& object : objects) {
        if (!object) throw std::invalid_argument("scene::adopt: null object");
        if (!out.m_index.emplace(object.get(), out.m_index.size()).second) {
            object.release();  // the other entry owns it
            throw std::invalid_argument("scene::adopt: '" + object->get_name() +
                                        "' is given twice");
        }
    }
    out.m_objects = std::move(objects);
    for (const auto& object : out.m_objects)
        if (object->get_parent() != nullptr && !out.contains(object->get_parent()))
            throw std::invalid_argument("scene::adopt: the parent of '" + object->get_name() +
                                        "' is not among the objects");
    top_down_order(out.m_objects);  // throws on a cycle
    return out;
}

basic_object& scene::operator[](std::size_t i) const {
    FACET_CHECK(i < m_objects.size());
    return *m_objects[i];
}

basic_object* scene::find(const std::string& name) const {
    for (const auto& object : m_objects)
        if (object->get_name() == name) return object.get();
    return nullptr;
}

std::ptrdiff_t scene::index_of(const basic_object& object) const {
    const auto found = m_index.find(&object);
    return found == m_index.end() ? -1 : static_cast<std::ptrdiff_t>(found->second);
}

std::vector<basic_object*> scene::objects() const {
    std::vector<basic_object*> out;
    out.reserve(m_objects.size());
    for (const auto& object : m_objects) out.push_back(object.get());
    return out;
}

}  // namespace facet
