#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <ios>
#include <sstream>
#include <string>
#include <vector>

#include "facet/obj_import.h"
#include "obj_test_support.h"

using obj_import::idx;
using obj_import::obj_info;
using obj_test::normalised;
using obj_test::parse;

namespace {

std::vector<std::string> material_names(const obj_info& info) {
    std::vector<std::string> names;
    for (const auto& m : info.materials) names.push_back(m.name);
    return names;
}

std::vector<int> face_materials(const obj_info& info) {
    std::vector<int> materials;
    for (const auto& f : info.faces) materials.push_back(f.material);
    return materials;
}

// One triangle over three vertices plus a normal, so that the corners' normal fields are kept
// as read.
const std::string three_vertices = "v 0 0 0\nv 1 0 0\nv 0 1 0\nvn 0 0 1\n";

}  // namespace

TEST(ObjParse, VerticesAndFacesOnlyGetDefaultMaterialAndComputedNormals) {
    const obj_info info = parse("v 0 0 0\nv 2 0 0\nv 0 2 0\nv 0 0 2\nf 1 2 3\nf 1 4 2\n");
    EXPECT_EQ(material_names(info), std::vector<std::string>{"__default__"});
    EXPECT_EQ(face_materials(info), (std::vector<int>{0, 0}));
    ASSERT_EQ(info.normals.size(), 2u);
    // (0, 0, 1) and (0, 1, 0) computed from the file's axes, then y and z swapped: (x, z, -y).
    EXPECT_EQ(info.normals[0], vector3d(0, 1, 0));
    EXPECT_EQ(info.normals[1], vector3d(0, 0, -1));
    for (int f = 0; f < 2; ++f) {
        EXPECT_EQ(info.faces[f].corner_count, 3);
        for (int c = 0; c < 3; ++c) EXPECT_EQ(info.faces[f].corners[c].normal, f);
        EXPECT_EQ(info.faces[f].corners[0].texcoord, -1);
        EXPECT_EQ(info.faces[f].corners[3], idx());  // unused
    }
}

TEST(ObjParse, UsemtlFindsMaterialsByName) {
    const obj_info info = parse(three_vertices +
                                "f 1 2 3\nusemtl red\nf 1 2 3\nusemtl blue\nf 1 2 3\n"
                                "usemtl red\nf 1 2 3\nusemtl\nf 1 2 3\nUSEMTL blue\nf 1 2 3\n"
                                "usemtl __default__ extra\nf 1 2 3\n");
    EXPECT_EQ(material_names(info), (std::vector<std::string>{"__default__", "red", "blue"}));
    EXPECT_EQ(face_materials(info), (std::vector<int>{0, 1, 2, 1, 1, 1, 0}));
}

TEST(ObjParse, FaceCornerCountsAndTokens) {
    const obj_info info = parse(three_vertices +
                                "f 1 2 3 4 5\n"
                                "f 7//3 1/2 1/2/3 +4\n"
                                "f x/2/3 5/x/3 3// 3/4/\n"
                                "f -1/-2/-3 0 2147483647 -2147483647\n"
                                "f 4294967297 2147483648 1.5/2 1\n"  // no wrap to 32 bits
                                "f 1 2\nf\n");
    ASSERT_EQ(info.faces.size(), 5u);
    EXPECT_EQ(info.faces[0].corner_count, 4);
    EXPECT_EQ(info.faces[0].corners[3], idx(3, -1, -1));
    const std::vector<std::vector<idx>> expected = {
        {{6, -1, 2}, {0, 1, -1}, {0, 1, 2}, {3, -1, -1}},
        {{-1, -1, -1}, {4, -1, -1}, {2, -1, -1}, {2, 3, -1}},
        {{-2, -3, -4}, {-1, -1, -1}, {2147483646, -1, -1}, {-2147483647 - 1, -1, -1}},
        {{-1, -1, -1}, {-1, -1, -1}, {0, -1, -1}, {0, -1, -1}},
    };
    for (std::size_t f = 0; f < expected.size(); ++f) {
        for (std::size_t c = 0; c < 4; ++c) {
            EXPECT_EQ(info.faces[f + 1].corners[c], expected[f][c]) << "face " << f + 1;
        }
    }
    // A trailing comment is one more corner token; it reads as 0.
    const obj_info commented = parse(three_vertices + "f 1 2 3 # note\n");
    EXPECT_EQ(commented.faces[0].corner_count, 4);
    EXPECT_EQ(commented.faces[0].corners[3], idx(-1, -1, -1));
}

