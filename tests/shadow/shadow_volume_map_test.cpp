// shadow_volume_map: filing, replacing, lookups and the mark-and-sweep cycle (ASan sees leaks
// and second deletes of the volumes handed to the maps here).
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <random>

#include "facet/objects.h"
#include "facet/shadow_volume.h"

using primitives::basic_object;
using volumes = std::vector<shadow_volume*>;

namespace {

shadow_volume* volume(basic_object* master, std::uint32_t light_index) {
    return new shadow_volume(master, vector3d(1.0, 2.0, 3.0), 0.0, light_index);
}

// Three masters in the map's key order (their addresses ascending), and a map.
struct three_masters {
    basic_object storage[3];
    std::vector<basic_object*> by_key = {&storage[0], &storage[1], &storage[2]};
    shadow_volume_map map;
    three_masters() { std::sort(by_key.begin(), by_key.end(), std::less<basic_object*>()); }
    basic_object* operator[](std::size_t i) const { return by_key[i]; }
    // A frame that asks for the masters listed (their volumes of `light`), then sweeps.
    void frame(std::initializer_list<std::size_t> asked, std::uint32_t light = 0) {
        map.reset_records();
        for (std::size_t i : asked) map.get_shadow_volume(by_key[i], light);
        map.remove_unused_volumes();
    }
};

}  // namespace

TEST(ShadowVolumeMap, AddReplaceLookUpAndSweepUnused) {
    three_masters m;
    shadow_volume *a0 = volume(m[0], 0), *a1 = volume(m[0], 1), *a0_new = volume(m[0], 0);
    // A second volume for light 0 replaces (and deletes) the first; the same one again is no-op.
    for (shadow_volume* v : {a0, a1, volume(m[1], 0), a0_new, a0_new, a1})
        m.map.add_shadow_volume(v);
    EXPECT_EQ(m.map.get_primitive_shadow_volumes(m[0]), (volumes{a0_new, a1}));
    EXPECT_EQ(m.map.get_shadow_volume(m[0], 1), a1);
    // Unknown primitives and lights add no record.
    EXPECT_TRUE(m.map.get_shadow_volume(m[2], 0) == nullptr &&
                m.map.get_shadow_volume(m[0], 5) == nullptr &&
                m.map.get_primitive_shadow_volumes(m[2]).empty());
    EXPECT_EQ(m.map.num_records(), 2u);
    // a1 moved to light 0 and filed again replaces a0_new and fills both slots; deleted once.
    a1->set_light(vector3d(1.0, 2.0, 3.0), 0.0, 0, true), m.map.add_shadow_volume(a1);
    EXPECT_EQ(m.map.find_record(m[0])->volumes, (volumes{a1, a1}));
    // New records stay; a lookup of an unknown light marks; records not asked for go.
    m.map.remove_unused_volumes();
    m.frame({0}, 9);
    EXPECT_EQ(m.map.find_record(m[1]), nullptr);
    EXPECT_EQ(m.map.get_primitive_shadow_volumes(m[0]).size(), 2u);
    m.frame({});
    EXPECT_EQ(m.map.num_records(), 0u);
}

TEST(ShadowVolumeMap, SweepDeletesTheFirstVolumeOfEveryFollowingRecord) {
    three_masters m;
    shadow_volume *first[3], *second[3];
    for (std::size_t i = 0; i < 3; ++i) {
        m.map.add_shadow_volume(first[i] = volume(m[i], 0));
        m.map.add_shadow_volume(second[i] = volume(m[i], 1));
    }
    // The unused middle record is erased; the walk also deletes the last record's first volume,
    // whose slot is listed and never handed out.
    m.frame({0, 2});
    EXPECT_EQ(m.map.find_record(m[1]), nullptr);
    EXPECT_EQ(m.map.get_primitive_shadow_volumes(m[0]), (volumes{first[0], second[0]}));
    const primitive_shadow_record* last = m.map.find_record(m[2]);
    EXPECT_EQ(last->volumes, (volumes{first[2], second[2]}));
    ASSERT_EQ(last->deleted.size(), 1u);
    EXPECT_EQ(last->deleted[0].slot + last->deleted[0].light_index, 0u);
    EXPECT_EQ(m.map.get_shadow_volume(m[2], 0), nullptr);
    EXPECT_EQ(m.map.get_primitive_shadow_volumes(m[2]), (volumes{second[2]}));
    // Sweeps reaching the deleted slot again (walk, then unused record) delete nothing twice.
    m.frame({2}, 1);
    EXPECT_EQ(m.map.num_records(), 1u);
    m.frame({});
    EXPECT_EQ(m.map.num_records(), 0u);
}

