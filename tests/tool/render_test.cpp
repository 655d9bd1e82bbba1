// facet render end to end: the built tool draws small scenes and the tests read the PNGs back.
#include <gtest/gtest.h>

#include <sys/stat.h>
#include <sys/wait.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>

#include "facet/math3d.h"
#include "facet/primitives.h"
#include "facet/scene.h"
#include "gl/view.h"
#include "png_image.h"

namespace {

using facet_gl::rgba_image;

struct rgb {
    int r, g, b;
    int sum() const { return r + g + b; }
};

// A floor quad (y = 0, 20 x 20), a box floating 3 units above its centre and a light up to the
// left, so that the box's shadow falls on the floor around (4, 0, 0), in sight.
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

class render_test : public ::testing::Test {
protected:
    void SetUp() override {
        const auto* info = ::testing::UnitTest::GetInstance()->current_test_info();
        dir = std::string(FACET_TEST_WORK_DIR) + "/render_" + info->name();
        std::system(("rm -rf '" + dir + "' && mkdir -p '" + dir + "'").c_str());
        scene_path = dir + "/scene.txt";
        png = dir + "/out.png";
    }

    void write(const facet::scene& s) { facet::write_scene(s, scene_path); }

    // Runs `facet render <args>`; returns the exit status, stderr in `err`. Under
    // LeakSanitizer, what Mesa's off-screen library keeps until exit is not reported.
    int render(const std::string& args) {
        const std::string err_path = dir + "/stderr.txt";
        const std::string lsan = std::string("LSAN_OPTIONS=suppressions=") + FACET_SOURCE_DIR +
                                 "/tests/tool/data/lsan_mesa.supp:print_suppressions=0 ";
        const int raw = std::system(
            (lsan + FACET_TOOL_PATH + " render " + args + " 2>'" + err_path + "'").c_str());
        std::ifstream in(err_path);
        std::ostringstream text;
        text << in.rdbuf();
        err = text.str();
        return WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
    }

    // Renders the scene file at 160 x 120 from `view_args`, reads the image back.
    rgba_image draw(const std::string& extra = "") {
        EXPECT_EQ(render("'" + scene_path + "' -o '" + png + "' --size 160x120 " + view_args + " " +
                         extra),
                  0)
            << err;
        return facet_tool::read_png(png);
    }

    // Where the world point p lands in the 160 x 120 picture (pixels, y down).
    static void project(const vector3d& p, int& x, int& y) {
        const facet_gl::view v = facet_gl::make_view(facet::world_box{}, 160, 120, eye, target);
        matrix44d cam, screen;
        v.cam.get_matrix(cam);
        v.proj.get_matrix(screen);
        const vector3d s = transform_vector(screen * cam, p);
        x = static_cast<int>(s.x);
        y = static_cast<int>(s.y);
    }

    static rgb at(const rgba_image& img, int x, int y) {
        const std::uint8_t* p = &img.pixels[(static_cast<std::size_t>(y) * img.width + x) * 4];
        return {p[0], p[1], p[2]};
    }
    static rgb at(const rgba_image& img, const vector3d& world) {
        int x = 0, y = 0;
        project(world, x, y);
        return at(img, x, y);
    }
    // The darkest pixel sum within `r` pixels of where `world` lands.
    static int darkest_near(const rgba_image& img, const vector3d& world, int r) {
        int x = 0, y = 0, best = 3 * 255;
        project(world, x, y);
        for (int dy = -r; dy <= r; ++dy)
            for (int dx = -r; dx <= r; ++dx) best = std::min(best, at(img, x + dx, y + dy).sum());
        return best;
    }

