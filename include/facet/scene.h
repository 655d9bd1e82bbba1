// The host kit: a scene that owns its objects, scene files that read back what was written, and
// the world matrices and bounds of a whole hierarchy in one pass.
//
// Built on the public interface of the rest of the library only. A host that keeps its objects
// elsewhere can still use read_objects / write_objects directly; this layer adds ownership, name
// lookup, safe removal and the round trip.
//
// Round trip. write_scene writes exactly the bytes of write_objects with reals at 17 significant
// digits, and read_scene reads them back. Everything of an object survives bit for bit except
// what the format does not store or cannot carry:
//   - display flags (visible, backface culling, edges only, ghost, marked, hide when ghosted,
//     black in black-and-white mode, ignore for shadows), the smoothing and visible-edge
//     threshold angles, and the texture settings (texturing, texture and normal-map ids, texgen
//     and texture modes, rotation, scale, show in black-and-white): these take their defaults;
//   - the reflection and shininess of the brush colors, and the cylinder's division count;
//   - a string (name, owner id, mesh id, text) that is empty or holds white space: the reader
//     takes one word; a material reference that holds a line break or the text "  position ";
//   - non-finite reals (infinities and NaN are written but do not read back);
//   - the parent of an object whose parent is not written in the same file, and which of two
//     objects of the same name a child hangs under (always the first).
#pragma once

#include <cstddef>
#include <iosfwd>
#include <memory>
#include <stdexcept>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "facet/export.h"
#include "facet/geometry.h"
#include "facet/objects.h"

namespace facet {

/// An axis-aligned box in world space, as minimum and maximum corner. A default box is empty
/// (min above max) and absorbs the first point added to it.
struct FACET_API world_box {
    vector3d min{1.0, 1.0, 1.0};
    vector3d max{-1.0, -1.0, -1.0};

    /// True until a point has been added.
    bool empty() const { return min.x > max.x; }
    /// Widens the box to hold `p`; NaN coordinates do not widen it.
    void add(const vector3d& p);
    /// Widens the box to hold `other` (nothing for an empty one).
    void add(const world_box& other);
    /// max - min, or (0, 0, 0) when empty.
    vector3d size() const;
    /// The midpoint of min and max, or (0, 0, 0) when empty.
    vector3d center() const;
};

/// A hierarchy of scene objects that the scene owns, kept in the order they were added.
///
/// Ownership and links: every object belongs to at most one scene. Parents are set through the
/// scene (add, set_parent), which refuses a parent outside the scene and a link that would close
/// a cycle, so every parent of an object of the scene is in the scene. Removing an object
/// unlinks it from its parent and turns its children into roots: no pointer into a destroyed
/// object remains. A host that links objects behind the scene's back (basic_object::set_parent
/// directly) keeps that guarantee itself.
///
/// Not copyable; movable. Iteration yields the objects in order.
class FACET_API scene {
public:
    scene();
    ~scene();
    scene(scene&& other) noexcept;
    scene& operator=(scene&& other) noexcept;
    scene(const scene&) = delete;
    scene& operator=(const scene&) = delete;

    /// Appends `object`, taking ownership, and hangs it under `parent` (null: a root, but a
    /// parent the object already has is kept when it belongs to this scene). Returns the object.
    /// Throws std::invalid_argument for a null object, an object already in the scene, or a
    /// parent that is not in the scene; the object is then destroyed (ownership passed).
    primitives::basic_object& add(std::unique_ptr<primitives::basic_object> object,
                                  primitives::basic_object* parent = nullptr);

    /// As above, returning the object as its own type.
    template <class T>
    T& add(std::unique_ptr<T> object, primitives::basic_object* parent = nullptr) {
        T* typed = object.get();
        add(std::unique_ptr<primitives::basic_object>(std::move(object)), parent);
        return *typed;
    }

    /// Constructs a T from `args` and adds it as a root. Returns it.
    template <class T, class... Args>
    T& emplace(Args&&... args) {
        auto object = std::make_unique<T>(std::forward<Args>(args)...);
        T& ref = *object;
        add(std::move(object));
        return ref;
    }

    /// Hangs `child` under `parent` (null: makes it a root). Throws std::invalid_argument when
    /// either is not in the scene or when `parent` is `child` or one of its descendants; the
    /// hierarchy is then unchanged.
    void set_parent(primitives::basic_object& child, primitives::basic_object* parent);

    /// Destroys `object`; its children become roots, keeping their local transforms. Returns
    /// false, doing nothing, when the object is not in the scene.
    bool remove(const primitives::basic_object& object);

