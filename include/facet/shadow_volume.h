// Shadow volumes of scene objects and the cache that owns them.
//
//   shadow_volume            the volume that one scene object (its master) casts for one point
//                            light, in the master's object space, rebuilt when the light moves
//   shadow_volume_map        files volumes by master and light index, owns them and sweeps the
//                            volumes of objects that were not asked for during a frame
//   primitive_shadow_record  the map's entry for one master
//
// A volume is open: one quad per silhouette edge of the master's mesh as seen from the light,
// pulled 100000.0 units away from the light (standing in for infinity), with no caps. The host
// draws it with the master's transformation (primitives::calc_transformation_matrix).
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "facet/export.h"
#include "facet/geometry.h"
#include "facet/ifs.h"

namespace primitives {
class basic_object;
}  // namespace primitives

/// The shadow volume of one scene object (the master) for one point light.
///
/// The volume keeps the light's world position, a host-defined light value that is only
/// compared, the host's light index and an active flag that it only stores. Its mesh is built
/// from the master's mesh in the master's object space. Not copyable.
class FACET_API shadow_volume {
public:
    /// Stores the master (not owned; it must outlive the volume), the light position in world
    /// coordinates, the light value and the light index, and starts active with an empty mesh:
    /// nothing is built until a set_light with a different light or value, or rebuild_mesh.
    shadow_volume(primitives::basic_object* master, const vector3d& light, double light_value,
                  std::uint32_t light_index);
    ~shadow_volume();
    shadow_volume(const shadow_volume&) = delete;
    shadow_volume& operator=(const shadow_volume&) = delete;

    /// The volume's mesh, owned by the volume. Every rebuild replaces it by a new face set, so
    /// the reference must not be kept across set_light or rebuild_mesh. Fails "m_mesh != 0" if
    /// there is no mesh (only after a rebuild that ran out of memory).
    indexedfaceset& get_mesh() const;

    /// The flag given to the last set_light (true after construction); stored only.
    bool active() const { return m_active; }
    /// The host's number for the light; the key of the volume in a shadow_volume_map.
    std::uint32_t get_light_index() const { return m_light_index; }
    /// The object that casts the shadow (not owned).
    primitives::basic_object* get_master_primitive() const { return m_master; }
    /// The light position in world coordinates.
    const vector3d& get_light() const { return m_light; }
    /// The host-defined value that comes with the light position.
    double get_light_value() const { return m_light_value; }

    /// Stores the light index and the active flag. Then, if a coordinate of `light` or the
    /// value differs from the stored one (exact comparison; a NaN always differs), stores both
    /// and calls rebuild_mesh; otherwise nothing is rebuilt. The failures of rebuild_mesh
    /// propagate.
    void set_light(const vector3d& light, const double& light_value, std::uint32_t light_index,
                   bool active);

    /// Replaces the mesh by a new one built from the master's current mesh (its get_mesh, which
    /// rebuilds a dirty master) and the light taken into the master's object space:
    ///
    /// - a half-edge h with twin t is a silhouette edge when, with d the unit direction from the
    ///   light to the edge's midpoint, its own face is lit or edge-on (normal · d <= 0.0) and
    ///   its twin's face is turned away (normal · d > 0.0), so each silhouette edge is taken
    ///   once, in its direction on the lit face; open edges never count;
    /// - the k-th silhouette edge A → B gives vertices 4k = A, 4k + 1 = B, 4k + 2 = B' and
    ///   4k + 3 = A', where P' = P + 100000.0 · unit(P − light) (a point at the light stays
    ///   where it is), and two faces. With C the third corner of the lit face, c = unit(C − A),
    ///   s = unit(sum of the two face normals) and q = unit((A' − A) × (B − A)), the faces are
    ///   (4k, 4k + 1, 4k + 2) and (4k, 4k + 2, 4k + 3) when (q · s < 0 and s · c <= 0) or
    ///   (q · s >= 0 and s · c > 0), else (4k, 4k + 2, 4k + 1) and (4k, 4k + 3, 4k + 2); on an
    ///   edge where the surface bends outwards their normals point away from the master;
    /// - one style "std" with opaque red brush and pen, every face with style 0 and that brush,
    ///   backface culling on, then normals, half-edges, box texture coordinates and tangents.
    ///
    /// With no silhouette edge the mesh has no vertices and no faces and one style. Degenerate
    /// quads (a vertex at the light, an edge in line with the light) are kept, with zero
    /// normals. Fails "m_master != 0" without a master. If the master's world matrix is
    /// singular, EMatrix ("Determinant is 0, cannot create inverse") propagates and the volume
    /// is left with a new empty mesh.
    void rebuild_mesh();

private:
    primitives::basic_object* m_master;
    std::unique_ptr<indexedfaceset> m_mesh;
    vector3d m_light;
    double m_light_value;
    std::uint32_t m_light_index;
    bool m_active = true;
};

/// The shadow volumes filed for one scene object.
struct FACET_API primitive_shadow_record {
    /// A slot of `volumes` whose volume has already been deleted by the sweep (see
    /// shadow_volume_map::remove_unused_volumes), with the light index that volume had.
    struct deleted_slot {
        std::size_t slot = 0;
        std::uint32_t light_index = 0;
    };

