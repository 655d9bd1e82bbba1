#include <gtest/gtest.h>

#include <facet/primitives.h>
#include <facet/scene_io.h>

#include <memory>
#include <random>
#include <sstream>
#include <string>
#include <vector>

using primitives::basic_object;

namespace {

// Owns whatever read_objects appended, also when it threw.
struct scene {
    std::vector<basic_object*> objects;
    ~scene() {
        // Children first would not matter: destruction only unlinks.
        for (basic_object* o : objects) delete o;
    }
};

std::string written(const std::vector<basic_object*>& objects) {
    std::ostringstream os;
    write_objects(objects, os);
    return os.str();
}

// A material reference that survives a round trip ends in NUL: the reader takes everything up to
// it (including the space after the keyword).
const std::string nul_terminated("\0", 1);

std::string read_error(const std::string& text, scene& s) {
    std::istringstream is(text);
    try {
        read_objects(s.objects, is);
    } catch (const std::exception& e) {
        return e.what();
    }
    return "no error";
}

TEST(SceneWrite, EmptySceneIsTwoLines) {
    EXPECT_EQ(written({}), "beginscene\r\nendscene\r\n");
    scene s;
    std::istringstream is("beginscene\r\nendscene\r\n");
    read_objects(s.objects, is);
    EXPECT_TRUE(s.objects.empty());
}

TEST(SceneWrite, BoxBlockIsByteExact) {
    basic_object root;
    root.set_name("root");
    primitives::box lid(2, 1, 3);
    lid.set_name("lid");
    lid.set_position(vector3d(0, 0, 1));
    lid.set_parent(&root);
    EXPECT_EQ(written({&lid}),
              "beginscene\r\n"
              "primitive box\r\n"
              "  name lid\r\n"
              "  parent root\r\n"
              "  ownerid _null_\r\n"
              "  mat_ref   position 0 0 1\r\n"
              "  orientation 0 1 0 0\r\n"
              "  brush 255 255 192 255 0\r\n"
              "  pen 0 0 0 255 1 0\r\n"
              "  width 2\r\n"
              "  height 1\r\n"
              "  depth 3\r\n"
              "endprimitive\r\n"
              "endscene\r\n");
    lid.set_parent(nullptr);
}

TEST(SceneWrite, ParentLineFollowsThePointerNotTheStoredName) {
    basic_object root;
    root.set_name("root");
    basic_object child;
    child.set_parent(&root);
    root.set_name("renamed");  // children's stored parent names follow
    EXPECT_NE(written({&child}).find("  parent renamed\r\n"), std::string::npos);
    child.set_parent(nullptr);
    EXPECT_NE(written({&child}).find("  parent _null_\r\n"), std::string::npos);
}

TEST(SceneWrite, RealsUseTheStreamsPrecision) {
    primitives::cone c(1.0 / 3.0, 0.5);
    std::ostringstream os;
    c.write(os);
    EXPECT_NE(os.str().find("  height 0.333333\r\n"), std::string::npos);
    std::ostringstream precise;
    precise.precision(17);
    c.write(precise);
    EXPECT_NE(precise.str().find("  height 0.33333333333333331\r\n"), std::string::npos);
}

TEST(SceneRead, MaterialReferenceWithoutNulSwallowsTheRest) {
    primitives::box b;
    scene s;
    EXPECT_EQ(read_error(written({&b}), s), "ERROR: ''expected");
    EXPECT_TRUE(s.objects.empty());
}

TEST(SceneRead, RoundTripOfAHierarchy) {
    basic_object root;
    root.set_name("root");
    root.set_material_ref_id("steel" + nul_terminated);
    primitives::cylinder post(4, 0.25, 12);
    post.set_name("post");
    post.set_material_ref_id(nul_terminated);
    post.set_parent(&root);
    post.set_position(vector3d(1.5, -2, 0.25));
    post.set_orientation(vector3d(0, 0, 1), 30);
    post.set_brush(graphics::brush(graphics::color(1, 2, 3, 4), 5));
    post.set_pen(graphics::pen(graphics::color(9, 8, 7), 3, 2));
    post.set_owner_id("host-7");

    scene s;
    std::istringstream is(written({&root, &post}));
    read_objects(s.objects, is);
    post.set_parent(nullptr);
    ASSERT_EQ(s.objects.size(), 2u);
    EXPECT_EQ(s.objects[0]->class_id(), "empty");
    EXPECT_EQ(s.objects[0]->get_material_ref_id(), " steel");
    auto* read_post = dynamic_cast<primitives::cylinder*>(s.objects[1]);
    ASSERT_NE(read_post, nullptr);
    EXPECT_EQ(read_post->get_name(), "post");
    EXPECT_EQ(read_post->get_parent(), s.objects[0]);
    EXPECT_EQ(s.objects[0]->get_children(), std::vector<basic_object*>{read_post});
    EXPECT_EQ(read_post->get_owner_id(), "host-7");
    EXPECT_EQ(read_post->get_material_ref_id(), " ");
    EXPECT_EQ(read_post->get_position(), vector3d(1.5, -2, 0.25));
    EXPECT_EQ(read_post->get_orientation().axis, vector3d(0, 0, 1));
    EXPECT_EQ(read_post->get_orientation().angle, 30.0);
    EXPECT_EQ(read_post->get_brush(), graphics::brush(graphics::color(1, 2, 3, 4), 5));
    EXPECT_EQ(read_post->get_pen(), graphics::pen(graphics::color(9, 8, 7), 3, 2));
    EXPECT_EQ(read_post->get_height(), 4.0);
    EXPECT_EQ(read_post->get_radius(), 0.25);
    EXPECT_EQ(read_post->get_number_of_divisions(), 6.0);  // not stored in the file
    EXPECT_TRUE(read_post->is_dirty());
}

TEST(SceneRead, LayoutIsFreeOnInput) {
    scene s;
    std::istringstream is(
        std::string("beginscene primitive box name b parent _null_ ownerid x mat_ref ") +
        nul_terminated +
        "\tposition 1 2 3 orientation 0 1 0 90 brush 1 2 3 4 0 pen 0 0 0 255 1 "
        "0\n\n width 5 height 6 depth 7 endprimitive endscene");
    read_objects(s.objects, is);
    ASSERT_EQ(s.objects.size(), 1u);
    auto* b = dynamic_cast<primitives::box*>(s.objects[0]);
    ASSERT_NE(b, nullptr);
    EXPECT_EQ(b->get_size(), vector3d(5, 6, 7));
}

std::string block(const std::string& type, const std::string& name, const std::string& parent,
                  const std::string& fields = "") {
    return "primitive " + type + " name " + name + " parent " + parent +
           " ownerid _null_ mat_ref " + nul_terminated +
           " position 0 0 0 orientation 0 1 0 0 brush 0 0 0 255 0 pen 0 0 0 255 1 0 " + fields +
           " endprimitive\r\n";
}

TEST(SceneRead, ParentsResolveToTheFirstObjectOfThatName) {
    scene s;
    auto* existing = new basic_object;
    existing->set_name("twin");
    s.objects.push_back(existing);
    std::istringstream is("beginscene " + block("empty", "twin", "_null_") +
                          block("empty", "lamp", "twin") + "endscene");
    read_objects(s.objects, is);
    ASSERT_EQ(s.objects.size(), 3u);
    EXPECT_EQ(s.objects[2]->get_name(), "lamp");
    EXPECT_EQ(s.objects[2]->get_parent(), existing);
}

TEST(SceneRead, MissingParentThrowsAndKeepsTheObjects) {
    scene s;
    EXPECT_EQ(read_error("beginscene " + block("empty", "orphan", "nobody") + "endscene", s),
              "Error in read_objects(): parent not found");
    ASSERT_EQ(s.objects.size(), 1u);
    EXPECT_EQ(s.objects[0]->get_parent(), nullptr);
}

TEST(SceneRead, FormatErrorsNameTheWordFound) {
    scene s;
    EXPECT_EQ(read_error("startscene", s), "ERROR: 'startscene'expected");
    EXPECT_EQ(read_error("beginscene primitive box name b endprimitive", s),
              "ERROR: 'endprimitive'expected");
    EXPECT_EQ(read_error("beginscene " + block("box", "b", "_null_", "width x"), s),
              "ERROR: ''expected");  // the failed number leaves the stream failed
    EXPECT_EQ(read_error("beginscene " + block("empty", "b", "_null_", "extra"), s),
              "ERROR: 'extra'expected");
    EXPECT_EQ(read_error("beginscene " + block("empty", "b", "_null_"), s), "ERROR: ''expected");
    try {
        std::istringstream is("beginscene " + block("empty", "kept", "_null_") +
                              block("teapot", "t", "_null_") + "endscene");
        read_objects(s.objects, is);
        FAIL();
    } catch (const format_exception& e) {
        EXPECT_EQ(e.found(), "teapot");
        EXPECT_STREQ(e.what(), "ERROR: 'teapot'expected");
    }
    // Every completed block before a failure stays (two "b" blocks read above, then "kept").
    ASSERT_FALSE(s.objects.empty());
    EXPECT_EQ(s.objects.back()->get_name(), "kept");
}

TEST(SceneRead, NamesAreSingleWords) {
    primitives::box b;
    b.set_name("two words");
    b.set_material_ref_id(nul_terminated);
    scene s;
    EXPECT_EQ(read_error(written({&b}), s), "ERROR: 'words'expected");
}

TEST(SceneRead, EveryTruncationFailsCleanly) {
    basic_object root;
    root.set_name("root");
    root.set_material_ref_id(nul_terminated);
    primitives::box b;
    b.set_name("b");
    b.set_material_ref_id(nul_terminated);
    b.set_parent(&root);
    const std::string text = written({&root, &b});
    b.set_parent(nullptr);
    for (std::size_t n = 0; n + 1 < text.size() - 2; ++n) {
        scene s;
        std::istringstream is(text.substr(0, n));
        EXPECT_THROW(read_objects(s.objects, is), std::exception) << n;
    }
}

TEST(SceneRead, GarbageNeverCrashes) {
    const std::string words[] = {"beginscene", "primitive", "box",   "endprimitive", "name",
                                 "parent",     "_null_",    "1e308", "-0",           "nan",
                                 "endscene",   "mat_ref",   "width", "\x01\xff",     "empty"};
    std::mt19937 rng(3);
    for (int trial = 0; trial < 2000; ++trial) {
        std::string text = "beginscene ";
        const int n = static_cast<int>(rng() % 40);
        for (int i = 0; i < n; ++i)
            text += words[rng() % 15] + std::string(rng() % 4 ? " " : "\0", 1);
        scene s;
        std::istringstream is(text);
        try {
            read_objects(s.objects, is);
        } catch (const std::exception&) {
        }
    }
}

TEST(Factory, KnowsTheSceneTypesInOrder) {
    auto& types = factory<basic_object, std::string>::instance();
    const std::vector<std::string> keys = types.keys();
    ASSERT_GE(keys.size(), 4u);
    EXPECT_EQ(keys[0], "empty");
    EXPECT_EQ(keys[1], "box");
    EXPECT_EQ(keys[2], "cylinder");
    EXPECT_EQ(keys[3], "cone");
    EXPECT_EQ(types.create("teapot"), nullptr);
    for (const std::string& key : keys) {
        std::unique_ptr<basic_object> o(types.create(key));
        ASSERT_NE(o, nullptr);
        EXPECT_EQ(o->class_id(), key);
    }
    EXPECT_FALSE(types.register_type("box", [] { return new basic_object; }));
}

TEST(ParentFinder, MatchesByName) {
    basic_object a;
    a.set_name("a");
    EXPECT_TRUE(parent_finder("a")(&a));
    EXPECT_FALSE(parent_finder("b")(&a));
    EXPECT_FALSE(parent_finder("a")(nullptr));
}

}  // namespace
