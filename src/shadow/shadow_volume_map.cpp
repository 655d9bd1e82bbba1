// shadow_volume_map: the cache of shadow volumes and its mark-and-sweep cycle.
//
// The sweep deletes the first volume of records that it keeps (the walk over records is shared
// with the deletion loop). Such a slot keeps its pointer, so each record lists its deleted slots
// with the light index their volume had: they are never dereferenced or deleted again, and an
// add with that light index refills them.
#include <algorithm>
#include <utility>

#include "facet/check.h"
#include "facet/shadow_volume.h"

namespace {

using record = primitive_shadow_record;

// The entry of `slot` in the record's deleted list, or null while the slot holds a live volume.
const record::deleted_slot* find_deleted(const record& r, std::size_t slot) {
    for (const record::deleted_slot& d : r.deleted)
        if (d.slot == slot) return &d;
    return nullptr;
}

void forget_deleted(record& r, std::size_t slot) {
    r.deleted.erase(
        std::remove_if(r.deleted.begin(), r.deleted.end(),
                       [slot](const record::deleted_slot& d) { return d.slot == slot; }),
        r.deleted.end());
}

// Deletes the live volume of `slot` (nothing if it is already deleted) and lists every live slot
// that holds the same pointer as deleted.
void delete_slot(record& r, std::size_t slot) {
    if (find_deleted(r, slot) != nullptr) return;
    shadow_volume* const volume = r.volumes[slot];
    const std::uint32_t light_index = volume->get_light_index();
    for (std::size_t j = 0; j < r.volumes.size(); ++j)
        if (r.volumes[j] == volume && find_deleted(r, j) == nullptr)
            r.deleted.push_back({j, light_index});
    delete volume;
}

// Deletes every live volume of the record once.
void delete_live_volumes(record& r) {
    std::vector<shadow_volume*> live;
    live.reserve(r.volumes.size());
    for (std::size_t j = 0; j < r.volumes.size(); ++j)
        if (find_deleted(r, j) == nullptr) live.push_back(r.volumes[j]);
    std::sort(live.begin(), live.end());
    live.erase(std::unique(live.begin(), live.end()), live.end());
    for (shadow_volume* volume : live) delete volume;
    r.volumes.clear();
    r.deleted.clear();
}

}  // namespace

shadow_volume_map::~shadow_volume_map() {
    for (auto& entry : m_records) delete_live_volumes(entry.second);
}

void shadow_volume_map::add_shadow_volume(shadow_volume* volume) {
    FACET_CHECK(volume != 0);
    const primitives::basic_object* const master = volume->get_master_primitive();
    const auto found = m_records.find(master);
    if (found == m_records.end()) {
        record r;
        r.volumes.push_back(volume);
        r.used = true;
        m_records.emplace(master, std::move(r));
        return;
    }

    record& r = found->second;
    const std::uint32_t light_index = volume->get_light_index();
    for (std::size_t j = 0; j < r.volumes.size(); ++j) {
        if (const record::deleted_slot* d = find_deleted(r, j)) {
            if (d->light_index != light_index) continue;
        } else if (r.volumes[j]->get_light_index() != light_index) {
            continue;
        } else if (r.volumes[j] == volume) {
            return;
        } else {
            delete_slot(r, j);
        }
        forget_deleted(r, j);
        r.volumes[j] = volume;
        return;
    }
    r.volumes.push_back(volume);
}

std::vector<shadow_volume*> shadow_volume_map::get_primitive_shadow_volumes(
    const primitives::basic_object* primitive) {
    std::vector<shadow_volume*> volumes;
    const auto found = m_records.find(primitive);
    if (found == m_records.end()) return volumes;
    record& r = found->second;
    r.used = true;
    volumes.reserve(r.volumes.size());
    for (std::size_t j = 0; j < r.volumes.size(); ++j)
        if (find_deleted(r, j) == nullptr) volumes.push_back(r.volumes[j]);
    return volumes;
}

shadow_volume* shadow_volume_map::get_shadow_volume(const primitives::basic_object* primitive,
                                                    std::uint32_t light_index) {
    const auto found = m_records.find(primitive);
    if (found == m_records.end()) return nullptr;
    record& r = found->second;
    r.used = true;
    for (std::size_t j = 0; j < r.volumes.size(); ++j)
        if (find_deleted(r, j) == nullptr && r.volumes[j]->get_light_index() == light_index)
            return r.volumes[j];
    return nullptr;
}

void shadow_volume_map::reset_records() {
    for (auto& entry : m_records) entry.second.used = false;
}

void shadow_volume_map::remove_unused_volumes() {
    std::vector<const primitives::basic_object*> unused;
    auto it = m_records.begin();
    while (it != m_records.end()) {
        if (!it->second.used) {
            unused.push_back(it->first);
            // The first volume of this record and of each following one goes, until a record
            // without volumes; reaching the end of the map ends the sweep.
            const std::size_t i = 0;
            while (it->second.volumes.size() > i) {
                delete_slot(it->second, 0);
                if (++it == m_records.end()) break;
            }
            if (it == m_records.end()) break;
        }
        ++it;
    }
    for (const primitives::basic_object* key : unused) {
        const auto found = m_records.find(key);
        delete_live_volumes(found->second);
        m_records.erase(found);
    }
}

const primitive_shadow_record* shadow_volume_map::find_record(
    const primitives::basic_object* primitive) const {
    const auto found = m_records.find(primitive);
    return found == m_records.end() ? nullptr : &found->second;
}
