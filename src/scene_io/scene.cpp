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

enum class link_failure { none, parent_not_found, parent_cycle };

struct link_result {
    link_failure failure = link_failure::none;
    std::size_t index = 0;  // of the object whose link failed
};

constexpr std::ptrdiff_t no_parent = -1;
constexpr std::ptrdiff_t missing_parent = -2;

// For each object, the index of the first object of its stored parent name, no_parent for
// "_null_", missing_parent when no object has that name.
std::vector<std::ptrdiff_t> parent_targets(const object_list& objects) {
    std::unordered_map<std::string, std::ptrdiff_t> first_of_name;
    first_of_name.reserve(objects.size());
    for (std::size_t i = 0; i < objects.size(); ++i)
        first_of_name.emplace(objects[i]->get_name(), static_cast<std::ptrdiff_t>(i));
    std::vector<std::ptrdiff_t> targets(objects.size(), no_parent);
    for (std::size_t i = 0; i < objects.size(); ++i) {
        const std::string& parentname = objects[i]->get_parentname();
        if (parentname == "_null_") continue;
        const auto found = first_of_name.find(parentname);
        targets[i] = found == first_of_name.end() ? missing_parent : found->second;
    }
    return targets;
}

// Marks, for every cycle of the links, the member linked last in order: its link would close it.
std::vector<bool> cycle_closing_links(const std::vector<std::ptrdiff_t>& targets) {
    enum : unsigned char { unseen, on_path, done };
    std::vector<unsigned char> state(targets.size(), unseen);
    std::vector<std::size_t> position(targets.size());  // on the current path
    std::vector<bool> closing(targets.size(), false);
    std::vector<std::size_t> path;
    for (std::size_t i = 0; i < targets.size(); ++i) {
        path.clear();
        std::ptrdiff_t j = static_cast<std::ptrdiff_t>(i);
        while (j >= 0 && state[static_cast<std::size_t>(j)] == unseen) {
            state[static_cast<std::size_t>(j)] = on_path;
            position[static_cast<std::size_t>(j)] = path.size();
            path.push_back(static_cast<std::size_t>(j));
            j = targets[static_cast<std::size_t>(j)];
        }
        if (j >= 0 && state[static_cast<std::size_t>(j)] == on_path) {
            std::size_t last = 0;
            for (std::size_t k = position[static_cast<std::size_t>(j)]; k < path.size(); ++k)
                last = std::max(last, path[k]);
            closing[last] = true;
        }
        for (const std::size_t k : path) state[k] = done;
    }
    return closing;
}

// Links every object, in order, to the first object of its stored parent name, and stops at the
// first link that names no object or would close a cycle (the links before it are made).
// Linear in the number of objects.
link_result link_parents(object_list& objects) {
    const std::vector<std::ptrdiff_t> targets = parent_targets(objects);
    const std::vector<bool> closing = cycle_closing_links(targets);
    for (std::size_t i = 0; i < objects.size(); ++i) {
        if (targets[i] == no_parent) continue;
        if (targets[i] == missing_parent) return {link_failure::parent_not_found, i};
        if (closing[i]) return {link_failure::parent_cycle, i};
        objects[i]->set_parent(objects[static_cast<std::size_t>(targets[i])]);
    }
    return {};
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
    const link_result linked = link_parents(objects);
    if (linked.failure == link_failure::none) return;
    const primitives::basic_object& refused = *objects[linked.index];
    const bool missing = linked.failure == link_failure::parent_not_found;
    if (failure != nullptr) {
        failure->type = refused.class_id();
        failure->name = refused.get_name();
        failure->parent = refused.get_parentname();
        const std::size_t first_new = objects.size() - block_starts.size();
        failure->offset = linked.index >= first_new ? block_starts[linked.index - first_new] : -1;
        failure->parent_not_found = missing;
        failure->parent_cycle = !missing;
    }
    if (missing) throw std::runtime_error("Error in read_objects(): parent not found");
    throw std::runtime_error("Error in read_objects(): parent cycle at '" + refused.get_name() +
                             "'");
}
