// OBJ import: parse_obj's reading rules and hostile input, normalisation, obj2mesh.
#include <gtest/gtest.h>

#include <cctype>
#include <cfloat>
#include <charconv>
#include <cmath>
#include <ios>
#include <random>
#include <sstream>
#include <string>
#include <system_error>
#include <vector>

#include "facet/custom_mesh.h"
#include "facet/ifs.h"
#include "facet/obj_import.h"
#include "facet/primitives.h"

using graphics::brush;
using graphics::color;
using graphics::custom_mesh;
using graphics::pen;
using obj_import::idx;
using obj_import::obj_info;

namespace {

obj_info parse(const std::string& text) {
    std::istringstream in(text);
    obj_info info;
    obj_import::parse_obj(in, info);
    return info;
}

/// The vertices as parse_obj normalises them.
std::vector<vector3d> normalised(std::vector<vector3d> vertices) {
    obj_info raw;
    raw.vertices = std::move(vertices);
    obj_import::calc_bounding_box(raw);
    obj_import::swap_all_yz(raw);
    obj_import::scale(raw, 10000.0);
    const obj_import::bounding_box_3d& b = raw.bounding_box;
    obj_import::translate(raw, vector3d(-b.x_min, -b.y_min, -b.z_min));
    return raw.vertices;
}

std::vector<double> box_of(const obj_info& info) {
    const obj_import::bounding_box_3d& b = info.bounding_box;
    return {b.x_min, b.x_max, b.y_min, b.y_max, b.z_min, b.z_max};
}

std::vector<std::string> materials_of(const obj_info& info) {
    std::vector<std::string> names;
    for (const auto& m : info.materials) names.push_back(m.name);
    return names;
}

std::vector<std::string> style_names(const custom_mesh& mesh) {
    std::vector<std::string> names;
    for (const auto& s : mesh.get_styles()) names.push_back(s.name);
    return names;
}

std::vector<int> face_materials(const obj_info& info) {
    std::vector<int> materials;
    for (const auto& f : info.faces) materials.push_back(f.material);
    return materials;
}

// Each face as its corner count and its four corners.
std::vector<std::vector<idx>> corners_of(const obj_info& info) {
    std::vector<std::vector<idx>> faces;
    for (const auto& f : info.faces)
        faces.push_back(
            {idx(f.corner_count, 0, 0), f.corners[0], f.corners[1], f.corners[2], f.corners[3]});
    return faces;
}

/// "v x y z" padded with blanks after the keyword to exactly `length` characters.
std::string padded_vertex(const std::string& numbers, std::size_t length) {
    return "v" + std::string(length - 1 - numbers.size(), ' ') + numbers;
}

// Three vertices and a normal, so that the corners' normal fields are kept as read.
const std::string three_vertices = "v 0 0 0\nv 1 0 0\nv 0 1 0\nvn 0 0 1\n";

TEST(ObjParse, FacesGetTheCurrentMaterialAndComputedNormalsWhenTheFileHasNone) {
    const obj_info info = parse("v 0 0 0\nv 2 0 0\nv 0 2 0\nv 0 0 2\nf 1 2 3\nf 1 4 2\n");
    EXPECT_EQ(materials_of(info), std::vector<std::string>{"__default__"});
    // (0, 0, 1) and (0, 1, 0) from the file's axes, then y and z swapped: (x, z, -y).
    EXPECT_EQ(info.normals, (std::vector<vector3d>{{0, 1, 0}, {0, 0, -1}}));
    EXPECT_EQ(corners_of(info), (std::vector<std::vector<idx>>{
                                    {{3, 0, 0}, {0, -1, 0}, {1, -1, 0}, {2, -1, 0}, idx()},
                                    {{3, 0, 0}, {0, -1, 1}, {3, -1, 1}, {1, -1, 1}, idx()}}));
    const obj_info m = parse(three_vertices +
                             "f 1 2 3\nusemtl red\nf 1 2 3\nusemtl blue\nf 1 2 3\n"
                             "usemtl red\nf 1 2 3\nusemtl\nf 1 2 3\nUSEMTL blue\nf 1 2 3\n"
                             "usemtl __default__ extra\nf 1 2 3\n");
    EXPECT_EQ(materials_of(m), (std::vector<std::string>{"__default__", "red", "blue"}));
    EXPECT_EQ(face_materials(m), (std::vector<int>{0, 1, 2, 1, 1, 1, 0}));
}

TEST(ObjParse, FaceCornerCountsAndTokens) {
    const obj_info info = parse(three_vertices +
                                "f 1 2 3 4 5\n"
                                "f 7//3 1/2 1/2/3 +4\n"
                                "f x/2/3 5/x/3 3// 3/4/\n"
                                "f -1/-2/-3 0 2147483647 -2147483647\n"
                                "f 4294967297 2147483648 1.5/2 1\n"  // no wrap to 32 bits
                                "f 1 2 3 # note\n"  // a trailing comment is a corner, read as 0
                                "f 1 2\nf\n");
    const idx four(4, 0, 0), none(-1, -1, -1);
    EXPECT_EQ(corners_of(info),
              (std::vector<std::vector<idx>>{
                  {four, {0, -1, -1}, {1, -1, -1}, {2, -1, -1}, {3, -1, -1}},
                  {four, {6, -1, 2}, {0, 1, -1}, {0, 1, 2}, {3, -1, -1}},
                  {four, none, {4, -1, -1}, {2, -1, -1}, {2, 3, -1}},
                  {four, {-2, -3, -4}, none, {2147483646, -1, -1}, {-2147483647 - 1, -1, -1}},
                  {four, none, none, {0, -1, -1}, {0, -1, -1}},
                  {four, {0, -1, -1}, {1, -1, -1}, {2, -1, -1}, none}}));
}

TEST(ObjParse, NumberCountsPerKeywordAndSinglePrecisionVertices) {
    const obj_info info = parse(
        "# v 9 9 9\n\n \t\r\nmtllib a.mtl\no thing\ng group\ns 1\nvp 1 2 3\nV 1 2 3\n"
        "v 0.1 0.2 0.3 0.4 0.5\nv 1 2\nv\nv a b c\nv 1e39 -1e-50 inf\nv nan 0x10 +2.5\n"
        "\tv\t1.5abc\t-.5\t5.\r\n  # v 7 8 9\n"
        "vt 0.1 0.2\nvt 0.5\nvt 0.5 0.5 0\nvt x 1e400\nvt 0.5 0.25: \r\n"
        "vn 0.1 0.2 0.3\nvn 1 2\nvn 1 2 3 4\nvn 0 1 0\nf 1 2 1");  // no final newline
    EXPECT_EQ(info.vertices,
              normalised({{0.1f, 0.2f, 0.3f}, {0, 0, 0}, {0, 0, 0}, {0, 0, 2.5}, {1.5, -0.5, 5}}));
    std::vector<double> uv;
    for (const auto& t : info.texcoords) uv.insert(uv.end(), {t.u, t.v});
    EXPECT_EQ(uv, (std::vector<double>{0.1, 0.2, 0, 0, 0.5, 0.25}));  // double, unlike vertices
    EXPECT_EQ(info.normals,
              (std::vector<vector3d>{{0.1, 0.3, -static_cast<double>(0.2f)}, {0, 0, -1}}));
    EXPECT_EQ(info.faces.size(), 1u);
}

/// What a number token reads as: the longest decimal number at its start by std::from_chars
/// (after one '+'), or 0 when it has none or is out of range.
template <class T>
T reference_number(const std::string& token) {
    const char* p = token.data();
    const char* const end = p + token.size();
    if (p != end && *p == '+') ++p;
    const char* q = p != end && *p == '-' ? p + 1 : p;
    if (q == end || !(std::isdigit(static_cast<unsigned char>(*q)) || *q == '.')) return T(0);
    T value = T(0);
    return std::from_chars(p, end, value).ec == std::errc() ? value : T(0);
}

TEST(ObjParse, NumbersEqualTheCorrectlyRoundedValueOnARandomSample) {
    // Tokens around the limits of exact computation: up to 21 integer and 25 fraction digits,
    // runs of zeros, signs, exponents and junk after the number.
    std::mt19937_64 random(20240611);
    const auto pick = [&random](int n) { return static_cast<int>(random() % unsigned(n)); };
    const auto digits = [&](int n) {
        std::string s;
        for (int i = 0; i < n; ++i) s += pick(3) == 0 ? '0' : static_cast<char>('0' + pick(10));
        return s;
    };
    const char* const signs[] = {"", "", "", "-", "+", "+-", "++"};
    const char* const tails[] = {"", "", "", "", "", "e", "e-7", "E+300", "e-320", "x", "/2", "."};
    const auto number = [&]() {
        std::string t = digits(pick(22));
        if (pick(4) != 0) t += "." + digits(pick(26));
        t += tails[pick(12)];
        return t.empty() ? std::string(".") : t;  // a token in any case
    };
    // Each vertex's x unsigned, so that the normalised value stays exact; vt carries it again
    // and a signed one.
    std::string text = "v 0 0 0\n";
    std::vector<vector3d> vertices{{0, 0, 0}};
    std::vector<double> expected_uv, uv;
    for (int i = 0; i < 50000; ++i) {
        const std::string x = number(), signed_number = signs[pick(7)] + number();
        text += "v " + x + " 0 0\nvt " + x + " " + signed_number + "\n";
        vertices.emplace_back(reference_number<float>(x), 0, 0);
        expected_uv.insert(expected_uv.end(),
                           {reference_number<double>(x), reference_number<double>(signed_number)});
    }
    const obj_info info = parse(text);
    for (const auto& t : info.texcoords) uv.insert(uv.end(), {t.u, t.v});
    EXPECT_EQ(info.vertices, normalised(vertices));
    EXPECT_EQ(uv, expected_uv);
}

TEST(ObjParse, VectorsGrowAheadOfAStreamOfKnownSizeAndKeepLittleSpare) {
    // The faces' room planned from the rate of their lines (doubling would leave 65536); the
    // vertices' room, planned as if they went on to the end, given back.
    std::string text;
    for (int i = 0; i < 5000; ++i) text += "v 1 2 3\n";
    for (int i = 0; i < 40000; ++i) text += "f 1 2 3\n";
    const obj_info info = parse(text);
    EXPECT_TRUE(info.vertices.size() == 5000u && info.vertices.capacity() < 5000u * 9 / 8);
    EXPECT_TRUE(info.faces.size() == 40000u && info.faces.capacity() < 40000u * 9 / 8);
}

TEST(ObjParse, ComputedNormalOfBadOrDegenerateFaceIsZero) {
    const obj_info info =
        parse("v 0 0 2\nv 1 0 2\nv 0 1 2\nf 1 2 4\nf 0 1 2\nf 1 2 2\nf 1 2 3 99\n");
    EXPECT_EQ(info.normals, (std::vector<vector3d>{{}, {}, {}, {0, 1, 0}}));
    EXPECT_EQ(info.faces[3].corners[3], idx(98, -1, 3));  // only the first three corners count
}

TEST(ObjParse, ReplacesTheRecordNormalisedOrLeavesItOnAStreamException) {
    obj_info info = parse("v 5 5 5\nvt 1 1\nvn 1 0 0\nusemtl m\nf 1 1 1\n");
    info = parse("v -1 1 3\nv 1 2 4\n");
    EXPECT_EQ(materials_of(info), std::vector<std::string>{"__default__"});
    // y 1..2 becomes z -2..-1, scaled to -20000..-10000 and moved up to 0..10000.
    EXPECT_EQ(info.vertices, (std::vector<vector3d>{{0, 0, 10000}, {20000, 10000, 0}}));
    EXPECT_EQ(box_of(info), (std::vector<double>{0, 20000, 0, 10000, 0, 10000}));
    EXPECT_TRUE(info.texcoords.empty() && info.normals.empty() && info.faces.empty());

    std::istringstream throwing("v 4 5 6\nv 7 8 9\n");
    throwing.exceptions(std::ios::failbit);
    EXPECT_THROW(obj_import::parse_obj(throwing, info), std::ios_base::failure);
    EXPECT_EQ(info.vertices, (std::vector<vector3d>{{0, 0, 10000}, {20000, 10000, 0}}));

    std::istringstream failed("v 1 2 3\nf 1 1 1\n");
    failed.setstate(std::ios::failbit);
    obj_import::parse_obj(failed, info);
    for (const obj_info& empty : {parse("\n\n\r\n \t \n"), info}) {
        EXPECT_EQ(materials_of(empty), std::vector<std::string>{"__default__"});
        EXPECT_TRUE(empty.vertices.empty() && empty.faces.empty() && empty.normals.empty());
        EXPECT_EQ(box_of(empty), std::vector<double>(6, 0.0));
    }
}

TEST(ObjParse, LongLinesKeepTheirFirst1023CharactersWhereverTheBlocksEnd) {
    const std::string text =
        padded_vertex("1 2 3", 1023) + "\n" +                           // fits exactly
        padded_vertex("1 2 34", 1024) + "\n" +                          // loses its last digit
        padded_vertex("1 2 3 4", 5000) + "\n" +                         // loses all numbers
        "v 5 6 7\n" + "f 1 2 3" + std::string(300000, ' ') + "4 5\n" +  // spans blocks
        "# " + std::string(100000, 'x') + "\nv 8 9 10\n" + "usemtl " + std::string(3000, 'm') +
        "\nf 1 2 3\n" + "v 11 12 13 " + std::string(200000, '7');  // last, no newline
    const obj_info info = parse(text);
    EXPECT_EQ(info.vertices,
              normalised({{1, 2, 3}, {1, 2, 3}, {5, 6, 7}, {8, 9, 10}, {11, 12, 13}}));
    ASSERT_EQ(info.faces.size(), 2u);
    EXPECT_EQ(info.faces[0].corner_count, 3);  // the corners after the cut are gone
    EXPECT_EQ(materials_of(info).back(), std::string(1023 - 7, 'm'));
    EXPECT_EQ(info.faces[1].material, 1);
    // A line that starts 1023 bytes before the end of the first 64 KB block and runs past it.
    const std::string edge =
        "#" + std::string(64511, 'x') + "\nv 1 2 3" + std::string(1016, ' ') + "v 4 5 6\n";
    EXPECT_EQ(parse(edge).vertices, normalised({{1, 2, 3}}));

    // Lines of every length from 8 to 1100 characters, so that block ends fall everywhere
    // inside and between lines; the lines too long keep only their keyword.
    std::string lines;
    std::vector<vector3d> kept;
    for (int i = 0; i < 4000; ++i) {
        const std::string numbers = std::to_string(i) + " " + std::to_string(2 * i) + " 1";
        const std::size_t length = 8 + static_cast<std::size_t>(i * 277) % 1093;
        if (length <= numbers.size() + 1) continue;
        lines += padded_vertex(numbers, length) + "\n";
        if (length <= 1023) kept.emplace_back(i, 2 * i, 1);
    }
    ASSERT_GT(lines.size(), 4u << 16);
    EXPECT_EQ(parse(lines).vertices, normalised(kept));
}

TEST(ObjNormalise, SwapYzRoundsThroughSinglePrecisionAndTheBoxFollowsInDouble) {
    obj_info info;
    info.vertices = {
        {0.1, 0.1, 0.3}, {0, 1e300, 0}, {0, -1e300, 0}, {0, FLT_MAX * 1.0000000001, 0}};
    info.normals = {{0, 0.7, 0.2}};
    info.bounding_box = {1, 2, 0.1, 0.2, 5, 6};
    obj_import::swap_all_yz(info);
    EXPECT_EQ(info.vertices[0], vector3d(0.1, 0.3, -static_cast<double>(0.1f)));
    EXPECT_EQ((std::vector<double>{info.vertices[1].z, info.vertices[2].z, info.vertices[3].z}),
              (std::vector<double>{-INFINITY, INFINITY, -static_cast<double>(FLT_MAX)}));
    EXPECT_EQ(info.normals[0], vector3d(0, 0.2, -static_cast<double>(0.7f)));
    EXPECT_EQ(box_of(info), (std::vector<double>{1, 2, 5, 6, -0.2, -0.1}));

    info.vertices = {{3, -1, 2}, {-2, 4, 2}, {0, 0, 7}};
    info.normals = {{0, 1, 0}};
    obj_import::calc_bounding_box(info);
    obj_import::scale(info, 0.5);
    obj_import::translate(info, vector3d(1, 2, 3));
    EXPECT_EQ(info.vertices[0], vector3d(2.5, 1.5, 4));
    EXPECT_EQ(info.normals[0], vector3d(0, 1, 0));
    EXPECT_EQ(box_of(info), (std::vector<double>{0, 2.5, 1.5, 4, 4, 6.5}));
    obj_import::translate(info, info.vertices[0]);  // the offset may come from the record
    EXPECT_EQ(info.vertices[1], vector3d(2.5, 5.5, 8));
}

// A unit square as a quad in "red", a triangle over it in "blue", another in "red"; y is up.
const std::string two_materials =
    "v 0 0 0\nv 1 0 0\nv 1 0 1\nv 0 0 1\nv 0 1 0\nusemtl red\nf 1 2 3 4\n"
    "usemtl blue\nf 1 5 2\nusemtl red\nf 4 5 1\n";

TEST(ObjToMesh, QuadsBecomeFansWithOneStylePerMaterialAndBadFacesThrow) {
    obj_info info = parse(two_materials);
    custom_mesh m;
    obj_import::obj2mesh(info, "model", m);
    EXPECT_TRUE(m.get_name() == "model" && m.get_vertices() == info.vertices);
    EXPECT_EQ(m.get_faces(), (std::vector<graphics::custom_mesh_face>{
                                 {0, 1, 2, 1}, {0, 2, 3, 1}, {0, 4, 1, 2}, {3, 4, 0, 1}}));
    ASSERT_EQ(m.num_styles(), 3u);
    for (std::uint32_t s = 0; s < 3; ++s)
        EXPECT_TRUE(m.get_style(s).name == materials_of(info)[s] &&
                    m.get_style(s).brush == brush(color(255, 255, 255)) &&
                    m.get_style(s).pen == pen(color(0, 0, 0)));
    const struct {
        std::size_t face;
        int corner, vertex, corner_count;
        const char* message;
    } cases[] = {
        {1, 2, 5, 3, "obj2mesh: face 1: corner 2 has vertex index 5, outside the 5 vertices"},
        {0, 3, -1, 4, "obj2mesh: face 0: corner 3 has vertex index -1, outside the 5 vertices"},
        {2, 0, 0, 2, "obj2mesh: face 2: 2 corners, 3 or 4 are needed"},
        {2, 0, 0, 5, "obj2mesh: face 2: 5 corners, 3 or 4 are needed"}};
    for (const auto& c : cases) {
        obj_info bad = info;
        bad.faces[c.face].corners[static_cast<std::size_t>(c.corner)].vertex = c.vertex;
        bad.faces[c.face].corner_count = c.corner_count;
        custom_mesh out = m;
        try {
            obj_import::obj2mesh(bad, "broken", out);
            ADD_FAILURE() << "no exception for " << c.message;
        } catch (const obj_import::bad_face& e) {
            EXPECT_STREQ(e.what(), c.message);
            EXPECT_EQ(e.face_index(), c.face);
        }
        EXPECT_TRUE(out.get_name() == "model" && out.get_faces() == m.get_faces());
    }
    // A target that held a larger model is refilled to the same mesh as a fresh one.
    custom_mesh reused;
    obj_import::obj2mesh(parse(two_materials + two_materials + "usemtl green\nf 1 2 3\n"), "big",
                         reused);
    obj_import::obj2mesh(info, "model", reused);
    EXPECT_TRUE(reused.get_name() == "model" && reused.get_vertices() == m.get_vertices() &&
                reused.get_faces() == m.get_faces() && style_names(reused) == materials_of(info));

    info.faces[2].material = 17;  // copied as it is, even naming no material
    obj_import::obj2mesh(info, "odd", m);
    EXPECT_EQ(m.get_face(3).style, 17);

    // Drawn by a custom object: y became -z, the apex at z = 0, the square's normal away from it.
    graphics::get_global_mesh_map().add_mesh(std::move(m));
    primitives::custom object("odd");
    object.set_brush(brush(color(9, 9, 9)));
    const indexedfaceset& fs = object.get_mesh();
    ASSERT_TRUE(fs.num_faces() == 4u && fs.num_styles() == 3u);
    EXPECT_TRUE(fs.styles()[2].name == "blue" && fs.get_face(2).style == 2 &&
                fs.get_face(2).brush == brush(color(255, 255, 255)));
    EXPECT_TRUE(fs.get_vertex(4) == vector3d(0, 0, 0) &&
                fs.get_vertex(2) == vector3d(10000, 10000, 10000) &&
                fs.get_face(0).normal == vector3d(0, 0, 1));
    graphics::get_global_mesh_map().clear();
}

}  // namespace
