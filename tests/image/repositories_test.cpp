#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "facet/textures.h"

using graphics::bitmap;
using graphics::color;

namespace {

/// Records what the library hands over; ids count up from 100.
class recording_manager : public graphics::texture_manager {
public:
    struct level {
        unsigned id;
        bitmap image;
        unsigned number;
    };
    std::vector<bitmap> created;
    std::vector<level> levels;

    unsigned create_texture(const bitmap& image) override {
        created.push_back(image);
        return 99 + static_cast<unsigned>(created.size());
    }
    void set_texture_level(unsigned id, const bitmap& image, unsigned number) override {
        levels.push_back({id, image, number});
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

bool same_pixels(const bitmap& a, const bitmap& b) {
    return a.width() == b.width() && a.height() == b.height() &&
           std::equal(a.begin(), a.end(), b.begin());
}

bitmap label(int font_size, const color& fg, const color& bg, unsigned short w, unsigned short h,
             const char* text) {
    bitmap b;
    graphics::make_texture_xy("Arial", font_size, fg, bg, w, h, text, b);
    return b;
}

}  // namespace

TEST_F(Repositories, GlobalManagerIsWhatWasRegistered) {
    EXPECT_EQ(graphics::get_global_texture_manager(), &manager);
    graphics::set_global_texture_manager(nullptr);
    EXPECT_EQ(graphics::get_global_texture_manager(), nullptr);
}

TEST_F(Repositories, PatternInitRegistersTheHatchAndAppendsOnEveryCall) {
    graphics::pattern_repos patterns;
    patterns.init();
    ASSERT_EQ(manager.created.size(), 1u);
    bitmap hatch;
    graphics::make_hatched_texture(color(0, 0, 0), color(255, 255, 255), 0.5f, 0.1f, 0.5f, 64,
                                   hatch);
    EXPECT_TRUE(same_pixels(manager.created[0], hatch));
    EXPECT_EQ(patterns.get_texture_id(graphics::pattern_repos::hatch), 100u);
    EXPECT_TRUE(patterns.is_pattern(100));
    EXPECT_FALSE(patterns.is_pattern(101));

    patterns.init();
    EXPECT_EQ(patterns.get_texture_id(graphics::pattern_repos::hatch), 100u);
    EXPECT_TRUE(patterns.is_pattern(101));
    EXPECT_EQ(&graphics::get_pattern_repos(), &graphics::get_pattern_repos());
}

TEST(RepositoriesDeathTest, PatternBeforeInitAndMissingManagerFailTheChecks) {
    graphics::set_global_texture_manager(nullptr);
    const graphics::pattern_repos patterns;
    EXPECT_DEATH(patterns.get_texture_id(graphics::pattern_repos::hatch), "s < m_ids.size()");
    const char* no_manager = "get_global_texture_manager\\(\\) != nullptr";
    EXPECT_DEATH(graphics::pattern_repos().init(), no_manager);
    EXPECT_DEATH(graphics::label_repos().get_texture_id("x"), no_manager);
    EXPECT_DEATH(graphics::make_number_texture(1), no_manager);
}

TEST_F(Repositories, LabelDefaultsAndSettings) {
    graphics::label_repos& global = graphics::get_label_repos();
    EXPECT_EQ(&global, &graphics::get_label_repos());
    EXPECT_EQ(global.get_fg_color(), color(255, 0, 255));
    EXPECT_EQ(global.get_bg_color(), color(255, 255, 0));
    EXPECT_EQ(global.get_size(), 64);
    EXPECT_EQ(global.get_font_size(), 48);
    EXPECT_EQ(global.get_mipmap_gen_level(), 0);

    graphics::label_repos labels;
    labels.set_size(64, 16);
    EXPECT_EQ(labels.get_size(), 64);
    labels.set_size(8, 40);
    EXPECT_EQ(labels.get_size(), 40);
}

TEST_F(Repositories, LabelsAreDrawnOnceAndCachedByTextAlone) {
    graphics::label_repos labels;
    const unsigned id = labels.get_texture_id("Go");
    EXPECT_EQ(labels.get_texture_id("Go"), id);
    ASSERT_EQ(manager.created.size(), 1u);
    EXPECT_TRUE(manager.levels.empty());
    EXPECT_TRUE(same_pixels(manager.created[0],
                            label(48, color(255, 0, 255), color(255, 255, 0), 64, 64, "Go")));

    labels.set_fg_color(color(1, 2, 3));
    labels.set_size(32);
    EXPECT_EQ(labels.get_texture_id("Go"), id);  // settings do not reach a cached label
    EXPECT_EQ(manager.created.size(), 1u);
    const unsigned other = labels.get_texture_id("Stop");
    EXPECT_NE(other, id);
    EXPECT_TRUE(same_pixels(manager.created[1],
                            label(48, color(1, 2, 3), color(255, 255, 0), 32, 32, "Stop")));

    graphics::pattern_repos patterns;
    patterns.init();
    EXPECT_FALSE(patterns.is_pattern(id));
}

TEST_F(Repositories, MipmapLevelsAreDrawnAfreshUntilTheSmallerSideIsBelowOne) {
    graphics::label_repos labels;
    labels.set_mipmap_gen_level(10);
    const unsigned id = labels.get_texture_id("7");
    ASSERT_EQ(manager.levels.size(), 6u);
    const int font_sizes[] = {24, 12, 6, 3, 1, 0};
    for (unsigned i = 0; i < 6; ++i) {
        const auto& level = manager.levels[i];
        const unsigned short side = static_cast<unsigned short>(32 >> i);
        EXPECT_EQ(level.id, id);
        EXPECT_EQ(level.number, i + 1);
        EXPECT_TRUE(same_pixels(level.image, label(font_sizes[i], color(255, 0, 255),
                                                   color(255, 255, 0), side, side, "7")))
            << "level " << i + 1;
    }

    labels.set_size(64, 16);
    labels.get_texture_id("8");
    ASSERT_EQ(manager.levels.size(), 6u + 4u);
    EXPECT_EQ(manager.levels.back().number, 4u);
    EXPECT_EQ(manager.levels.back().image.width(), 4);
    EXPECT_EQ(manager.levels.back().image.height(), 1);
}

TEST_F(Repositories, StringAndNumberTexturesAreRegisteredEveryTime) {
    const bitmap expected = label(48, color(0, 0, 255), color(224, 224, 255), 64, 64, "-12");
    EXPECT_EQ(graphics::make_number_texture(-12), 100u);
    EXPECT_EQ(graphics::make_string_texture("-12"), 101u);
    ASSERT_EQ(manager.created.size(), 2u);
    EXPECT_TRUE(same_pixels(manager.created[0], expected));
    EXPECT_TRUE(same_pixels(manager.created[1], expected));
}
