// write_scene / read_scene: every type reads back what was written; errors name line and object.
#include <gtest/gtest.h>

#include <facet/primitives.h>
#include <facet/scene.h>
#include <facet/scene_io.h>

#include <cmath>
#include <sstream>
#include <string>

#include "objects/fixtures.h"

using namespace primitives;

namespace {

std::string text_of(const facet::scene& s) {
    std::ostringstream os;
    facet::write_scene(s, os);
    return os.str();
}

// One object of each type, material references with spaces, all but the first in a hierarchy.
facet::scene every_type() {
    std::vector<std::unique_ptr<basic_object>> all = one_of_each();
    for (std::size_t k = 0; k < all.size(); ++k) {
        basic_object& o = *all[k];
        o.set_material_ref_id(k % 2 ? "steel plate #" + std::to_string(k) : "");
        if (k > 0) o.set_parent(all[k % 3 ? 0 : k - 1].get());
    }
    return facet::scene::adopt(std::move(all));
}

std::string read_error(const std::string& text) {
    std::istringstream in(text);
    try {
        facet::read_scene(in, "scene.txt");
    } catch (const facet::scene_error& e) {
        return e.what();
    }
    return "no error";
}

const char* const box_block =
    "beginscene\r\nprimitive box\r\n  name lid\r\n  parent _null_\r\n  ownerid _null_\r\n"
    "  mat_ref   position 0 0 1\r\n  orientation 0 1 0 0\r\n  brush 255 255 192 255 0\r\n"
    "  pen 0 0 0 255 1 0\r\n";

}  // namespace

TEST(SceneFile, EveryTypeReadsBackBitForBitFromAFileThatAppearsWhole) {
    const facet::scene original = every_type();
    const std::string text = text_of(original), path = ::testing::TempDir() + "facet_scene.txt";

    // The very bytes of write_objects at 17 significant digits.
    std::ostringstream classic;
    classic.precision(17);
    write_objects(original.objects(), classic);
    EXPECT_EQ(text, classic.str());

    facet::write_scene(original, path);
    const facet::scene back = facet::read_scene(path);
    ASSERT_EQ(back.size(), 17u);
    EXPECT_EQ(text_of(back), text);  // 17 digits name each double exactly: same text, same bits
    for (std::size_t i = 0; i < back.size(); ++i) {
        const basic_object* parent = back[i].get_parent();
        EXPECT_EQ(parent ? back.index_of(*parent) : -1,
                  original[i].get_parent() ? original.index_of(*original[i].get_parent()) : -1);
    }
    std::remove(path.c_str());
}

TEST(SceneFile, HandWrittenMaterialReferenceOnItsOwnLine) {
    std::istringstream in(
        "beginscene\nprimitive empty\n name a\n parent _null_\n ownerid x\n mat_ref red paint\r\n"
        " position 1 2 3\n orientation 0 1 0 0\n brush 1 2 3 4 0\n pen 0 0 0 255 1 0\n"
        "endprimitive\nprimitive light\n name b\n parent a\n ownerid x\n mat_ref blue\n"
        " position 0 0 0\n orientation 0 1 0 0\n brush 1 2 3 4 0\n pen 0 0 0 255 1 0\n"
        "endprimitive\nendscene\n");
    const facet::scene s = facet::read_scene(in);
    ASSERT_EQ(s.size(), 2u);
    EXPECT_EQ(s[0].get_material_ref_id(), "red paint");
    EXPECT_EQ(s[1].get_material_ref_id(), "blue");
    EXPECT_EQ(s[0].get_position().z, 3.0);
}

TEST(SceneFile, ErrorsNameTheLineAndTheObject) {
    const std::string head = box_block;
    const struct {
        std::string text, message;
    } cases[] = {
        {head + "  width 1\r\n  x 2\r\n", "scene.txt:11: box 'lid': expected 'height', found 'x'"},
        {head + "  width 1\r\n  height x\r\n",
         "scene.txt:11: box 'lid': expected 'depth', found 'x'"},
        {head + "  width 1\r\n\t\v\f \r\n\n",  // the last line that holds something
         "scene.txt:10: box 'lid': expected 'height', found the end of the file"},
        {"beginscene\r\nprimitive teapot\r\n",
         "scene.txt:2: expected a scene object type, found 'teapot'"},
        {"begin\r\n", "scene.txt:1: expected 'beginscene', found 'begin'"},
        {" \r\n\r\n", "scene.txt:1: expected 'beginscene', found the end of the file"},
        {head +
             "  width 1\r\n  height 1\r\n  depth 1\r\nendprimitive\r\nprimitive light\r\n"
             "  name l\r\n  parent lid\r\n  ownerid _null_\r\n  mat_ref   position 0 0 0\r\n"
             "  orientation 0 1 0 0\r\n  brush 1 1 1 1 0\r\n  pen 0 0 0 255 1 0\r\nendprimitive\r\n"
             "primitive empty\r\n  name e\r\n  parent nobody\r\n",
         "scene.txt:25: empty 'e': expected 'ownerid', found the end of the file"},
    };
    for (const auto& c : cases) EXPECT_EQ(read_error(c.text), c.message) << c.text;

    // A parent that is not in the file: the line of the orphan's parent field.
    facet::scene s;
    auto& lid = s.emplace<box>();
    lid.set_name("lid");
    auto& pot = s.emplace<box>();
    pot.set_name("pot");
    s.set_parent(lid, &pot);
    std::string text = text_of(s);
    text.replace(text.find("parent pot"), 10, "parent pan");
    EXPECT_EQ(read_error(text), "scene.txt:4: box 'lid': parent 'pan' not found");
    text = text_of(s);
    text.replace(text.find("parent _null_"), 13, "parent pan");
    EXPECT_EQ(read_error(text), "scene.txt:16: box 'pot': parent 'pan' not found");

    // Parents that name each other.
    text = text_of(s);
    text.replace(text.find("parent _null_"), 13, "parent lid");
    EXPECT_EQ(read_error(text),
              "scene.txt:16: box 'pot': parent 'lid' would close a cycle of parents");
}

TEST(SceneFile, MissingFilesAreNamed) {
    const std::string path = ::testing::TempDir() + "facet_missing_scene.txt";
    try {
        facet::read_scene(path);
        FAIL();
    } catch (const facet::scene_error& e) {
        EXPECT_EQ(std::string(e.what()).rfind(path + ": cannot open: ", 0), 0u) << e.what();
    }
    EXPECT_THROW(facet::write_scene(facet::scene(), "/nonexistent-folder/x.txt"),
                 std::runtime_error);
}
