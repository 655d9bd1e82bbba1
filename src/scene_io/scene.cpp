// The scene stream: the format's exception, the object factory, and reading and writing whole
// scenes with parent links resolved by name.
#include <algorithm>
#include <istream>
#include <memory>
#include <ostream>
#include <unordered_map>

#include "facet/scene_io.h"
#include "scene_io/tokens.h"

format_exception::format_exception(const std::string& found, const std::string& expected)
    : std::runtime_error("ERROR: '" + found + "'expected"), m_found(found), m_expected(expected) {}

format_exception::~format_exception() = default;

template <>
factory<primitives::basic_object, std::string>&
factory<primitives::basic_object, std::string>::instance() {
    static factory registry;
    return registry;
}

void write_objects(const std::vector<primitives::basic_object*>& objects, std::ostream& os) {
    os << "beginscene"
       << "\r\n";
    for (const primitives::basic_object* object : objects) object->write(os);
    os << "endscene"
       << "\r\n";
}

namespace {

using object_list = std::vector<primitives::basic_object*>;

// Links every object to the first object of its stored parent name. Returns the index of the
// first object whose parent is missing (the objects before it are linked), or objects.size().
std::size_t link_parents(object_list& objects) {
    std::unordered_map<std::string, primitives::basic_object*> first_of_name;
    first_of_name.reserve(objects.size());
    for (primitives::basic_object* object : objects)
        first_of_name.emplace(object->get_name(), object);  // keeps the first of a name
    for (std::size_t i = 0; i < objects.size(); ++i) {
        const std::string& parentname = objects[i]->get_parentname();
        if (parentname == "_null_") continue;
        const auto parent = first_of_name.find(parentname);
        if (parent == first_of_name.end()) return i;
        objects[i]->set_parent(parent->second);
    }
    return objects.size();
}

std::streamoff offset_of(std::istream& is) {
    is.clear();
    return static_cast<std::streamoff>(is.tellg());
}

}  // namespace

void read_objects(object_list& objects, std::istream& is) {
    read_objects(objects, is, scene_dialect::classic, nullptr);
}

void read_objects(object_list& objects, std::istream& is, scene_dialect dialect,
                  scene_read_position* failure) {
    const scene_io::round_trip_guard dialect_guard(is, dialect == scene_dialect::round_trip);
    const auto& types = factory<primitives::basic_object, std::string>::instance();
    std::vector<std::streamoff> block_starts;  // of the objects appended, when failure asks
    std::unique_ptr<primitives::basic_object> object;
    std::string type;
    try {
        scene_io::expect(is, "beginscene");
        for (;;) {
            const std::streamoff start = failure != nullptr ? std::streamoff(is.tellg()) : -1;
            try {
                scene_io::expect(is, "primitive");
            } catch (const format_exception& e) {
                if (e.found() == "endscene") break;
                throw;
            }
            type = scene_io::read_word(is);
            object.reset(types.create(type));
            if (!object) throw format_exception(type, "a scene object type");
            object->read(is);
            objects.push_back(object.release());
            type.clear();
            if (failure != nullptr) block_starts.push_back(start);
        }
    } catch (...) {
        if (failure != nullptr) {
            failure->type = object ? type : std::string();
            failure->name = object ? object->get_name() : std::string();
            if (object && failure->name == "*unknown*") failure->name.clear();
            failure->offset = offset_of(is);
        }
        throw;
    }
    const std::size_t orphan = link_parents(objects);
    if (orphan == objects.size()) return;
    if (failure != nullptr) {
        failure->type = objects[orphan]->class_id();
        failure->name = objects[orphan]->get_name();
        const std::size_t first_new = objects.size() - block_starts.size();
        failure->offset = orphan >= first_new ? block_starts[orphan - first_new] : -1;
        failure->parent_not_found = true;
    }
    throw std::runtime_error("Error in read_objects(): parent not found");
}
