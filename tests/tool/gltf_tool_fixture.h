// Shared set-up of the export, info and convert tests: a fresh folder per test, a small scene
// and OBJ model written there, one helper that runs the built tool, and the glTF validator.
#pragma once

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <sys/wait.h>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>

#include "facet/primitives.h"
#include "facet/scene.h"

namespace facet_tool_test {

struct run_result {
    int status = -1;  ///< the exit status, or -1 when the program did not exit normally
    std::string out;
    std::string err;
};

inline std::string read_text(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream s;
    s << in.rdbuf();
    return s.str();
}

inline bool exists(const std::string& path) {
    struct stat st;
    return ::stat(path.c_str(), &st) == 0;
}

class gltf_tool_test : public ::testing::Test {
protected:
    void SetUp() override {
        const auto* info = ::testing::UnitTest::GetInstance()->current_test_info();
        dir = std::string(FACET_TEST_WORK_DIR) + "/" + info->test_suite_name() + "." + info->name();
        ASSERT_EQ(std::system(("rm -rf '" + dir + "' && mkdir -p '" + dir + "'").c_str()), 0);
    }

    std::string path(const std::string& name) const { return dir + "/" + name; }

    std::string write(const std::string& name, const std::string& text) const {
        std::ofstream(path(name), std::ios::binary) << text;
        return path(name);
    }

    // Runs the tool with `args` (already quoted where needed) inside the test's folder.
    run_result run(const std::string& args) const {
        const std::string out = path("stdout.txt"), err = path("stderr.txt");
        const int raw = std::system(("cd '" + dir + "' && '" FACET_TOOL_PATH "' " + args + " >'" +
                                     out + "' 2>'" + err + "'")
                                        .c_str());
        run_result r;
        if (raw != -1 && WIFEXITED(raw)) r.status = WEXITSTATUS(raw);
        r.out = read_text(out);
        r.err = read_text(err);
        return r;
    }

    // Expects the Khronos validator to find no error in `file`. Skips the test when node is not
    // installed; fails when the validator is missing from build/gltf-validator.
    void expect_valid(const std::string& file) const {
        if (std::system("command -v node >/dev/null 2>&1") != 0)
            GTEST_SKIP() << "node is not installed: the glTF validator cannot run";
        const std::string report = path("validator.txt");
        const int raw = std::system(
            ("node '" FACET_SOURCE_DIR "/tests/tool/validate_gltf.js' '" + file +
             "' '" FACET_SOURCE_DIR "/build/gltf-validator/node_modules' >'" + report + "' 2>&1")
                .c_str());
        EXPECT_TRUE(raw != -1 && WIFEXITED(raw) && WEXITSTATUS(raw) == 0)
            << file << " does not validate (scripts/bootstrap installs the validator):\n"
            << read_text(report);
    }

    // A scene with a hierarchy, a transparent solid, a line and an object without geometry:
    //   base   box 1 x 2 x 3 at (1, 0, 0), 90 degrees about y, alpha 128
    //     post   cylinder of the default 6 divisions (14 vertices, 24 faces)
    //     sun    light (no geometry)
    //   ray    line (2 vertices, 1 line record)
    std::string write_sample_scene() const {
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
        auto& ray = s.emplace<primitives::line>(vector3d(0.0, 0.0, 0.0), vector3d(0.0, 5.0, 0.0));
        ray.set_name("ray");
        auto sun = std::make_unique<primitives::light>();
        sun->set_name("sun");
        s.add(std::move(sun), &base);
        facet::write_scene(s, path("scene.txt"));
        return path("scene.txt");
    }

    // Two triangles of a unit square and a zero-area triangle (zero normal and tangents).
    std::string write_sample_obj() const {
        return write("square.obj",
                     "v 0 0 0\nv 1 0 0\nv 1 1 0\nv 0 1 0\nv 2 0 0\n"
                     "f 1 2 3\nf 1 3 4\nf 1 2 5\n");
    }

    std::string dir;
};

}  // namespace facet_tool_test