    static constexpr vector3d eye{0.0, 14.0, 16.0};
    static constexpr vector3d target{0.0, 0.0, 0.0};
    const std::string view_args = "--eye 0,14,16 --target 0,0,0";
    std::string dir, scene_path, png, err;
};

constexpr vector3d render_test::eye;
constexpr vector3d render_test::target;

TEST_F(render_test, ImageHasTheRequestedSizeAndBackgroundWhereNothingIsDrawn) {
    write(shadow_scene(graphics::color(90, 140, 220)));
    ASSERT_EQ(render("'" + scene_path + "' -o '" + png + "' --size 97x61 -q"), 0) << err;
    const rgba_image framed = facet_tool::read_png(png);
    EXPECT_EQ(framed.width, 97);
    EXPECT_EQ(framed.height, 61);
    EXPECT_TRUE(err.empty()) << err;

    const rgba_image img = draw();
    ASSERT_EQ(img.width, 160);
    ASSERT_EQ(img.height, 120);
    const rgb corner = at(img, 0, 0);
    EXPECT_EQ(corner.r, 236);
    EXPECT_EQ(corner.g, 239);
    EXPECT_EQ(corner.b, 244);
    // The framed view keeps the whole floor inside the picture: its far corners are drawn.
    EXPECT_NE(at(framed, 48, 30).sum(), corner.sum());
}

TEST_F(render_test, ShadowDarkensTheFloorUnderTheBoxButNotTheBoxTop) {
    write(shadow_scene(graphics::color(200, 200, 200)));
    const rgba_image lit = draw("--no-outlines");
    const rgba_image unshadowed = draw("--no-outlines --no-shadows");
    const vector3d in_shadow(4.0, 0.0, 0.0), open_floor(4.0, 0.0, -4.0), box_top(0.0, 5.0, 0.0);

    const int shadow = at(lit, in_shadow).sum();
    EXPECT_LT(shadow, at(unshadowed, in_shadow).sum() * 6 / 10);
    EXPECT_LT(shadow, at(lit, open_floor).sum() * 6 / 10);
    EXPECT_EQ(at(lit, open_floor).sum(), at(unshadowed, open_floor).sum());
    // The lit top of the caster is not shadowed by its own volume.
    EXPECT_GT(at(lit, box_top).sum(), shadow * 2);
    EXPECT_EQ(at(lit, box_top).sum(), at(unshadowed, box_top).sum());
}

TEST_F(render_test, OutlinesDrawDarkPixelsAlongTheBoxEdges) {
    write(shadow_scene(graphics::color(240, 220, 120)));
    const rgba_image with = draw();
    const rgba_image without = draw("--no-outlines");
    // The front top edge of the box (z = 1, y = 5) and its front left vertical edge.
    for (const vector3d& p : {vector3d(0.0, 5.0, 1.0), vector3d(-1.0, 4.0, 1.0)}) {
        EXPECT_LT(darkest_near(with, p, 1), 60);
        EXPECT_GT(darkest_near(without, p, 1), 150);
    }
}

TEST_F(render_test, BlackAndWhiteModeGivesOnlyGraysWithBlackOutlines) {
    facet::scene s = shadow_scene(graphics::color(230, 40, 40));
    auto& marker = s.emplace<primitives::polyline>();
    marker.set_points({vector3d(-8.0, 0.1, 5.0), vector3d(8.0, 0.1, 5.0)});
    marker.set_pen(graphics::pen(graphics::color(0, 200, 0), 3));
    write(s);
    const rgba_image color = draw();
    EXPECT_GT(at(color, vector3d(0.0, 0.1, 5.0)).g, 150);  // the pen's green

    const rgba_image img = draw("--bw");
    for (std::size_t i = 0; i < img.pixels.size(); i += 4) {
        ASSERT_EQ(img.pixels[i], img.pixels[i + 1]) << "pixel " << i / 4;
        ASSERT_EQ(img.pixels[i], img.pixels[i + 2]) << "pixel " << i / 4;
    }
    EXPECT_EQ(at(img, 0, 0).sum(), 3 * 255);                       // white background
    EXPECT_LT(darkest_near(img, vector3d(0.0, 5.0, 1.0), 1), 60);  // black outline
    EXPECT_LT(darkest_near(img, vector3d(0.0, 0.1, 5.0), 1), 60);  // the line in black
    EXPECT_GT(at(img, vector3d(0.0, 5.0, 0.0)).sum(), 600);        // the red box top: white
}

TEST_F(render_test, TexturesFromMaterialReferencesAndLabelsAreDrawn) {
    {
        // A 2 x 2 uncompressed 24-bit TGA, pixels blue-green-red: pure red.
        std::ofstream tga(dir + "/red.tga", std::ios::binary);
        const unsigned char header[18] = {0, 0, 2, 0, 0, 0, 0, 0, 0, 0, 0, 0, 2, 0, 2, 0, 24, 0};
        tga.write(reinterpret_cast<const char*>(header), sizeof header);
        for (int i = 0; i < 4; ++i) tga.write("\0\0\xff", 3);
    }

    facet::scene s = shadow_scene(graphics::color(255, 255, 255));
    s.find("floor")->set_material_ref_id("hatch");
    s.find("box")->set_material_ref_id("red.tga");
    auto& label = s.emplace<primitives::text>();
    label.set_text("x");
    label.set_position(vector3d(-7.0, 0.0, 7.0));
    write(s);
    const rgba_image img = draw("--no-shadows --no-outlines");

    const rgb top = at(img, vector3d(0.0, 5.0, 0.0));
    EXPECT_GT(top.r, 2 * top.g);  // the red image, modulated by the light
    int dark = 0, light = 0;      // the hatch: black stripes on white across the floor
    for (int x = 0; x < 160; ++x) {
        const int v = at(img, x, 90).sum();
        dark += v < 150;
        light += v > 450;
    }
    EXPECT_GT(dark, 0);
    EXPECT_GT(light, 0);
    // The label: dark text on a white card, on top of the floor.
    EXPECT_LT(darkest_near(img, vector3d(-7.0, 0.0, 7.0), 4), 120);

    s.find("box")->set_material_ref_id("missing.tga");
    write(s);
    EXPECT_EQ(render("'" + scene_path + "' -o '" + png + "'"), 1);
    EXPECT_NE(err.find("missing.tga"), std::string::npos) << err;
}

TEST_F(render_test, MatchesTheReferenceImage) {
    const std::string reference = std::string(FACET_SOURCE_DIR) + "/tests/tool/data/reference.png";
    write(shadow_scene(graphics::color(90, 140, 220)));
    const rgba_image img = draw();
    const rgba_image ref = facet_tool::read_png(reference);
    ASSERT_EQ(img.width, ref.width);
    ASSERT_EQ(img.height, ref.height);
    long total = 0, off = 0;
    for (std::size_t i = 0; i < img.pixels.size(); ++i) {
        const int d = std::abs(img.pixels[i] - ref.pixels[i]);
        total += d;
        off += d > 40;
    }
    EXPECT_LT(static_cast<double>(total) / img.pixels.size(), 1.0);
    EXPECT_LT(off, static_cast<long>(img.pixels.size() / 200));
}

TEST_F(render_test, BadInputGivesOneLineAndExitOneAndNoFile) {
    {
        std::ofstream bad(scene_path);
        bad << "beginscene\r\nprimitive box\r\n  name b\r\n  parent\r\n";
    }
    struct bad_case {
        std::string args, names;
    } cases[] = {
        {"'" + dir + "/nothing.txt'", "nothing.txt"},
        {"'" + scene_path + "'", "scene.txt"},
        {"'" + scene_path + "' --size 0x10", "--size"},
        {"'" + scene_path + "' --size 20000x10", "--size"},
        {"'" + scene_path + "' --size wide", "--size"},
    };
    for (const bad_case& c : cases) {
        EXPECT_EQ(render(c.args + " -o '" + png + "'"), 1) << c.args;
        EXPECT_EQ(err.rfind("facet: ", 0), 0u) << err;
        EXPECT_NE(err.find(c.names), std::string::npos) << err;
        EXPECT_EQ(std::count(err.begin(), err.end(), '\n'), 1) << err;
        struct stat st;
        EXPECT_NE(::stat(png.c_str(), &st), 0) << c.args;
    }
}

}  // namespace
