// facet render end to end: the built tool draws small scenes and the tests read the PNGs back.
#include <algorithm>
#include <string>

#include "facet/spaces.h"
#include "gl/view.h"
#include "png_image.h"
#include "tool_fixture.h"

namespace facet_tool_test {
namespace {

// A 20 x 20 floor at y = 0, a box 3 above its centre and a light whose shadow of it is at (4, 0,
// 0).
facet::scene shadow_scene(const graphics::color& box_color) {
    facet::scene s;
    auto& floor = s.emplace<primitives::quad>();
    floor.set_name("floor");
    for (unsigned i = 0; i < 4; ++i) floor[i] = floor[i] * 10.0;
    floor.set_brush(graphics::brush(graphics::color(200, 200, 200)));
    auto& box = s.emplace<primitives::box>(2.0, 2.0, 2.0);
    box.set_name("box");
    box.set_position(vector3d(-1.0, 3.0, -1.0));
    box.set_brush(graphics::brush(box_color));
    s.emplace<primitives::light>().set_position(vector3d(-20.0, 24.0, 0.0));
    return s;
}

class render_test : public tool_test {
protected:
    // `s` drawn at 160 x 120 from (0, 14, 16) towards the origin.
    facet_gl::rgba_image draw(const facet::scene& s, const std::string& options = "") {
        facet::write_scene(s, path("scene.txt"));
        EXPECT_EQ(run("render scene.txt -o out.png --size 160x120 --eye 0,14,16 --target 0,0,0 " +
                      options),
                  0)
            << err;
        return facet_tool::read_png(path("out.png"));
    }
    // Channel c (3: r + g + b) of the darkest pixel within r of where p lands (or of pixel p).
    static int at(const facet_gl::rgba_image& img, const vector3d& p, int c = 3, int r = 0,
                  bool pixel = false) {
        const facet_gl::view v = facet_gl::make_view(facet::world_box{}, 160, 120,
                                                     vector3d(0, 14, 16), vector3d(0, 0, 0));
        const vector3d s = pixel ? p : project(p, v.cam, v.proj);
        int best = 1 << 20;
        for (int dy = -r; dy <= r; ++dy)
            for (int dx = -r; dx <= r; ++dx) {
                const auto* q = &img.pixels[((int(s.y) + dy) * img.width + int(s.x) + dx) * 4];
                best = std::min(best, c == 3 ? q[0] + q[1] + q[2] : int(q[c]));
            }
        return best;
    }
};

TEST_F(render_test, SizeBackgroundAndTheReferenceImage) {
    facet::write_scene(shadow_scene(graphics::color(90, 140, 220)), path("scene.txt"));
    ASSERT_EQ(run("render scene.txt -o out.png --size 97x61 -q"), 0) << err;
    EXPECT_TRUE(err.empty()) << err;
    const facet_gl::rgba_image framed = facet_tool::read_png(path("out.png"));
    EXPECT_TRUE(framed.width == 97 && framed.height == 61);
    EXPECT_NE(at(framed, {48, 30, 0}, 3, 0, true), 236 + 239 + 244);  // the floor fills the view

    const facet_gl::rgba_image img = draw(shadow_scene(graphics::color(90, 140, 220)));
    EXPECT_EQ(std::vector<int>(img.pixels.begin(), img.pixels.begin() + 3),
              (std::vector<int>{236, 239, 244}));  // the background
    const facet_gl::rgba_image ref =
        facet_tool::read_png(std::string(FACET_SOURCE_DIR) + "/tests/tool/data/reference.png");
    ASSERT_TRUE(img.width == ref.width && img.height == ref.height);
    long total = 0, off = 0;
    for (std::size_t i = 0; i < img.pixels.size(); ++i) {
        const int d = std::abs(img.pixels[i] - ref.pixels[i]);
        total += d;
        off += d > 40;
    }
    EXPECT_LT(static_cast<double>(total) / img.pixels.size(), 1.0);
    EXPECT_LT(off, static_cast<long>(img.pixels.size() / 200));
}

TEST_F(render_test, ShadowsDarkenTheFloorButNotTheCasterAndOutlinesTheEdges) {
    const facet::scene s = shadow_scene(graphics::color(200, 200, 200));
    const auto lit = draw(s, "--no-outlines"), plain = draw(s, "--no-outlines --no-shadows");
    const auto outlined = draw(s);
    const vector3d shadow(4, 0, 0), open_floor(4, 0, -4), box_top(0, 5, 0);
    EXPECT_LT(at(lit, shadow), at(plain, shadow) * 6 / 10);
    EXPECT_EQ(at(lit, open_floor), at(plain, open_floor));
    EXPECT_EQ(at(lit, box_top), at(plain, box_top));  // not shadowed by its own volume
    for (const vector3d& edge : {vector3d(0, 5, 1), vector3d(-1, 4, 1)}) {
        EXPECT_LT(at(outlined, edge, 3, 1), 60);
        EXPECT_GT(at(lit, edge, 3, 1), 150);
    }
}

TEST_F(render_test, BlackAndWhiteModeGivesOnlyGraysWithBlackLines) {
    facet::scene s = shadow_scene(graphics::color(230, 40, 40));
    auto& marker = s.emplace<primitives::polyline>();
    marker.set_points({vector3d(-8.0, 0.1, 5.0), vector3d(8.0, 0.1, 5.0)});
    marker.set_pen(graphics::pen(graphics::color(0, 200, 0), 3));
    EXPECT_GT(at(draw(s), {0, 0.1, 5}, 1), 150);  // the pen's green
    const facet_gl::rgba_image img = draw(s, "--bw");
    for (std::size_t i = 0; i < img.pixels.size(); i += 4)
        ASSERT_TRUE(img.pixels[i] == img.pixels[i + 1] && img.pixels[i] == img.pixels[i + 2]) << i;
    EXPECT_EQ(img.pixels[0], 255);              // white background
    EXPECT_LT(at(img, {0, 5, 1}, 3, 1), 60);    // black outline
    EXPECT_LT(at(img, {0, 0.1, 5}, 3, 1), 60);  // the line in black
    EXPECT_GT(at(img, {0, 5, 0}), 600);         // the red box top: white
}

TEST_F(render_test, TexturesFromMaterialReferencesAndLabelsAreDrawn) {
    // A 2 x 2 uncompressed 24-bit TGA, pixels blue-green-red: pure red.
    write("red.tga", std::string("\0\0\2\0\0\0\0\0\0\0\0\0\2\0\2\0\x18\0", 18) +
                         std::string("\0\0\xff\0\0\xff\0\0\xff\0\0\xff", 12));
    facet::scene s = shadow_scene(graphics::color(255, 255, 255));
    s.find("floor")->set_material_ref_id("hatch");
    s.find("box")->set_material_ref_id("red.tga");
    auto& label = s.emplace<primitives::text>();
    label.set_text("x");
    label.set_position(vector3d(-7.0, 0.0, 7.0));
    const facet_gl::rgba_image img = draw(s, "--no-shadows --no-outlines");
    EXPECT_GT(at(img, {0, 5, 0}, 0), 2 * at(img, {0, 5, 0}, 1));  // the red image, lit
    int dark = 0, light = 0;  // the hatch: black stripes on white across the floor
    for (int x = 0; x < 160; ++x) {
        const int v = at(img, vector3d(x, 90, 0), 3, 0, true);
        dark += v < 150;
        light += v > 450;
    }
    EXPECT_TRUE(dark > 0 && light > 0);
    EXPECT_LT(at(img, {-7, 0, 7}, 3, 4), 120);  // dark text on a white card

    s.find("box")->set_material_ref_id("missing.tga");
    facet::write_scene(s, path("scene.txt"));
    EXPECT_EQ(run("render scene.txt -o out.png"), 1);
    EXPECT_NE(err.find("missing.tga"), std::string::npos) << err;
}

}  // namespace
}  // namespace facet_tool_test