TEST(ObjParse, VertexRulesAndSinglePrecision) {
    const obj_info info = parse(
        "v 0.1 0.2 0.3 0.4 0.5\nv 1 2\nv\nv a b c\nv 1e39 -1e-50 inf\nv nan 0x10 +2.5\n"
        "v 1.5abc -.5 5.\n");
    obj_info raw;
    raw.vertices = {{0.1f, 0.2f, 0.3f}, {0, 0, 0}, {0, 0, 0}, {0, 0, 2.5}, {1.5, -0.5, 5}};
    const obj_info expected = normalised(raw);
    ASSERT_EQ(info.vertices.size(), expected.vertices.size());
    for (std::size_t i = 0; i < expected.vertices.size(); ++i) {
        EXPECT_EQ(info.vertices[i], expected.vertices[i]) << "vertex " << i;
    }
}

TEST(ObjParse, TexcoordsNeedExactlyTwoAndNormalsExactlyThreeNumbers) {
    const obj_info info = parse(
        "vt 0.1 0.2\nvt 0.5\nvt 0.5 0.5 0\nvt x 1e400\n"
        "vn 0.1 0.2 0.3\nvn 1 2\nvn 1 2 3 4\nvn 0 1 0\n");
    ASSERT_EQ(info.texcoords.size(), 2u);
    EXPECT_EQ(info.texcoords[0].u, 0.1);  // double precision, unlike vertices
    EXPECT_EQ(info.texcoords[0].v, 0.2);
    EXPECT_EQ(info.texcoords[1].u, 0.0);
    EXPECT_EQ(info.texcoords[1].v, 0.0);
    ASSERT_EQ(info.normals.size(), 2u);
    EXPECT_EQ(info.normals[0], vector3d(0.1, 0.3, -static_cast<double>(0.2f)));
    EXPECT_EQ(info.normals[1], vector3d(0, 0, -1));
    EXPECT_TRUE(info.faces.empty());
}

TEST(ObjParse, SkipsCommentsBlankLinesAndOtherKeywords) {
    const obj_info info = parse(
        "# v 9 9 9\n\n \t\r\nmtllib a.mtl\no thing\ng group\ns 1\nvp 1 2 3\nV 1 2 3\n"
        "\tv\t1\t2\t3\r\nv 4 5 6\r\n  # v 7 8 9\nf 1 2 1");  // no final newline
    obj_info raw;
    raw.vertices = {{1, 2, 3}, {4, 5, 6}};
    EXPECT_EQ(info.vertices, normalised(raw).vertices);
    EXPECT_EQ(info.faces.size(), 1u);
}

TEST(ObjParse, ComputedNormalOfBadOrDegenerateFaceIsZero) {
    const obj_info info =
        parse("v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 4\nf 0 1 2\nf 1 2 2\nf 1 2 3 99\n");
    ASSERT_EQ(info.faces.size(), 4u);
    ASSERT_EQ(info.normals.size(), 4u);
    for (int f = 0; f < 3; ++f) EXPECT_EQ(info.normals[f], vector3d()) << "face " << f;
    EXPECT_EQ(info.normals[3], vector3d(0, 1, 0));  // only the first three corners count
    EXPECT_EQ(info.faces[3].corners[3], idx(98, -1, 3));
}

