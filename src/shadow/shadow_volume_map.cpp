// shadow_volume_map: the cache of shadow volumes and its mark-and-sweep cycle.
//
// The sweep deletes the first volume of records that it keeps (the walk over records is shared
// with the deletion loop). Such a slot keeps its pointer, so each record lists its deleted slots
// with the light index their volume had: they are never dereferenced or deleted again, and an
// add with that light index refills them.
//
// The records lie in one vector sorted by master, found through an open-addressing hash index of
// their positions; records added during a frame are appended and sorted in by the sweep, which
// is the only operation that needs the key order and the only one that erases.
#include <algorithm>
#include <cstdint>
#include <functional>
#include <utility>

#include "facet/check.h"
#include "facet/shadow_volume.h"

namespace {

using record = primitive_shadow_record;
using master_ptr = const primitives::basic_object*;

// The first index slot to probe for `master` in a table of mask + 1 slots (a power of two):
// Fibonacci hashing of the address.
std::size_t home_slot(master_ptr master, std::size_t mask) {
    const auto key = static_cast<std::uint64_t>(reinterpret_cast<std::uintptr_t>(master));
    return static_cast<std::size_t>((key * 0x9E3779B97F4A7C15ull) >> 32) & mask;
}

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
    for (entry& e : m_records) delete_live_volumes(e.record);
}

std::uint32_t shadow_volume_map::find_position(master_ptr master) const {
    if (m_index.empty()) return no_entry;
    const std::size_t mask = m_index.size() - 1;
    for (std::size_t i = home_slot(master, mask);; i = (i + 1) & mask) {
        const std::uint32_t p = m_index[i];
        if (p == no_entry || m_records[p].master == master) return p;
    }
}

shadow_volume_map::entry* shadow_volume_map::find_entry(master_ptr master) {
    // The entry found last (an add after a lookup of the same object), then the entry that was
    // asked for at this point of the last frame: a host mostly asks in the same order every
    // frame. The hash index only when neither is it.
    const std::size_t n = m_records.size();
    std::size_t p = m_hint;
    if (p < n && m_records[p].master == master) return &m_records[p];
    p = m_cursor < m_last_frame.size() ? m_last_frame[m_cursor] : no_entry;
    if (!(p < n && m_records[p].master == master)) {
        p = find_position(master);
        if (p == no_entry) return nullptr;
    }
    // A host that never resets its records is not followed any further.
    if (m_this_frame.size() < 4 * n + 64) m_this_frame.push_back(static_cast<std::uint32_t>(p));
    ++m_cursor;
    m_hint = p;
    prefetch_ahead();
    return &m_records[p];
}

void shadow_volume_map::prefetch_ahead() const {
    // Asks for the memory that the lookups a few steps ahead in the last frame's order will
    // read, each step further out one link earlier in the chain: the entry, then its list of
    // volumes (read from the entry fetched a step before), then the first volume (its light
    // index, which set_light may change at any time and so is not kept here).
    constexpr std::size_t step = 8;
    const auto ahead = [this](std::size_t k) -> const entry* {
        k += m_cursor;
        if (k >= m_last_frame.size() || m_last_frame[k] >= m_records.size()) return nullptr;
        return &m_records[m_last_frame[k]];
    };
    if (const entry* e = ahead(3 * step)) {
        __builtin_prefetch(e);
        __builtin_prefetch(reinterpret_cast<const char*>(e + 1) - 1);
    }
    if (const entry* e = ahead(2 * step)) __builtin_prefetch(e->record.volumes.data());
    if (const entry* e = ahead(step); e != nullptr && !e->record.volumes.empty()) {
        const auto* const volume = reinterpret_cast<const char*>(e->record.volumes[0]);
        __builtin_prefetch(volume);
        __builtin_prefetch(volume + sizeof(shadow_volume) - 1);
    }
}

void shadow_volume_map::index_entry(std::uint32_t position) {
    const std::size_t mask = m_index.size() - 1;
    master_ptr const master = m_records[position].master;
    std::size_t i = home_slot(master, mask);
    while (m_index[i] != no_entry) i = (i + 1) & mask;
    m_index[i] = position;
}

