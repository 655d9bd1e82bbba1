// shadow_volume_map: filing, replacing, lookups and the mark-and-sweep cycle (ASan sees leaks
// and second deletes of the volumes handed to the maps here).
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <functional>
#include <map>
#include <memory>
#include <random>
#include <vector>

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
    std::array<basic_object, 3> storage;
    std::array<basic_object*, 3> by_key = {&storage[0], &storage[1], &storage[2]};
    shadow_volume_map map;
    three_masters() { std::sort(by_key.begin(), by_key.end(), std::less<basic_object*>()); }
    basic_object* operator[](std::size_t i) const { return by_key[i]; }
    // Moves v to light 0 and files it again: it replaces that light's volume.
    void refile_for_light_0(shadow_volume* v) {
        v->set_light(vector3d(1.0, 2.0, 3.0), 0.0, 0, true);
        map.add_shadow_volume(v);
    }
};

}  // namespace

TEST(ShadowVolumeMap, AddReplaceAndLookUp) {
    three_masters m;
    shadow_volume_map& map = m.map;
    shadow_volume *a0 = volume(m[0], 0), *a1 = volume(m[0], 1);
    for (shadow_volume* v : {a0, a1, volume(m[1], 0)}) map.add_shadow_volume(v);
    EXPECT_EQ(map.num_records(), 2u);
    EXPECT_EQ(map.get_shadow_volume(m[0], 1), a1);
    EXPECT_EQ(map.get_primitive_shadow_volumes(m[0]), (volumes{a0, a1}));
    // A second volume for light 0 replaces (and deletes) the first; the same one again is no-op.
    shadow_volume* a0_new = volume(m[0], 0);
    for (shadow_volume* v : {a0_new, a0_new, a1}) map.add_shadow_volume(v);
    EXPECT_EQ(map.get_primitive_shadow_volumes(m[0]), (volumes{a0_new, a1}));
    EXPECT_EQ(map.get_shadow_volume(m[0], 0), a0_new);
    // Unknown primitives and lights.
    EXPECT_EQ(map.get_shadow_volume(m[2], 0), nullptr);
    EXPECT_TRUE(map.get_primitive_shadow_volumes(m[2]).empty());
    EXPECT_EQ(map.find_record(m[2]), nullptr);
    EXPECT_EQ(map.num_records(), 2u);
    EXPECT_EQ(map.get_shadow_volume(m[0], 5), nullptr);
    // a1 moved to light 0 and filed again replaces a0_new and fills both slots; deleted once.
    m.refile_for_light_0(a1);
    EXPECT_EQ(map.find_record(m[0])->volumes, (volumes{a1, a1}));
}

TEST(ShadowVolumeMap, MarksDecideWhatTheSweepKeeps) {
    basic_object a, b;
    shadow_volume_map map;
    map.add_shadow_volume(volume(&a, 0));  // added this frame: marked, so kept
    map.remove_unused_volumes();
    ASSERT_EQ(map.num_records(), 1u);
    map.reset_records();  // not asked for since: the only record and its volume go
    map.remove_unused_volumes();
    EXPECT_EQ(map.num_records(), 0u);
    // A lookup of an unknown light still marks the record; an unused one goes with both volumes.
    map.add_shadow_volume(volume(&b, 0));
    map.add_shadow_volume(volume(&b, 1));
    map.reset_records();
    EXPECT_EQ(map.get_shadow_volume(&b, 9), nullptr);
    map.remove_unused_volumes();
    EXPECT_EQ(map.get_primitive_shadow_volumes(&b).size(), 2u);
    map.reset_records();
    map.remove_unused_volumes();
    EXPECT_EQ(map.num_records(), 0u);
}

TEST(ShadowVolumeMap, SweepDeletesTheFirstVolumeOfEveryFollowingRecord) {
    three_masters m;
    shadow_volume_map& map = m.map;
    shadow_volume *first[3], *second[3];
    for (std::size_t i = 0; i < 3; ++i) {
        map.add_shadow_volume(first[i] = volume(m[i], 0));
        map.add_shadow_volume(second[i] = volume(m[i], 1));
    }
    // The unused middle record is erased; the walk also deletes the last record's first volume.
    map.reset_records();
    map.get_shadow_volume(m[0], 0);
    map.get_primitive_shadow_volumes(m[2]);
    map.remove_unused_volumes();
    ASSERT_EQ(map.num_records(), 2u);
    EXPECT_EQ(map.find_record(m[1]), nullptr);
    EXPECT_EQ(map.get_primitive_shadow_volumes(m[0]), (volumes{first[0], second[0]}));
    const primitive_shadow_record* last = map.find_record(m[2]);
    EXPECT_EQ(last->volumes, (volumes{first[2], second[2]}));
    ASSERT_EQ(last->deleted.size(), 1u);
    EXPECT_EQ(last->deleted[0].slot, 0u);
    EXPECT_EQ(last->deleted[0].light_index, 0u);
    // The deleted slot is never handed out.
    EXPECT_EQ(map.get_shadow_volume(m[2], 0), nullptr);
    EXPECT_EQ(map.get_shadow_volume(m[2], 1), second[2]);
    EXPECT_EQ(map.get_primitive_shadow_volumes(m[2]), (volumes{second[2]}));
    // Sweeps reaching the deleted slot again (walk, then unused record) delete nothing twice.
    map.reset_records();
    map.get_shadow_volume(m[2], 1);
    map.remove_unused_volumes();  // m[0] unused: erased; the walk passes m[2]'s deleted slot
    ASSERT_EQ(map.num_records(), 1u);
    map.reset_records();
    map.remove_unused_volumes();  // m[2] unused: erased with its live second volume
    EXPECT_EQ(map.num_records(), 0u);
}

