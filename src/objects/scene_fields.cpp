// primitives::basic_object: the scene-file block around the per-type fields.
#include <istream>
#include <ostream>

#include "facet/objects.h"

namespace primitives {

void basic_object::write(std::ostream& os) const {
    os << "primitive " << class_id() << "\r\n";
    do_write(os);
    os << "endprimitive"
       << "\r\n";
}

void basic_object::read(std::istream& is) {
    do_read(is);
    set_dirty(true);
}

// The common fields of every object are not read or written yet; the per-type overrides
// call these first.
void basic_object::do_read(std::istream&) {}

void basic_object::do_write(std::ostream&) const {}

}  // namespace primitives
