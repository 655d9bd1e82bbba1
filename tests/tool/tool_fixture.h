// The tool tests' set-up: a fresh folder per test, sample files, the tool run in it, the validator.
#pragma once

#include <gtest/gtest.h>

#include <sys/wait.h>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>

#include "facet/primitives.h"
#include "facet/scene.h"

namespace facet_tool_test {

class tool_test : public ::testing::Test {
protected:
    void SetUp() override {
        const auto* info = ::testing::UnitTest::GetInstance()->current_test_info();
        dir = std::string(FACET_TEST_WORK_DIR) + "/" + info->test_suite_name() + "." + info->name();
        ASSERT_EQ(std::system(("rm -rf '" + dir + "' && mkdir -p '" + dir + "'").c_str()), 0);
    }
    std::string path(const std::string& name) const { return dir + "/" + name; }
    std::string read(const std::string& name) const {
        std::ostringstream s;
        s << std::ifstream(path(name), std::ios::binary).rdbuf();
        return s.str();
    }
    void write(const std::string& name, const std::string& text) const {
        std::ofstream(path(name), std::ios::binary) << text;
    }
    bool exists(const std::string& name) const { return std::ifstream(path(name)).good(); }

    // Runs the tool in the test's folder: its exit status (-1 for none), out and err; under
    // LeakSanitizer, what Mesa's off-screen library keeps until exit is not reported.
    int run(const std::string& args) {
        const int raw = std::system(("cd '" + dir + "' && LSAN_OPTIONS=suppressions='" +
                                     FACET_SOURCE_DIR "/tests/tool/data/lsan_mesa.supp" +
                                     "':print_suppressions=0 '" FACET_TOOL_PATH "' " + args +
                                     " >stdout.txt 2>stderr.txt")
                                        .c_str());
        out = read("stdout.txt");
        err = read("stderr.txt");
        return raw != -1 && WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
    }

    // The validator (from scripts/bootstrap) finds no error in the file; skips without node.
    void expect_valid(const std::string& name) const {
        if (std::system("command -v node >/dev/null 2>&1") != 0) GTEST_SKIP() << "no node";
        EXPECT_EQ(
            std::system(("node '" FACET_SOURCE_DIR "/tests/tool/validate_gltf.js' '" + path(name) +
                         "' '" FACET_SOURCE_DIR "/build/gltf-validator/node_modules' >'" +
                         path("v.txt") + "' 2>&1")
                            .c_str()),
            0)
            << name << ":\n"
            << read("v.txt");
    }

    // scene.txt: box "base" (children: cylinder "post", light "sun"), line "ray".
    // square.obj: two triangles of a unit square and a zero-area triangle.
    void write_samples() {
        facet::scene s;
        auto& base = s.emplace<primitives::box>(1.0, 2.0, 3.0);
        base.set_name("base");
        base.set_position(vector3d(1.0, 0.0, 0.0));
        base.set_orientation(vector3d(0.0, 1.0, 0.0), 90.0);
        base.set_brush(graphics::brush(graphics::color(200, 100, 50, 128)));
        auto post = std::make_unique<primitives::cylinder>(4.0, 0.5);
        post->set_name("post");
        post->set_position(vector3d(0.0, 2.0, 0.0));
        s.add(std::move(post), &base);
        s.emplace<primitives::line>(vector3d(0, 0, 0), vector3d(0, 5, 0)).set_name("ray");
        auto sun = std::make_unique<primitives::light>();
        sun->set_name("sun");
        s.add(std::move(sun), &base);
        facet::write_scene(s, path("scene.txt"));
        write("square.obj",
              "v 0 0 0\nv 1 0 0\nv 1 1 0\nv 0 1 0\nv 2 0 0\nf 1 2 3\nf 1 3 4\nf 1 2 5\n");
    }

    std::string dir, out, err;
};

}  // namespace facet_tool_test