    /// Takes `object` out of the scene and hands it to the caller, unlinked from its parent and
    /// children (which become roots). Null when the object is not in the scene.
    std::unique_ptr<primitives::basic_object> release(const primitives::basic_object& object);

    /// Destroys every object.
    void clear();

    /// A scene made of `objects` as they are linked (by read_objects, for instance), in their
    /// order. Throws std::invalid_argument, destroying the objects, for a null object, an object
    /// given twice, a parent outside `objects`, or parent links that form a cycle (the message
    /// names an object of the cycle).
    static scene adopt(std::vector<std::unique_ptr<primitives::basic_object>> objects);

    std::size_t size() const { return m_objects.size(); }
    bool empty() const { return m_objects.empty(); }
    /// The object at position `i` in scene order; an index out of range fails a check.
    primitives::basic_object& operator[](std::size_t i) const;

    /// The first object (in scene order) called `name`, or null.
    primitives::basic_object* find(const std::string& name) const;
    /// The position of `object` in scene order, or -1 when it is not in the scene. Constant time.
    std::ptrdiff_t index_of(const primitives::basic_object& object) const;

    /// The objects in scene order, as the plain pointers write_objects takes. Still owned by
    /// the scene.
    std::vector<primitives::basic_object*> objects() const;

    /// The object-to-world matrix of every object, in scene order, computed in one top-down
    /// pass: world = parent's world × translation(position) × rotation(orientation). The bits
    /// are those of primitives::calc_transformation_matrix for each object.
    std::vector<matrix44d> world_matrices() const;

    /// The world-space bounds of every object's mesh (all its vertices through its world
    /// matrix), in scene order; an object without vertices gives an empty box. Builds the meshes
    /// of dirty objects.
    std::vector<world_box> world_bounds() const;
    /// The union of world_bounds() over the objects whose mesh has vertices.
    world_box bounds() const;

    // ---- iteration over the objects, in scene order ----
    class const_iterator {
    public:
        using value_type = primitives::basic_object;
        using reference = primitives::basic_object&;
        using difference_type = std::ptrdiff_t;
        reference operator*() const { return **m_it; }
        primitives::basic_object* operator->() const { return m_it->get(); }
        const_iterator& operator++() {
            ++m_it;
            return *this;
        }
        bool operator==(const const_iterator& o) const { return m_it == o.m_it; }
        bool operator!=(const const_iterator& o) const { return m_it != o.m_it; }

    private:
        friend class scene;
        using base = std::vector<std::unique_ptr<primitives::basic_object>>::const_iterator;
        explicit const_iterator(base it) : m_it(it) {}
        base m_it;
    };
    const_iterator begin() const { return const_iterator(m_objects.begin()); }
    const_iterator end() const { return const_iterator(m_objects.end()); }

private:
    bool contains(const primitives::basic_object* object) const;

    std::vector<std::unique_ptr<primitives::basic_object>> m_objects;
    std::unordered_map<const primitives::basic_object*, std::size_t> m_index;  // of m_objects
};

/// A scene file that could not be read: what() is "<source>:<line>: <type> '<name>': <problem>"
/// ("scene.txt:12: box 'lid': expected 'height', found 'x'"); the object part is left out when
/// the failure lies outside any object block, the line when it is not known.
class FACET_API scene_error : public std::runtime_error {
public:
    scene_error(const std::string& message, std::size_t line);
    ~scene_error() override;
    /// The 1-based line the reader stood on, or 0 when unknown.
    std::size_t line() const { return m_line; }

private:
    std::size_t m_line;
};

/// Writes `s` as write_objects does, with reals at 17 significant digits so that they read back
/// exactly. The stream's precision is restored afterwards.
FACET_API void write_scene(const scene& s, std::ostream& os);

/// Writes `s` to the file `path`: first to a temporary file beside it, renamed over `path` when
/// complete, so a failure never leaves a partial file. Throws std::runtime_error naming the path
/// when the file cannot be written.
FACET_API void write_scene(const scene& s, const std::string& path);

/// Reads a scene written by write_scene (or write_objects) from `is`, with the format's rules
/// except the two that keep a written scene from reading back: the material reference ends
/// where the "  position " keyword of its line begins, and an extruded polygon's second "offset"
/// line is its extrusion scaling. `source` names the stream in error messages. Parents are
/// linked by name as read_objects links them. Throws scene_error on any failure; nothing is
/// returned then.
FACET_API scene read_scene(std::istream& is, const std::string& source = "scene");

/// Reads the scene file `path` (see above). Throws scene_error, also when the file cannot be
/// opened ("<path>: cannot open: <reason>").
FACET_API scene read_scene(const std::string& path);

}  // namespace facet
