// Runs a fuzz target on files, and on all files of folders. What is wrong ends the process.
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "common/file.h"
#include "common/target.h"

namespace {

namespace fs = std::filesystem;

std::vector<fs::path> files_of(const fs::path &place) {
    std::vector<fs::path> files;
    if (!fs::is_directory(place)) {
        return {place};
    }
    for (const fs::directory_entry &entry : fs::directory_iterator(place)) {
        files.push_back(entry.path());
    }
    std::sort(files.begin(), files.end());
    return files;
}

bool replay(const fs::path &path) {
    const std::optional<std::string> bytes = tvk::fuzz::read_file(path);
    if (!bytes) {
        return false;
    }
    std::printf("%s\n", path.c_str());
    std::fflush(stdout);
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t *>(bytes->data()), bytes->size());
    return true;
}

}  // namespace

int main(int argc, char **argv) {
    std::size_t replayed = 0;
    for (int i = 1; i < argc; ++i) {
        for (const fs::path &file : files_of(argv[i])) {
            if (!replay(file)) {
                std::fprintf(stderr, "%s cannot be read\n", file.c_str());
                return 2;
            }
            ++replayed;
        }
    }
    if (replayed == 0) {
        std::fprintf(stderr, "nothing was replayed\n");
        return 2;
    }
    std::printf("%zu inputs replayed\n", replayed);
    return 0;
}