TEST(ObjParse, ReplacesTheRecordAndNormalisesIt) {
    obj_info info = parse("v 5 5 5\n");
    info = parse("v -1 1 3\nv 1 2 4\n");
    ASSERT_EQ(info.vertices.size(), 2u);
    EXPECT_EQ(info.materials.size(), 1u);
    // y 1..2 becomes z -2..-1, scaled to -20000..-10000 and moved up to 0..10000.
    EXPECT_EQ(info.vertices[0], vector3d(0, 0, 10000));
    EXPECT_EQ(info.vertices[1], vector3d(20000, 10000, 0));
    const obj_import::bounding_box_3d& b = info.bounding_box;
    EXPECT_EQ(b.x_min, 0);
    EXPECT_EQ(b.x_max, 20000);
    EXPECT_EQ(b.y_max, 10000);
    EXPECT_EQ(b.z_max, 10000);
}

TEST(ObjParse, StreamExceptionLeavesRecordUnchanged) {
    obj_info info = parse("v 1 2 3\n");
    const obj_info before = info;
    std::istringstream in("v 4 5 6\nv 7 8 9\n");
    in.exceptions(std::ios::failbit);
    EXPECT_THROW(obj_import::parse_obj(in, info), std::ios_base::failure);
    EXPECT_EQ(info.vertices, before.vertices);
}

TEST(ObjNormalise, SwapYzRoundsThroughSinglePrecision) {
    obj_info info;
    info.vertices = {
        {0.1, 0.1, 0.3}, {0, 1e300, 0}, {0, -1e300, 0}, {0, FLT_MAX * 1.0000000001, 0}};
    info.normals = {{0, 0.7, 0.2}};
    info.bounding_box = {1, 2, 0.1, 0.2, 5, 6};
    obj_import::swap_all_yz(info);
    EXPECT_EQ(info.vertices[0], vector3d(0.1, 0.3, -static_cast<double>(0.1f)));
    EXPECT_EQ(info.vertices[1].z, -INFINITY);
    EXPECT_EQ(info.vertices[2].z, INFINITY);
    EXPECT_EQ(info.vertices[3].z, -static_cast<double>(FLT_MAX));
    EXPECT_EQ(info.normals[0], vector3d(0, 0.2, -static_cast<double>(0.7f)));
    const obj_import::bounding_box_3d& b = info.bounding_box;
    EXPECT_EQ(b.x_min, 1);
    EXPECT_EQ(b.x_max, 2);
    EXPECT_EQ(b.y_min, 5);
    EXPECT_EQ(b.y_max, 6);
    EXPECT_EQ(b.z_min, -0.2);  // the box stays in double precision
    EXPECT_EQ(b.z_max, -0.1);
}

TEST(ObjNormalise, BoundingBoxScaleAndTranslate) {
    obj_info info;
    info.bounding_box = {1, 2, 3, 4, 5, 6};
    obj_import::calc_bounding_box(info);  // no vertices: left alone
    EXPECT_EQ(info.bounding_box.z_max, 6);
    info.vertices = {{3, -1, 2}, {-2, 4, 2}, {0, 0, 7}};
    info.normals = {{0, 1, 0}};
    obj_import::calc_bounding_box(info);
    obj_import::scale(info, 0.5);
    obj_import::translate(info, vector3d(1, 2, 3));
    EXPECT_EQ(info.vertices[0], vector3d(2.5, 1.5, 4));
    EXPECT_EQ(info.normals[0], vector3d(0, 1, 0));
    const obj_import::bounding_box_3d& b = info.bounding_box;
    EXPECT_EQ(std::vector<double>({b.x_min, b.x_max, b.y_min, b.y_max, b.z_min, b.z_max}),
              std::vector<double>({0, 2.5, 1.5, 4, 4, 6.5}));
    // The offset may come from the record itself.
    obj_import::translate(info, info.vertices[0]);
    EXPECT_EQ(info.vertices[1], vector3d(2.5, 5.5, 8));
}

TEST(ObjInfo, SwapExchangesStorage) {
    obj_info a = parse("v 1 2 3\nusemtl m\n");
    obj_info b;
    b.bounding_box.x_max = 7;
    const vector3d* storage = a.vertices.data();
    a.swap(b);
    EXPECT_TRUE(a.vertices.empty());
    EXPECT_EQ(a.bounding_box.x_max, 7);
    EXPECT_EQ(b.vertices.data(), storage);
    EXPECT_EQ(b.materials.size(), 2u);
}
