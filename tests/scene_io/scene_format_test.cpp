// The scene text format: byte-exact blocks, read-back, parent links by name, and its errors.
#include <gtest/gtest.h>

#include <facet/primitives.h>
#include <facet/scene_io.h>

#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "objects/fixtures.h"

using primitives::basic_object;

namespace {

// A material reference that reads back ends in NUL: the reader takes everything up to it
// (including the space after the keyword).
const std::string nul("\0", 1);

// Owns whatever read_objects appended, also when it threw.
struct owned {
    std::vector<basic_object*> objects;
    ~owned() {
        for (basic_object* o : objects) delete o;
    }
};

std::string written(const std::vector<basic_object*>& objects) {
    std::ostringstream os;
    write_objects(objects, os);
    return os.str();
}

// Reads `text` into `s`; the error message, or "" when there was none.
std::string read_into(const std::string& text, owned& s) {
    std::istringstream is(text);
    try {
        read_objects(s.objects, is);
    } catch (const std::exception& e) {
        return e.what();
    }
    return "";
}

// A hand-written block on one line.
std::string block(const std::string& type, const std::string& name, const std::string& parent,
                  const std::string& fields = "") {
    return "primitive " + type + " name " + name + " parent " + parent +
           " ownerid _null_ mat_ref " + nul +
           " position 0 0 0 orientation 0 1 0 0 brush 0 0 0 255 0 pen 0 0 0 255 1 0 " + fields +
           " endprimitive\r\n";
}

std::string scene_of(const std::string& blocks) { return "beginscene\r\n" + blocks + "endscene"; }

}  // namespace

TEST(SceneWrite, BlocksAreByteExact) {
    EXPECT_EQ(written({}), "beginscene\r\nendscene\r\n");
    basic_object root;
    root.set_name("root");
    primitives::box lid(2, 1, 3);
    lid.set_name("lid");
    lid.set_position(vector3d(0, 0, 1));
    lid.set_parent(&root);
    const std::string lid_text = written({&lid});
    lid.set_parent(nullptr);
    EXPECT_EQ(lid_text,
              "beginscene\r\nprimitive box\r\n  name lid\r\n  parent root\r\n  ownerid _null_\r\n"
              "  mat_ref   position 0 0 1\r\n  orientation 0 1 0 0\r\n  brush 255 255 192 255 0\r\n"
              "  pen 0 0 0 255 1 0\r\n  width 2\r\n  height 1\r\n  depth 3\r\nendprimitive\r\n"
              "endscene\r\n");

    // Reals take the stream's precision.
    primitives::cone c(1.0 / 3.0, 0.5);
    EXPECT_NE(written({&c}).find("  height 0.333333\r\n"), std::string::npos);
    EXPECT_NE(block_text(c).find("  height 0.33333333333333331\r\n"), std::string::npos);

    // Lists; the extruded polygon writes two offsets.
    primitives::mesh m;
    m.set_vertices({{0, 0, 0}, {1, 0, 0}, {0, 1, 0.5}});
    m.add_triangle(0, 1, 2);
    primitives::extruded_polygon e;
    e.set_points({{0, 0, 0}, {1, 0, 0}, {0, 0, 1}});
    e.set_extrusion({0, 2, 0});
    e.set_extrusion_scaling({0.5, 1, 0.5});
    primitives::line l(vector3d(1, 2, 3), vector3d(4, 5, 6));
    const std::string text = written({&m, &e, &l});
    for (const char* part :
         {"  num_vertices 3\r\n    0 0 0\r\n    1 0 0\r\n    0 1 0.5\r\n  num_triangles 1\r\n"
          "    0 1 2\r\nendprimitive\r\n",
          "  numpoints 3\r\n  0 0 0\r\n  1 0 0\r\n  0 0 1\r\n  offset 0 2 0\r\n"
          "  offset 0.5 1 0.5\r\nendprimitive",
          "  point1 1 2 3\r\n  point2 4 5 6\r\n"})
        EXPECT_NE(text.find(part), std::string::npos) << part;
}

TEST(SceneRead, EveryTypeReadsBackItsBlockExceptTheExtrudedPolygon) {
    auto& types = factory<basic_object, std::string>::instance();
    EXPECT_EQ(types.create("teapot"), nullptr);
    EXPECT_FALSE(types.register_type("box", [] { return new basic_object; }));

    for (const auto& original : one_of_each()) {
        const std::string key = original->class_id();
        original->set_material_ref_id(nul);
        const std::string first = block_text(*original);
        owned s;
        if (key == "extruded_polygon") {
            EXPECT_EQ(read_into(scene_of(first), s), "ERROR: 'offset'expected");
            continue;
        }
        ASSERT_EQ(read_into(scene_of(first), s), "") << key;
        ASSERT_EQ(s.objects.size(), 1u);
        // The reference read back starts with the space after its keyword; past that, writing
        // the object again gives the same block.
        s.objects[0]->set_material_ref_id(nul);
        EXPECT_EQ(block_text(*s.objects[0]), first) << key;
    }

    // With one offset line the extruded polygon reads, its scaling left at the default.
    owned s;
    ASSERT_EQ(read_into(scene_of(block("extruded_polygon", "e", "_null_",
                                       "numpoints 2 1 0 0 0 0 1 offset 0 2 0")),
                        s),
              "");
    const auto& e = dynamic_cast<const primitives::extruded_polygon&>(*s.objects.at(0));
    EXPECT_EQ(e.get_points(), (std::vector<vector3d>{{1, 0, 0}, {0, 0, 1}}));
    EXPECT_EQ(e.get_extrusion(), vector3d(0, 2, 0));
    EXPECT_EQ(e.get_extrusion_scaling(), vector3d(1, 1, 1));
}

