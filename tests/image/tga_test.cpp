// Reading and writing TGA files, hostile headers included.
#include <gtest/gtest.h>

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "facet/bitmap.h"

using graphics::bitmap;
using graphics::color;

// The largest single allocation (the library's too): a lying header allocates nothing large.
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

/// A scratch file of this test and process, written unless `content` is empty.
std::string scratch(const std::string& name, const bytes& content = {}) {
    const std::string path = ::testing::TempDir() + "facet_" + std::to_string(::getpid()) + "_" +
                             ::testing::UnitTest::GetInstance()->current_test_info()->name() + "_" +
                             name;
    if (!content.empty())
        std::ofstream(path, std::ios::binary)
            .write(reinterpret_cast<const char*>(content.data()),
                   static_cast<std::streamsize>(content.size()));
    return path;
}

/// An 18-byte header followed by `rest`.
bytes tga(unsigned w, unsigned h, unsigned bpp, const bytes& rest, unsigned idlength = 0,
          unsigned cmap = 0, unsigned type = 2) {
    bytes b(12, 0);
    b[0] = static_cast<unsigned char>(idlength);
    b[1] = static_cast<unsigned char>(cmap);
    b[2] = static_cast<unsigned char>(type);
    for (unsigned v : {w & 0xff, w >> 8, h & 0xff, h >> 8, bpp, 0u})
        b.push_back(static_cast<unsigned char>(v));
    b.insert(b.end(), rest.begin(), rest.end());
    return b;
}

TEST(ReadTga, RejectsBadFilesWithTheirMessagesAndLeavesOutUnchanged) {
    const std::pair<bytes, std::string> cases[] = {
        {{}, "Unable to open TGA file"},  // not written
        {bytes(17, 0), "Error reading TGA header"},
        {tga(1, 1, 24, {1, 2}, 5, 1), "Error reading id field"},
        // The id field is read before the color map type is looked at.
        {tga(1, 1, 24, {1, 2, 3, 4, 5}, 5, 1), "Condition \"tga_hdr.colormaptype == 0\" invalid"},
        {tga(1, 1, 24, {1, 2, 3}, 0, 0, 10), "Condition \"tga_hdr.datatypecode == 2\" invalid"},
        {tga(1, 1, 16, {1, 2}),
         "Condition \"tga_hdr.bitsperpixel == 32 || tga_hdr.bitsperpixel == 24\" invalid"},
        {tga(2, 2, 32, bytes(15, 1)), "Error reading image data"},
        {tga(3, 1, 24, bytes(8, 1)), "Error reading image data"},
        {tga(65535, 65535, 32, bytes(10, 1)), "Error reading image data"}};
    for (const auto& [content, message] : cases) {
        bitmap out(1, 1);
        out.set_pixel(0, 0, color(7, 8, 9, 10));
        g_largest_allocation = 0;
        try {
            graphics::read_tga(
                scratch(content.empty() ? "missing.tga" : "bad.tga", content).c_str(), out);
            ADD_FAILURE() << "no exception for " << message;
        } catch (const graphics::tga_exception& e) {
            EXPECT_EQ(e.what(), message);
        }
        EXPECT_TRUE(out.width() == 1 && out.get_pixel(0, 0) == color(7, 8, 9, 10));
        EXPECT_LT(g_largest_allocation, std::size_t(1) << 20);
    }
}

TEST(WriteTga, WritesUnswappedBytesSoReadingBackExchangesRedAndBlue) {
    // 300 x 61 pixels: a width above 255 and more data than one read chunk.
    bitmap b(300, 61);
    for (unsigned short y = 0; y < 61; ++y)
        for (unsigned short x = 0; x < 300; ++x) b.set_pixel(x, y, color(x, y, x + y, x ^ y));
    const std::string path = scratch("out.tga");
    graphics::write_tga(path.c_str(), b);
    std::ifstream in(path, std::ios::binary);
    const bytes written{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    bytes expected = tga(300, 61, 32, bytes(b.begin(), b.end()));
    expected[17] = 8;
    EXPECT_TRUE(written == expected);

    bitmap back;
    graphics::read_tga(path.c_str(), back);
    ASSERT_TRUE(back.width() == 300 && back.height() == 61);
    for (std::size_t i = 0; i < 300 * 61 * 4; i += 4) std::swap(expected[18 + i], expected[20 + i]);
    EXPECT_TRUE(std::equal(back.begin(), back.end(), expected.begin() + 18));

    graphics::write_tga(path.c_str(), bitmap(0, 5));  // the header alone
    graphics::read_tga(path.c_str(), back);
    EXPECT_TRUE(back.width() == 0 && back.begin() == back.end());
    graphics::write_tga(scratch("no/such/dir/x.tga").c_str(), bitmap(1, 1));  // silent
    std::remove(path.c_str());
}

}  // namespace
