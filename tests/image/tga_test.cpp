#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <new>
#include <string>
#include <vector>

#include "facet/bitmap.h"

using graphics::bitmap;
using graphics::color;

// The largest single allocation of the program, to show that a lying header allocates nothing
// large. Replacing the global operators covers the library's allocations too.
namespace {
std::size_t g_largest_allocation = 0;
}
void* operator new(std::size_t n) {
    if (n > g_largest_allocation) g_largest_allocation = n;
    if (void* p = std::malloc(n ? n : 1)) return p;
    throw std::bad_alloc();
}
void* operator new[](std::size_t n) { return operator new(n); }
void operator delete(void* p) noexcept { std::free(p); }
void operator delete[](void* p) noexcept { std::free(p); }
void operator delete(void* p, std::size_t) noexcept { std::free(p); }
void operator delete[](void* p, std::size_t) noexcept { std::free(p); }

namespace {

using bytes = std::vector<unsigned char>;

/// A scratch file name of the running test (ctest runs tests in parallel).
std::string temp_path(const std::string& name) {
    return ::testing::TempDir() + "facet_" +
           ::testing::UnitTest::GetInstance()->current_test_info()->name() + "_" + name;
}

std::string write_file(const std::string& name, const bytes& content) {
    const std::string path = temp_path(name);
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char*>(content.data()),
               static_cast<std::streamsize>(content.size()));
    return path;
}

bytes read_file(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return bytes(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

bytes header(unsigned w, unsigned h, unsigned bpp, unsigned idlength = 0, unsigned cmap = 0,
             unsigned type = 2) {
    return {static_cast<unsigned char>(idlength),
            static_cast<unsigned char>(cmap),
            static_cast<unsigned char>(type),
            0,
            0,
            0,
            0,
            0,
            0,
            0,
            0,
            0,
            static_cast<unsigned char>(w & 0xff),
            static_cast<unsigned char>(w >> 8),
            static_cast<unsigned char>(h & 0xff),
            static_cast<unsigned char>(h >> 8),
            static_cast<unsigned char>(bpp),
            0};
}

bytes operator+(bytes a, const bytes& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

/// The message read_tga throws for `content`, checking that `out` stays as it was.
std::string failure_of(const bytes& content) {
    const std::string path = write_file("bad.tga", content);
    bitmap out(1, 1);
    out.set_pixel(0, 0, color(7, 8, 9, 10));
    try {
        graphics::read_tga(path.c_str(), out);
    } catch (const graphics::tga_exception& e) {
        EXPECT_EQ(out.width(), 1);
        EXPECT_EQ(out.get_pixel(0, 0), color(7, 8, 9, 10));
        return e.what();
    }
    return "no exception";
}

}  // namespace

TEST(ReadTga, ConvertsBgrToRgbaInFileRowOrder) {
    // 24 bits, 2 x 2, after a 3-byte id field; rows as stored, origin bits ignored.
    const bytes pixels = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12};
    const std::string path = write_file("rgb.tga", header(2, 2, 24, 3) + bytes{9, 9, 9} + pixels);
    bitmap b;
    graphics::read_tga(path.c_str(), b);
    ASSERT_EQ(b.width(), 2);
    ASSERT_EQ(b.height(), 2);
    EXPECT_EQ(b.get_pixel(0, 0), color(3, 2, 1, 255));
    EXPECT_EQ(b.get_pixel(1, 0), color(6, 5, 4, 255));
    EXPECT_EQ(b.get_pixel(0, 1), color(9, 8, 7, 255));
    EXPECT_EQ(b.get_pixel(1, 1), color(12, 11, 10, 255));

    // 32 bits keep their alpha bytes.
    const std::string path32 =
        write_file("rgba.tga", header(1, 2, 32) + bytes{1, 2, 3, 4, 5, 6, 7, 0});
    graphics::read_tga(path32.c_str(), b);
    EXPECT_EQ(b.width(), 1);
    EXPECT_EQ(b.get_pixel(0, 0), color(3, 2, 1, 4));
    EXPECT_EQ(b.get_pixel(0, 1), color(7, 6, 5, 0));
}

TEST(ReadTga, RejectsBadFilesWithTheirMessagesAndLeavesOutUnchanged) {
    bitmap b;
    try {
        graphics::read_tga(temp_path("missing.tga").c_str(), b);
        FAIL();
    } catch (const graphics::tga_exception& e) {
        EXPECT_STREQ(e.what(), "Unable to open TGA file");
    }
    EXPECT_EQ(failure_of(bytes(17, 0)), "Error reading TGA header");
    EXPECT_EQ(failure_of(header(1, 1, 24, 5, 1) + bytes{1, 2}), "Error reading id field");
    // The id field is read before the color map type is looked at.
    EXPECT_EQ(failure_of(header(1, 1, 24, 5, 1) + bytes{1, 2, 3, 4, 5}),
              "Condition \"tga_hdr.colormaptype == 0\" invalid");
    EXPECT_EQ(failure_of(header(1, 1, 24, 0, 0, 10) + bytes{1, 2, 3}),
              "Condition \"tga_hdr.datatypecode == 2\" invalid");
    EXPECT_EQ(failure_of(header(1, 1, 16) + bytes{1, 2}),
              "Condition \"tga_hdr.bitsperpixel == 32 || tga_hdr.bitsperpixel == 24\" invalid");
    EXPECT_EQ(failure_of(header(2, 2, 32) + bytes(15, 1)), "Error reading image data");
    EXPECT_EQ(failure_of(header(3, 1, 24) + bytes(8, 1)), "Error reading image data");
}

TEST(ReadTga, HeaderClaimingMoreThanTheFileHoldsAllocatesNoMoreThanTheFile) {
    g_largest_allocation = 0;
    EXPECT_EQ(failure_of(header(65535, 65535, 32) + bytes(10, 1)), "Error reading image data");
    EXPECT_LT(g_largest_allocation, std::size_t(1) << 20);
}

TEST(WriteTga, WritesHeaderAndUnswappedBytesSoReadingBackExchangesRedAndBlue) {
    bitmap b(2, 1);
    b.set_pixel(0, 0, color(10, 20, 30, 40));
    b.set_pixel(1, 0, color(50, 60, 70, 80));
    const std::string path = temp_path("out.tga");
    graphics::write_tga(path.c_str(), b);
    bytes expected = header(2, 1, 32) + bytes{10, 20, 30, 40, 50, 60, 70, 80};
    expected[17] = 8;
    EXPECT_EQ(read_file(path), expected);

    bitmap back;
    graphics::read_tga(path.c_str(), back);
    EXPECT_EQ(back.get_pixel(0, 0), color(30, 20, 10, 40));
    EXPECT_EQ(back.get_pixel(1, 0), color(70, 60, 50, 80));
}

TEST(WriteTga, EmptyBitmapWritesHeaderOnlyAndUnwritablePathIsSilent) {
    const std::string path = temp_path("empty.tga");
    graphics::write_tga(path.c_str(), bitmap(0, 5));
    EXPECT_EQ(read_file(path).size(), 18u);
    bitmap back(3, 3);
    graphics::read_tga(path.c_str(), back);
    EXPECT_EQ(back.width(), 0);
    EXPECT_EQ(back.begin(), back.end());

    graphics::write_tga(temp_path("no/such/dir/x.tga").c_str(), bitmap(1, 1));
}