TEST(ShadowVolumeMap, AnAddRefillsASlotTheSweepDeleted) {
    three_masters m;
    shadow_volume_map& map = m.map;
    for (std::size_t i = 0; i < 3; ++i) map.add_shadow_volume(volume(m[i], 4));
    // The first record is unused: the sweep walks on to the end of the map.
    map.reset_records();
    map.get_shadow_volume(m[1], 4);
    map.get_shadow_volume(m[2], 4);
    map.remove_unused_volumes();
    ASSERT_EQ(map.num_records(), 2u);
    EXPECT_EQ(map.find_record(m[1])->deleted.size(), 1u);
    EXPECT_EQ(map.find_record(m[2])->deleted.size(), 1u);
    EXPECT_TRUE(map.get_primitive_shadow_volumes(m[1]).empty());
    // The host makes a new volume for the light it no longer finds: it fills the old slot.
    shadow_volume* fresh = volume(m[1], 4);
    map.add_shadow_volume(fresh);
    EXPECT_TRUE(map.find_record(m[1])->deleted.empty());
    EXPECT_EQ(map.find_record(m[1])->volumes, (volumes{fresh}));
    EXPECT_EQ(map.get_shadow_volume(m[1], 4), fresh);
    // Another light is appended after the deleted slot.
    shadow_volume* other = volume(m[2], 5);
    map.add_shadow_volume(other);
    EXPECT_EQ(map.get_primitive_shadow_volumes(m[2]), (volumes{other}));
}  // the map deletes `fresh` and `other`, and not m[2]'s deleted first volume

TEST(ShadowVolumeMap, ADuplicateSlotDeletedByTheSweepIsDeletedEverywhere) {
    three_masters m;
    m.map.add_shadow_volume(volume(m[0], 0));
    shadow_volume* v = volume(m[1], 1);
    m.map.add_shadow_volume(volume(m[1], 0));
    m.map.add_shadow_volume(v);
    m.refile_for_light_0(v);  // m[1]: {v, v}
    m.map.reset_records();
    m.map.get_shadow_volume(m[1], 0);
    m.map.remove_unused_volumes();  // m[0] goes; the walk deletes v through m[1]'s first slot
    ASSERT_EQ(m.map.find_record(m[1])->deleted.size(), 2u);
    EXPECT_TRUE(m.map.get_primitive_shadow_volumes(m[1]).empty());
    EXPECT_EQ(m.map.get_shadow_volume(m[1], 0), nullptr);
}

TEST(ShadowVolumeMap, ManyMastersFiledOverFramesAreSweptInKeyOrder) {
    // 300 masters at scattered addresses (so that some share a slot of the map's index), filed
    // in a scrambled order over two frames, each found again after the sweep.
    const std::size_t count = 300, unused = 200;
    std::vector<std::unique_ptr<basic_object>> storage;
    std::vector<std::vector<char>> gaps;
    std::vector<basic_object*> by_key, order;
    for (std::size_t k = 0; k < count; ++k) {
        storage.push_back(std::make_unique<basic_object>());
        gaps.emplace_back(k * 37 % 500);
        by_key.push_back(storage.back().get());
        order.push_back(by_key.back());
    }
    std::sort(by_key.begin(), by_key.end(), std::less<basic_object*>());
    std::shuffle(order.begin(), order.end(), std::mt19937(5));
    std::map<basic_object*, shadow_volume*> filed;
    shadow_volume_map map;
    for (std::size_t k = 0; k < order.size(); ++k) {
        map.add_shadow_volume(filed[order[k]] = volume(order[k], 0));
        if (k == count / 2) map.remove_unused_volumes();
    }
    for (basic_object* o : by_key) EXPECT_EQ(map.get_shadow_volume(o, 0), filed[o]);
    // All but one asked for: the sweep erases it and deletes the first (only) volume of each
    // record after it in key order.
    map.reset_records();
    for (std::size_t k = 0; k < by_key.size(); ++k)
        if (k != unused) map.get_shadow_volume(by_key[k], 0);
    map.remove_unused_volumes();
    EXPECT_EQ(map.num_records(), count - 1);
    for (std::size_t k = 0; k < by_key.size(); ++k) {
        SCOPED_TRACE(k);
        if (k == unused) {
            EXPECT_EQ(map.find_record(by_key[k]), nullptr);
            continue;
        }
        ASSERT_NE(map.find_record(by_key[k]), nullptr);
        EXPECT_EQ(map.find_record(by_key[k])->deleted.size(), k > unused ? 1u : 0u);
        EXPECT_EQ(map.get_shadow_volume(by_key[k], 0), k > unused ? nullptr : filed[by_key[k]]);
    }
}

TEST(ShadowVolumeMapDeathTest, NullVolume) {
    shadow_volume_map map;
    EXPECT_DEATH(map.add_shadow_volume(nullptr), "volume != 0");
}
