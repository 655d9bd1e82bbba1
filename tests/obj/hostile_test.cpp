// Hostile and degenerate OBJ input: the reader stays in bounds and gives the documented result.
#include <gtest/gtest.h>

#include <random>
#include <sstream>
#include <string>

#include "facet/obj_import.h"
#include "obj_test_support.h"

using obj_import::idx;
using obj_import::obj_info;
using obj_test::normalised;
using obj_test::parse;

namespace {

/// "v x y z" padded with blanks after the keyword to exactly `length` characters.
std::string padded_vertex(const std::string& numbers, std::size_t length) {
    std::string line = "v" + std::string(length - 1 - numbers.size(), ' ') + numbers;
    EXPECT_EQ(line.size(), length);
    return line;
}

}  // namespace

TEST(ObjHostile, EmptyAndFailedStreamsGiveOnlyTheDefaultMaterial) {
    std::istringstream failed("v 1 2 3\nf 1 1 1\n");
    failed.setstate(std::ios::failbit);
    obj_info from_failed;
    obj_import::parse_obj(failed, from_failed);
    for (const obj_info& info : {parse(""), parse("\n\n\r\n \t \n"), from_failed}) {
        ASSERT_EQ(info.materials.size(), 1u);
        EXPECT_EQ(info.materials[0].name, "__default__");
        EXPECT_TRUE(info.vertices.empty());
        EXPECT_TRUE(info.faces.empty());
        EXPECT_TRUE(info.normals.empty());
        EXPECT_EQ(info.bounding_box.x_max, 0.0);
        EXPECT_EQ(info.bounding_box.z_min, 0.0);
    }
}

TEST(ObjHostile, LongLinesKeepTheirFirst1023Characters) {
    const std::string text =
        padded_vertex("1 2 3", 1023) + "\n" +                           // fits exactly
        padded_vertex("1 2 34", 1024) + "\n" +                          // loses its last digit
        padded_vertex("1 2 3 4", 5000) + "\n" +                         // loses all numbers
        "v 5 6 7\n" + "f 1 2 3" + std::string(300000, ' ') + "4 5\n" +  // spans blocks
        "# " + std::string(100000, 'x') + "\nv 8 9 10\n" + "usemtl " + std::string(3000, 'm') +
        "\nf 1 2 3\n" + "v 11 12 13 " + std::string(200000, '7');  // last, no newline
    const obj_info info = parse(text);
    obj_info raw;
    raw.vertices = {{1, 2, 3}, {1, 2, 3}, {5, 6, 7}, {8, 9, 10}, {11, 12, 13}};
    EXPECT_EQ(info.vertices, normalised(raw).vertices);
    ASSERT_EQ(info.faces.size(), 2u);
    EXPECT_EQ(info.faces[0].corner_count, 3);  // the corners after the cut are gone
    ASSERT_EQ(info.materials.size(), 2u);
    EXPECT_EQ(info.materials[1].name, std::string(1023 - 7, 'm'));
    EXPECT_EQ(info.faces[1].material, 1);
}

TEST(ObjHostile, LinesAcrossBlockBoundariesAreReadWhole) {
    // Lines of every length from 8 to 1100 characters, so that block ends fall everywhere
    // inside and between lines; every third line is too long and keeps only its keyword.
    std::string text;
    obj_info raw;
    for (int i = 0; i < 4000; ++i) {
        const std::string numbers = std::to_string(i) + " " + std::to_string(2 * i) + " 1";
        const std::size_t length = 8 + static_cast<std::size_t>(i * 277) % 1093;
        if (length <= numbers.size() + 1) continue;
        text += padded_vertex(numbers, length) + "\n";
        if (length <= 1023) raw.vertices.emplace_back(i, 2 * i, 1);
    }
    ASSERT_GT(text.size(), 4u << 16);
    EXPECT_EQ(parse(text).vertices, normalised(raw).vertices);
}

TEST(ObjHostile, ManyMaterialsKeepTheirIndices) {
    std::string text = "v 0 0 0\n";
    for (int round = 0; round < 2; ++round) {
        for (int m = 0; m < 5000; ++m) text += "usemtl m" + std::to_string(m) + "\nf 1 1 1\n";
    }
    const obj_info info = parse(text);
    ASSERT_EQ(info.materials.size(), 5001u);
    ASSERT_EQ(info.faces.size(), 10000u);
    for (int f = 0; f < 10000; ++f) ASSERT_EQ(info.faces[f].material, f % 5000 + 1);
}

TEST(ObjHostile, BinaryJunkGivesConsistentRecords) {
    // Random bytes drawn mostly from the characters the reader reacts to, NUL and high bytes
    // included, so that many lines look almost like OBJ.
    static const char chars[] = "fvtnusemlf /0123456789-+.e#\t\r\n\n\n\0\x01\x7f\x80\xff";
    const std::string alphabet(chars, sizeof chars - 1);
    std::mt19937 rng(12345);
    for (int round = 0; round < 4; ++round) {
        std::string junk(1 << 18, '\0');
        for (char& c : junk) c = alphabet[rng() % alphabet.size()];
        const obj_info info = parse(junk);
        const obj_info again = parse(junk);
        EXPECT_EQ(info.vertices, again.vertices);
        ASSERT_EQ(info.faces.size(), again.faces.size());
        for (const obj_import::face& f : info.faces) {
            ASSERT_GE(f.corner_count, 3);
            ASSERT_LE(f.corner_count, 4);
            ASSERT_GE(f.material, 0);
            ASSERT_LT(static_cast<std::size_t>(f.material), info.materials.size());
        }
        for (const vector3d& p : info.vertices) {
            ASSERT_TRUE(std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z));
        }
    }
}
