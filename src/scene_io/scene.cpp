// The scene stream: the format's exception, the object factory, and reading and writing whole
// scenes with parent links resolved by name.
#include <algorithm>
#include <istream>
#include <memory>
#include <ostream>

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

void link_parents(std::vector<primitives::basic_object*>& objects) {
    for (primitives::basic_object* object : objects) {
        const std::string parentname = object->get_parentname();
        if (parentname == "_null_") continue;
        const auto parent = std::find_if(objects.begin(), objects.end(), parent_finder(parentname));
        if (parent == objects.end())
            throw std::runtime_error("Error in read_objects(): parent not found");
        object->set_parent(*parent);
    }
}

}  // namespace

void read_objects(std::vector<primitives::basic_object*>& objects, std::istream& is) {
    scene_io::expect(is, "beginscene");
    const auto& types = factory<primitives::basic_object, std::string>::instance();
    for (;;) {
        try {
            scene_io::expect(is, "primitive");
        } catch (const format_exception& e) {
            if (e.found() == "endscene") break;
            throw;
        }
        const std::string type = scene_io::read_word(is);
        std::unique_ptr<primitives::basic_object> object(types.create(type));
        if (!object) throw format_exception(type, "a scene object type");
        object->read(is);
        objects.push_back(object.release());
    }
    link_parents(objects);
}
