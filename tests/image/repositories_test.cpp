// The global texture manager, the pattern and label repositories and the text textures.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "facet/textures.h"

using graphics::bitmap;
using graphics::color;

namespace {

// Records what the library hands over; ids count up from 100.
struct recording_manager : graphics::texture_manager {
    std::vector<bitmap> created, levels;
    std::vector<unsigned> level_ids;
    unsigned create_texture(const bitmap& image) override {
        created.push_back(image);
        return 99 + static_cast<unsigned>(created.size());
    }
    void set_texture_level(unsigned id, const bitmap& image, unsigned number) override {
        levels.push_back(image);
        level_ids.push_back(id * 100 + number);
    }
    void update_texture(unsigned, const bitmap&) override { ADD_FAILURE(); }
    void delete_texture(unsigned) override { ADD_FAILURE(); }
    void bind_texture(unsigned) override { ADD_FAILURE(); }
    void unbind_texture() override { ADD_FAILURE(); }
};

class Repositories : public ::testing::Test {
protected:
    void SetUp() override { graphics::set_global_texture_manager(&manager); }
    void TearDown() override { graphics::set_global_texture_manager(nullptr); }
    recording_manager manager;
};

// `b` is `text` drawn by make_texture_xy with font "Arial".
bool is_label(const bitmap& b, int font_size, const color& fg, const color& bg, unsigned short w,
              unsigned short h, const char* text) {
    bitmap expected;
    graphics::make_texture_xy("Arial", font_size, fg, bg, w, h, text, expected);
    return b.width() == w && b.height() == h && std::equal(b.begin(), b.end(), expected.begin());
}

const color magenta(255, 0, 255), yellow(255, 255, 0);

TEST_F(Repositories, PatternInitRegistersTheHatchOnEveryCallAndTextTexturesAreNeverCached) {
    graphics::pattern_repos patterns;
    patterns.init();
    patterns.init();
    ASSERT_EQ(manager.created.size(), 2u);
    bitmap hatch;
    graphics::make_hatched_texture(color(0, 0, 0), color(255, 255, 255), 0.5f, 0.1f, 0.5f, 64,
                                   hatch);
    EXPECT_TRUE(std::equal(hatch.begin(), hatch.end(), manager.created[0].begin()) &&
                manager.created[0].width() == 64);
    EXPECT_EQ(patterns.get_texture_id(graphics::pattern_repos::hatch), 100u);
    EXPECT_TRUE(patterns.is_pattern(100) && patterns.is_pattern(101) && !patterns.is_pattern(102));

    EXPECT_EQ(graphics::make_number_texture(-12), 102u);
    EXPECT_EQ(graphics::make_string_texture("-12"), 103u);
    for (std::size_t i : {2, 3})
        EXPECT_TRUE(is_label(manager.created[i], 48, color(0, 0, 255), color(224, 224, 255), 64, 64,
                             "-12"));
}

TEST(RepositoriesDeathTest, PatternBeforeInitAndMissingManagerFailTheChecks) {
    graphics::set_global_texture_manager(nullptr);
    EXPECT_DEATH(graphics::pattern_repos().get_texture_id(graphics::pattern_repos::hatch),
                 "s < m_ids.size()");
    const char* no_manager = "get_global_texture_manager\\(\\) != nullptr";
    EXPECT_DEATH(graphics::pattern_repos().init(), no_manager);
    EXPECT_DEATH(graphics::label_repos().get_texture_id("x"), no_manager);
    EXPECT_DEATH(graphics::make_number_texture(1), no_manager);
}

TEST_F(Repositories, LabelsAreCachedByTextAloneWithTheirMipmapLevelsDrawnAfresh) {
    graphics::label_repos labels;
    const unsigned id = labels.get_texture_id("Go");
    EXPECT_EQ(labels.get_texture_id("Go"), id);
    ASSERT_TRUE(manager.created.size() == 1u && manager.levels.empty());
    EXPECT_TRUE(is_label(manager.created[0], 48, magenta, yellow, 64, 64, "Go"));

    labels.set_fg_color(color(1, 2, 3));
    labels.set_size(32);
    labels.set_mipmap_gen_level(10);
    EXPECT_EQ(labels.get_texture_id("Go"), id);  // settings do not reach a cached label
    EXPECT_EQ(labels.get_texture_id("7"), 101u);
    ASSERT_EQ(manager.created.size(), 2u);
    EXPECT_TRUE(is_label(manager.created[1], 48, color(1, 2, 3), yellow, 32, 32, "7"));
    // Levels until the smaller side would be below 1, the font size halved (rounded down).
    EXPECT_EQ(manager.level_ids, (std::vector<unsigned>{10101, 10102, 10103, 10104, 10105}));
    const int font_sizes[] = {24, 12, 6, 3, 1};
    for (unsigned i = 0; i < manager.levels.size(); ++i) {
        const auto side = static_cast<unsigned short>(16 >> i);
        EXPECT_TRUE(
            is_label(manager.levels[i], font_sizes[i], color(1, 2, 3), yellow, side, side, "7"))
            << i;
    }
    labels.set_size(64, 16);
    labels.get_texture_id("8");
    ASSERT_EQ(manager.level_ids.size(), 5u + 4u);
    EXPECT_TRUE(manager.level_ids.back() == 10204u && manager.levels.back().width() == 4 &&
                manager.levels.back().height() == 1);
}

}  // namespace