TEST(ShadowVolumeMap, AnAddRefillsASlotTheSweepDeleted) {
    three_masters m;
    for (std::size_t i = 0; i < 3; ++i) m.map.add_shadow_volume(volume(m[i], 4));
    m.frame({1, 2}, 4);  // the first record is unused: the walk goes on to the end of the map
    EXPECT_EQ(m.map.find_record(m[2])->deleted.size(), 1u);
    EXPECT_TRUE(m.map.get_primitive_shadow_volumes(m[1]).empty());
    // The host makes a new volume for the light it no longer finds: it fills the old slot;
    // another light is appended after the deleted slot.
    shadow_volume *fresh = volume(m[1], 4), *other = volume(m[2], 5);
    m.map.add_shadow_volume(fresh);
    m.map.add_shadow_volume(other);
    EXPECT_TRUE(m.map.find_record(m[1])->deleted.empty());
    EXPECT_EQ(m.map.find_record(m[1])->volumes, (volumes{fresh}));
    EXPECT_EQ(m.map.get_shadow_volume(m[1], 4), fresh);
    EXPECT_EQ(m.map.get_primitive_shadow_volumes(m[2]), (volumes{other}));
    // A volume filed in two slots and deleted by the walk is deleted in both.
    three_masters d;
    shadow_volume* v = volume(d[1], 1);
    for (shadow_volume* w : {volume(d[0], 0), volume(d[1], 0), v}) d.map.add_shadow_volume(w);
    v->set_light(vector3d(1.0, 2.0, 3.0), 0.0, 0, true), d.map.add_shadow_volume(v);  // {v, v}
    d.frame({1});  // d[0] goes; the walk deletes v through d[1]'s first slot
    EXPECT_EQ(d.map.find_record(d[1])->deleted.size(), 2u);
    EXPECT_EQ(d.map.get_shadow_volume(d[1], 0), nullptr);
}  // the maps delete `fresh` and `other`, and not m[2]'s deleted first volume

TEST(ShadowVolumeMap, ManyMastersFiledOverFramesAreSweptInKeyOrder) {
    // 300 masters at scattered addresses (some share a slot of the index), filed scrambled over
    // two frames; all but one asked for: it goes, with the only volume of each record after it.
    const std::size_t count = 300, unused = 200;
    std::vector<std::unique_ptr<basic_object>> storage;
    std::vector<std::vector<char>> gaps;
    std::vector<basic_object*> by_key, order;
    for (std::size_t k = 0; k < count; ++k) {
        storage.push_back(std::make_unique<basic_object>());
        gaps.emplace_back(k * 37 % 500);
        by_key.push_back(storage.back().get());
    }
    order = by_key;
    std::sort(by_key.begin(), by_key.end(), std::less<basic_object*>());
    std::shuffle(order.begin(), order.end(), std::mt19937(5));
    std::vector<shadow_volume*> filed;
    shadow_volume_map map;
    for (std::size_t k = 0; k < count; ++k) {
        map.add_shadow_volume(volume(order[k], 0));
        if (k == count / 2) map.remove_unused_volumes();
    }
    map.reset_records();
    for (std::size_t k = 0; k < count; ++k) {
        filed.push_back(k == unused ? nullptr : map.get_shadow_volume(by_key[k], 0));
        EXPECT_TRUE(k == unused || filed[k]->get_master_primitive() == by_key[k]) << k;
    }
    map.remove_unused_volumes();
    EXPECT_EQ(map.num_records(), count - 1);
    for (std::size_t k = 0; k < count; ++k)
        EXPECT_TRUE(k == unused
                        ? map.find_record(by_key[k]) == nullptr
                        : map.get_shadow_volume(by_key[k], 0) == (k > unused ? nullptr : filed[k]))
            << k;
    EXPECT_DEATH(map.add_shadow_volume(nullptr), "volume != 0");
}
