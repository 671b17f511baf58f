// replay FOLDER COUNT: runs a fuzz target on the files of a folder, printing what each comes to, and then on so many
// random inputs. What is wrong ends the process.
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <random>
#include <set>

#include "common/target.h"

namespace {

void replay(const std::string &bytes) {
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t *>(bytes.data()), bytes.size());
}

// Bytes of a hand-written kind more often than others: choices, and texts that end soon.
std::string random_input(unsigned seed) {
    constexpr char kUsual[] = "0123012301230123456789@BCDFH/a\n";
    std::mt19937 random(seed);
    std::string bytes(100 + random() % 400, '\0');
    for (char &byte : bytes) {
        byte = random() % 8 != 0 ? kUsual[random() % (sizeof kUsual - 1)] : static_cast<char>(random());
    }
    return bytes;
}

}  // namespace

int main(int argc, char **argv) {
    tvk::fuzz::require(argc == 3, "usage: replay FOLDER COUNT");
    const std::filesystem::directory_iterator folder(argv[1]), end;
    const std::set<std::filesystem::path> files(folder, end);
    tvk::fuzz::require(!files.empty(), "nothing to replay");
    tvk::fuzz::print_notes(true);
    for (const std::filesystem::path &file : files) {
        std::cout << "== " << file.filename().string() << std::endl;
        replay(tvk::fuzz::read_file(file));
    }
    tvk::fuzz::print_notes(false);
    for (unsigned seed = 0; seed < static_cast<unsigned>(std::atoi(argv[2])); ++seed) {
        std::cerr << "random input " << seed << std::endl;
        replay(random_input(seed));
    }
}