void shadow_volume_map::rebuild_index() {
    std::size_t size = 16;
    while (size < 2 * m_records.size()) size *= 2;
    m_index.assign(size, no_entry);
    for (std::size_t p = 0; p < m_records.size(); ++p) index_entry(static_cast<std::uint32_t>(p));
}

void shadow_volume_map::add_shadow_volume(shadow_volume* volume) {
    FACET_CHECK(volume != 0);
    master_ptr const master = volume->get_master_primitive();
    entry* const found = find_entry(master);
    if (found == nullptr) {
        entry e{master, record()};
        e.record.volumes.push_back(volume);
        e.record.used = true;
        m_records.push_back(std::move(e));
        if (2 * m_records.size() > m_index.size())
            rebuild_index();
        else
            index_entry(static_cast<std::uint32_t>(m_records.size() - 1));
        return;
    }

    record& r = found->record;
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

std::vector<shadow_volume*> shadow_volume_map::get_primitive_shadow_volumes(master_ptr primitive) {
    std::vector<shadow_volume*> volumes;
    entry* const found = find_entry(primitive);
    if (found == nullptr) return volumes;
    record& r = found->record;
    r.used = true;
    volumes.reserve(r.volumes.size());
    for (std::size_t j = 0; j < r.volumes.size(); ++j)
        if (find_deleted(r, j) == nullptr) volumes.push_back(r.volumes[j]);
    return volumes;
}

shadow_volume* shadow_volume_map::get_shadow_volume(master_ptr primitive,
                                                    std::uint32_t light_index) {
    entry* const found = find_entry(primitive);
    if (found == nullptr) return nullptr;
    record& r = found->record;
    r.used = true;
    for (std::size_t j = 0; j < r.volumes.size(); ++j)
        if (find_deleted(r, j) == nullptr && r.volumes[j]->get_light_index() == light_index)
            return r.volumes[j];
    return nullptr;
}

void shadow_volume_map::reset_records() {
    for (entry& e : m_records) e.record.used = false;
    m_last_frame.swap(m_this_frame);
    m_this_frame.clear();
    m_cursor = 0;
}

void shadow_volume_map::remove_unused_volumes() {
    const auto by_master = [](const entry& a, const entry& b) {
        return std::less<master_ptr>()(a.master, b.master);
    };
    bool moved = m_sorted < m_records.size();
    if (moved) {
        const auto tail = m_records.begin() + static_cast<std::ptrdiff_t>(m_sorted);
        std::sort(tail, m_records.end(), by_master);
        std::inplace_merge(m_records.begin(), tail, m_records.end(), by_master);
    }

    // The walk in key order; `unused` marks the records to erase.
    std::vector<bool> unused(m_records.size(), false);
    bool any_unused = false;
    std::size_t it = 0;
    const std::size_t end = m_records.size();
    while (it != end) {
        if (!m_records[it].record.used) {
            unused[it] = true;
            any_unused = true;
            // The first volume of this record and of each following one goes, until a record
            // without volumes; reaching the end of the map ends the sweep.
            const std::size_t i = 0;
            while (m_records[it].record.volumes.size() > i) {
                delete_slot(m_records[it].record, 0);
                if (++it == end) break;
            }
            if (it == end) break;
        }
        ++it;
    }
    if (any_unused) {
        std::size_t kept = 0;
        for (std::size_t p = 0; p < end; ++p) {
            if (unused[p]) {
                delete_live_volumes(m_records[p].record);
            } else {
                if (kept != p) m_records[kept] = std::move(m_records[p]);
                ++kept;
            }
        }
        m_records.erase(m_records.begin() + static_cast<std::ptrdiff_t>(kept), m_records.end());
        moved = true;
    }
    m_sorted = m_records.size();
    if (moved) {
        rebuild_index();
        m_this_frame.clear();  // the positions found this frame have changed
    }
}

const primitive_shadow_record* shadow_volume_map::find_record(master_ptr primitive) const {
    const std::uint32_t p = find_position(primitive);
    return p == no_entry ? nullptr : &m_records[p].record;
}
