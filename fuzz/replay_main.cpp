// Runs a fuzz harness's LLVMFuzzerTestOneInput once on every regular file of the folders (or
// files) given as arguments, in name order, without libFuzzer. A crash, a sanitizer report or a
// failed check of the harness fails the run; otherwise it prints how many files it replayed and
// exits 0. An empty or missing folder is an error, so a lost corpus does not pass silently.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

namespace {

std::vector<std::filesystem::path> files_of(const std::filesystem::path& where) {
    std::vector<std::filesystem::path> files;
    if (std::filesystem::is_directory(where)) {
        for (const auto& entry : std::filesystem::directory_iterator(where))
            if (entry.is_regular_file()) files.push_back(entry.path());
    } else if (std::filesystem::is_regular_file(where)) {
        files.push_back(where);
    }
    std::sort(files.begin(), files.end());
    return files;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::fprintf(stderr, "usage: %s FOLDER|FILE...\n", argv[0]);
        return 2;
    }
    std::size_t replayed = 0;
    for (int i = 1; i < argc; ++i) {
        const std::vector<std::filesystem::path> files = files_of(argv[i]);
        if (files.empty()) {
            std::fprintf(stderr, "%s: no corpus files\n", argv[i]);
            return 1;
        }
        for (const auto& file : files) {
            std::ifstream in(file, std::ios::binary);
            if (!in) {
                std::fprintf(stderr, "%s: cannot open\n", file.c_str());
                return 1;
            }
            const std::vector<char> bytes((std::istreambuf_iterator<char>(in)),
                                          std::istreambuf_iterator<char>());
            LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size());
            ++replayed;
        }
    }
    std::printf("replayed %zu files\n", replayed);
    return 0;
}
