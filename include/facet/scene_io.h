// Scene text files: a whole scene written to and read from a character stream.
//
// Layout: "beginscene", one block per object, "endscene", every line ending in "\r\n". A block is
// "primitive <type>", the common fields (name, parent, ownerid, mat_ref, position, orientation,
// brush, pen), the type's own fields and "endprimitive". Reals are written with the stream's own
// precision and flags (six significant digits by default). The reader is token based: layout is
// free on input, strings are single words, and every keyword is checked.
//
// Two quirks of the format are kept on purpose:
//   - The material reference is written with no line break after it, and read as every
//     character up to a NUL or the end of the stream. A file whose material references are not
//     NUL-terminated therefore does not read back: the reference swallows the rest.
//   - An extruded polygon writes two "offset" lines (extrusion, then its scaling) but reads one.
//
// Reading never trusts a count for allocation, never loops without consuming input, and
// rejects data that would later trip a precondition (a triangle naming a vertex beyond its
// block's vertex list). On any exception the objects read so far stay in the caller's vector.
#pragma once

#include <ios>
#include <iosfwd>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "facet/export.h"
#include "facet/objects.h"

/// The error of the scene format: a word was found where another was expected. Its message is
/// "ERROR: '" + found + "'expected" (the found word in quotes, no space before "expected").
class FACET_API format_exception : public std::runtime_error {
public:
    format_exception(const std::string& found, const std::string& expected);
    ~format_exception() override;

    /// The word the reader found (empty when the stream had failed or ended).
    const std::string& found() const { return m_found; }
    /// What the reader expected: a keyword, or a description of the value.
    const std::string& expected() const { return m_expected; }

private:
    std::string m_found;
    std::string m_expected;
};

/// A registry from keys to creation functions of objects derived from Base. The scene reader
/// uses the one instance for <primitives::basic_object, std::string>, which holds the seventeen
/// scene types in registration order: "empty", "box", "cylinder", "cone", "quad", "polygon",
/// "line", "polyline", "extruded_polygon", "mesh", "path_extrusion", "arrow", "crosshair",
/// "custom", "text", "billboard", "light".
template <class Base, class Key>
class factory {
public:
    /// A function returning a new default-constructed object; the caller owns it.
    using creator = Base* (*)();

    /// The process-wide instance, constructed on first use.
    static factory& instance();

    /// Registers `create` under `key`. Returns false, leaving the registry as it was, when the
    /// key is already registered.
    bool register_type(const Key& key, creator create) {
        for (const auto& entry : m_entries)
            if (entry.first == key) return false;
        m_entries.emplace_back(key, create);
        return true;
    }

    /// A new object of the type registered under `key` (the caller owns it), or null when the
    /// key is unknown.
    Base* create(const Key& key) const {
        for (const auto& entry : m_entries)
            if (entry.first == key) return entry.second();
        return nullptr;
    }

    /// The registered keys in registration order.
    std::vector<Key> keys() const {
        std::vector<Key> out;
        for (const auto& entry : m_entries) out.push_back(entry.first);
        return out;
    }

private:
    factory() = default;
    std::vector<std::pair<Key, creator>> m_entries;
};

/// The scene-object factory (defined in the library, shared with the host).
template <>
FACET_API factory<primitives::basic_object, std::string>&
factory<primitives::basic_object, std::string>::instance();

/// Registers Derived under a key at construction; one static registrar per type.
template <class Base, class Derived, class Key = std::string>
struct factory_registrar {
    explicit factory_registrar(const Key& key) {
        factory<Base, Key>::instance().register_type(
            key, [] { return static_cast<Base*>(new Derived); });
    }
};

/// True for an object whose name equals the held name.
struct FACET_API parent_finder {
    std::string name;
    explicit parent_finder(std::string n) : name(std::move(n)) {}
    bool operator()(const primitives::basic_object* object) const {
        return object != nullptr && object->get_name() == name;
    }
};

/// Writes "beginscene", each object's block in order, then "endscene". The objects are not
/// owned; null pointers are not allowed. The stream's state is not checked.
FACET_API void write_objects(const std::vector<primitives::basic_object*>& objects,
                             std::ostream& os);

/// Reads a scene and appends its objects (created with new; the caller owns them) to `objects`,
/// then links every object of the vector (including those that were there before) to the first
/// object whose name equals its stored parent name.
///
/// Throws format_exception when a keyword or the block end differs from the expected one (also
/// after a failed number extraction or at the end of the stream, then with an empty found word),
/// for an unknown type name (found = that name), and for a list element naming a vertex beyond
/// its block's vertex list. Throws std::runtime_error("Error in read_objects(): parent not
/// found") when a parent name matches no object, and std::runtime_error("Error in
/// read_objects(): parent cycle at '<name>'") when linking the object of that name to its parent
/// would close a cycle of parent links (of a cycle, the object that comes last in the vector is the
/// one refused). Links are made in vector order up to the failing one; linking is linear in the
/// number of objects. In every case the objects read before the failure stay in `objects`; the
/// block being read is discarded.
FACET_API void read_objects(std::vector<primitives::basic_object*>& objects, std::istream& is);

/// The rules read_objects follows.
enum class scene_dialect {
    /// The format with both of its quirks (the material reference runs to a NUL or the end of
    /// the stream; an extruded polygon's second "offset" line is not read).
    classic,
    /// Reads back what write_objects wrote: the material reference is the text after the space
    /// that follows "mat_ref", up to the "  position " of the same line (or up to the line's end,
    /// the "position" keyword then following as a word), and an extruded polygon's second
    /// "offset" line is read as its extrusion scaling. Every other rule is the classic one.
    round_trip,
};

/// Where read_objects stood when it failed, for messages that name the place.
struct FACET_API scene_read_position {
    /// The type of the block being read, or of the object whose parent was not found; empty
    /// when the failure lies outside any block.
    std::string type;
    /// That object's name once its name field was read, else empty.
    std::string name;
    /// The stream offset at which reading stopped, or where the block of the object whose parent
    /// was not found starts; -1 when the stream cannot tell (it is not seekable).
    std::streamoff offset = -1;
    /// The parent name of that object, when the failure is its link.
    std::string parent;
    /// True when the failure is a parent name that matches no object.
    bool parent_not_found = false;
    /// True when the failure is a parent link that would close a cycle.
    bool parent_cycle = false;
};

/// read_objects with a choice of dialect. When `failure` is not null and reading fails, it
/// receives the place of the failure before the exception is passed on, and the stream's error
/// state is cleared to tell the offset. Throws what read_objects throws.
FACET_API void read_objects(std::vector<primitives::basic_object*>& objects, std::istream& is,
                            scene_dialect dialect, scene_read_position* failure);
