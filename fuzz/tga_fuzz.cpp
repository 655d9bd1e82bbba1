// Fuzz harness: graphics::read_tga of arbitrary bytes. read_tga takes a file name, so the bytes
// go into an in-memory file (memfd) that is opened through /proc/self/fd. An image that reads
// must survive write_tga and read_tga again with red and blue exchanged (write_tga stores the
// bytes as they are in memory), and its mipmap chain must build down to nothing. A failure must
// be a tga_exception and leave the caller's bitmap as it was.
#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include <facet/bitmap.h>
#include <facet/textures.h>

namespace {

/// An in-memory file that the library can open by name.
class memory_file {
public:
    explicit memory_file(const char* label) : m_fd(memfd_create(label, 0)) {
        if (m_fd < 0) {
            std::perror("memfd_create");
            std::abort();
        }
        m_path = "/proc/self/fd/" + std::to_string(m_fd);
    }
    ~memory_file() { close(m_fd); }
    memory_file(const memory_file&) = delete;
    memory_file& operator=(const memory_file&) = delete;

    /// Replaces the file's contents with `size` bytes from `data`.
    void assign(const uint8_t* data, std::size_t size) {
        if (ftruncate(m_fd, 0) != 0) std::abort();
        std::size_t done = 0;
        while (done < size) {
            const ssize_t n = pwrite(m_fd, data + done, size - done, static_cast<off_t>(done));
            if (n <= 0) std::abort();
            done += static_cast<std::size_t>(n);
        }
    }

    const char* path() const { return m_path.c_str(); }

private:
    int m_fd;
    std::string m_path;
};

[[noreturn]] void fail(const char* what) {
    std::fprintf(stderr, "tga_fuzz: %s\n", what);
    std::abort();
}

/// read_tga(write_tga(image)) is the image with red and blue exchanged.
void check_round_trip(const graphics::bitmap& image) {
    static memory_file written("tga_fuzz_written");
    graphics::write_tga(written.path(), image);
    graphics::bitmap back;
    try {
        graphics::read_tga(written.path(), back);
    } catch (const graphics::tga_exception& e) {
        fail(e.what());
    }
    if (back.width() != image.width() || back.height() != image.height())
        fail("the written image reads back with another size");
    const unsigned char* a = image.begin();
    const unsigned char* b = back.begin();
    for (const unsigned char* end = image.end(); a != end; a += 4, b += 4)
        if (a[0] != b[2] || a[1] != b[1] || a[2] != b[0] || a[3] != b[3])
            fail("the written image reads back with other pixels");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static memory_file input("tga_fuzz_input");
    input.assign(data, size);

    graphics::bitmap image(3, 2);
    image.set_pixel(1, 1, graphics::color(1, 2, 3, 4));
    try {
        graphics::read_tga(input.path(), image);
    } catch (const graphics::tga_exception&) {
        if (image.width() != 3 || image.height() != 2 ||
            image.get_pixel(1, 1).get_red_component() != 1)  // unchanged on failure
            fail("a failed read changed the bitmap");
        return 0;
    }
    check_round_trip(image);
    graphics::bitmap level = image;
    while (level.begin() != nullptr) graphics::create_next_mipmap_level(level, level);
    return 0;
}