TEST(SceneRead, LinksMaterialQuirkAndFreeLayout) {
    basic_object root;
    root.set_name("root");
    root.set_material_ref_id("steel" + nul);
    primitives::cylinder post(4, 0.25, 12);
    post.set_name("post");
    post.set_material_ref_id(nul);
    post.set_parent(&root);
    owned s;
    ASSERT_EQ(read_into(written({&root, &post}), s), "");
    post.set_parent(nullptr);
    ASSERT_EQ(s.objects.size(), 2u);
    EXPECT_EQ(s.objects[0]->get_material_ref_id(), " steel");
    const auto& read = dynamic_cast<const primitives::cylinder&>(*s.objects[1]);
    EXPECT_EQ(read.get_name() + "|" + read.get_material_ref_id(), "post| ");
    EXPECT_EQ(read.get_parent(), s.objects[0]);
    EXPECT_EQ(vector3d(read.get_height(), read.get_radius(), read.get_number_of_divisions()),
              vector3d(4, 0.25, 6));  // the divisions are not in the file

    EXPECT_EQ(read_into("beginscene primitive box name b parent _null_ ownerid x mat_ref " + nul +
                            "\tposition 1 2 3 orientation 0 1 0 90 brush 1 2 3 4 0 pen 0 0 0 "
                            "255 1 0\n\n width 5 height 6 depth 7 endprimitive endscene",
                        s),
              "");
    EXPECT_EQ(dynamic_cast<const primitives::box&>(*s.objects.at(2)).get_size(), vector3d(5, 6, 7));
}

TEST(SceneRead, ErrorsNameTheWordFoundAndKeepTheBlocksBefore) {
    primitives::box unterminated;  // its material reference swallows the rest
    const struct {
        std::string text, message;
        std::size_t kept = 0;
    } cases[] = {
        {written({&unterminated}), "ERROR: ''expected"},
        {"startscene", "ERROR: 'startscene'expected"},
        {"beginscene primitive box name b endprimitive", "ERROR: 'endprimitive'expected"},
        {"beginscene " + block("box", "b", "_null_", "width x"), "ERROR: ''expected"},
        {"beginscene " + block("empty", "b", "_null_", "extra"), "ERROR: 'extra'expected"},
        {"beginscene " + block("empty", "b", "_null_"), "ERROR: ''expected", 1},
        {scene_of(block("box", "two words", "_null_")), "ERROR: 'words'expected"},
        {scene_of(block("text", "t", "_null_", "text two words")), "ERROR: 'words'expected"},
        {scene_of(block("mesh", "m", "_null_", "num_vertices 1 0 0 0 num_triangles 1 0 0 7")),
         "ERROR: '7'expected"},
        {scene_of(block("mesh", "m", "_null_", "num_vertices 1 0 0 0 num_triangles 1 0 1 0")),
         "ERROR: '1'expected"},
        // A count is not trusted: the list ends where "num_triangles" stands.
        {scene_of(block("mesh", "m", "_null_", "num_vertices 4294967295 num_triangles 0")),
         "ERROR: ''expected"},
        {scene_of(block("empty", "kept", "_null_") + block("teapot", "t", "_null_")),
         "ERROR: 'teapot'expected", 1},
    };
    for (const auto& c : cases) {
        owned s;
        EXPECT_EQ(read_into(c.text, s), c.message) << c.text;
        EXPECT_EQ(s.objects.size(), c.kept);
    }
}

TEST(SceneRead, ParentsAreTheFirstObjectOfTheNameAndCyclesAreRefused) {
    owned s;
    s.objects.push_back(new basic_object);  // already in the list: a parent candidate too
    s.objects[0]->set_name("twin");
    std::string text;
    for (int i = 0; i < 20000; ++i)
        text += block("empty", "n" + std::to_string(i), i ? "n" + std::to_string(i - 1) : "twin");
    ASSERT_EQ(read_into(scene_of(block("empty", "twin", "_null_") + text +
                                 block("empty", "last", "n19999")),
                        s),
              "");
    EXPECT_EQ(s.objects[2]->get_parent(), s.objects[0]);
    EXPECT_EQ(s.objects.back()->get_parent(), s.objects[20001]);
    EXPECT_EQ(s.objects[0]->get_children().size(), 1u);

    // a <- b <- c <- a: the cycle closes with c's link, the last of the three; the links before
    // it are made, those after it are not.
    const auto links = [](const std::vector<std::pair<const char*, const char*>>& pairs) {
        std::string blocks;
        for (const auto& [name, parent] : pairs) blocks += block("empty", name, parent);
        return scene_of(blocks);
    };
    owned r;
    EXPECT_EQ(
        read_into(links({{"root", "_null_"}, {"a", "c"}, {"b", "a"}, {"c", "b"}, {"d", "root"}}),
                  r),
        "Error in read_objects(): parent cycle at 'c'");
    ASSERT_EQ(r.objects.size(), 5u);
    EXPECT_EQ(r.objects[1]->get_parent(), r.objects[3]);
    EXPECT_EQ(r.objects[2]->get_parent(), r.objects[1]);
    EXPECT_EQ(r.objects[3]->get_parent(), nullptr);
    EXPECT_EQ(r.objects[4]->get_parent(), nullptr);
    owned self, missing;
    EXPECT_EQ(read_into(links({{"self", "self"}}), self),
              "Error in read_objects(): parent cycle at 'self'");
    EXPECT_EQ(self.objects.at(0)->get_parent(), nullptr);
    // A missing parent before a cycle is reported first; the objects stay.
    EXPECT_EQ(read_into(links({{"x", "nobody"}, {"y", "y"}}), missing),
              "Error in read_objects(): parent not found");
    EXPECT_EQ(missing.objects.size(), 2u);
}