    /// The volumes in the order of their addition, at most one per light index; owned by the
    /// map. A slot listed in `deleted` holds the pointer of a volume that no longer exists.
    std::vector<shadow_volume*> volumes;
    /// Marked in the current cycle (asked for since the last reset, or created since then).
    bool used = false;
    /// The slots of `volumes` whose volumes were deleted by a sweep while the record stayed.
    std::vector<deleted_slot> deleted;
};

/// The cache of shadow volumes across frames, keyed by master object (compared as a pointer
/// value) and light index. The map owns every volume added to it and deletes it when it is
/// replaced, swept, or when the map is destroyed. Not copyable.
///
/// Per frame the host runs a mark-and-sweep cycle: reset_records, then get_shadow_volume or
/// get_primitive_shadow_volumes for the objects it still needs (which marks their records),
/// add_shadow_volume for the missing ones, then remove_unused_volumes.
///
/// Speed: a lookup costs about the same whatever the number of records. The map remembers the
/// order of the last frame's lookups (4 bytes each) and, when the host asks in the same order
/// again, finds each record without a search and fetches the memory of the next ones ahead, so
/// such frames keep their cost per object also when the volumes no longer fit in the caches.
class FACET_API shadow_volume_map {
public:
    shadow_volume_map() = default;
    /// Deletes every volume still filed, each once; volumes already deleted by a sweep are not
    /// deleted again.
    ~shadow_volume_map();
    shadow_volume_map(const shadow_volume_map&) = delete;
    shadow_volume_map& operator=(const shadow_volume_map&) = delete;

    /// Files `volume` under its master and takes ownership. A master without a record gets a new
    /// record holding `volume`, marked used so that it survives this frame's sweep. Otherwise the
    /// first slot with the volume's light index receives it (the volume there is deleted unless
    /// it is `volume` itself; a slot whose volume a sweep deleted is refilled without a second
    /// delete); with no such slot it is appended. A null `volume` fails "volume != 0".
    void add_shadow_volume(shadow_volume* volume);

    /// The volumes filed for `primitive` in the order of their addition (still owned by the map;
    /// slots whose volume a sweep deleted are left out), or an empty vector when it has no
    /// record. Marks a found record used; adds no record.
    std::vector<shadow_volume*> get_primitive_shadow_volumes(
        const primitives::basic_object* primitive);

    /// The first volume of `primitive` whose light index is `light_index` (owned by the map), or
    /// null. Marks a found record used, also when it holds no volume of that light. A slot whose
    /// volume a sweep deleted is skipped.
    shadow_volume* get_shadow_volume(const primitives::basic_object* primitive,
                                     std::uint32_t light_index);

    /// Clears the used mark of every record.
    void reset_records();

    /// The sweep. Walks the records in key order; at a record that is not used, it lists the
    /// record for removal and deletes the first volume of that record and of each following
    /// record, used or not, until a record without volumes or the end of the map is reached; the
    /// walk then resumes after that record. Finally the listed records are erased and their
    /// remaining volumes deleted. A later record whose first volume was deleted this way keeps
    /// its entry with that slot listed in its `deleted`: the slot is never deleted again, is
    /// skipped by the lookups, and is refilled by an add with the same light index.
    void remove_unused_volumes();

    /// The number of records (masters with an entry).
    std::size_t num_records() const { return m_records.size(); }
    /// The record of `primitive`, or null; does not mark it. The pointer stays valid until the
    /// next add_shadow_volume or remove_unused_volumes.
    const primitive_shadow_record* find_record(const primitives::basic_object* primitive) const;

private:
    struct entry {
        const primitives::basic_object* master;
        primitive_shadow_record record;
    };
    // The value of an empty slot of the hash index.
    static constexpr std::uint32_t no_entry = 0xffffffffu;

    // The position of `master`'s entry in m_records, or no_entry.
    std::uint32_t find_position(const primitives::basic_object* master) const;
    // The entry of `master`, or null.
    entry* find_entry(const primitives::basic_object* master);
    // Asks the processor for the memory of the lookups ahead in the last frame's order.
    void prefetch_ahead() const;
    // Files position `position` of m_records under its master in the index (it must be absent).
    void index_entry(std::uint32_t position);
    // Refills the index from m_records, with room for twice as many entries.
    void rebuild_index();

    // The records sorted by master (compared as pointer values) up to m_sorted, then the records
    // added since the last sweep, which sorts them in. Lookups go through m_index, an open-
    // addressing hash table of the records' positions (no_entry where empty; the master is
    // compared in the record) of a power-of-two size at least twice the number of records, so
    // each operation of a frame costs the same whatever the number of records.
    std::vector<entry> m_records;
    std::size_t m_sorted = 0;
    std::vector<std::uint32_t> m_index;
    // The positions of the entries found by the lookups of the last frame (between two
    // reset_records) and of this one, in order (4 bytes per lookup, at most about four per
    // record); the number of this frame's lookups; the position found last. A lookup tries the
    // last one and the one at its place in the last frame's order before the index.
    std::vector<std::uint32_t> m_last_frame;
    std::vector<std::uint32_t> m_this_frame;
    std::size_t m_cursor = 0;
    std::size_t m_hint = 0;
};
