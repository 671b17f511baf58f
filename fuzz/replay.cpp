// replay RECORD COUNT FOLDER...: runs a fuzz target on the files of the folders, and then on so many random inputs.
// It prints the outcomes of the files that RECORD names, each below the line that names it. A fault ends the process.
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <map>
#include <random>
#include <set>
#include <sstream>

#include "common/target.h"

namespace {

void replay(const std::string &bytes) {
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t *>(bytes.data()), bytes.size());
}

// The lines "== NAME: REASON" by name.
std::map<std::string, std::string> read_headings(const char *record) {
    std::map<std::string, std::string> headings;
    std::istringstream lines(tvk::fuzz::read_file(record));
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with("== ")) {
            tvk::fuzz::require(line.find(": ") != std::string::npos, line + " has no reason");
            headings[line.substr(3, line.find(": ") - 3)] = line;
        }
    }
    return headings;
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
    tvk::fuzz::require(argc >= 4, "usage: replay RECORD COUNT FOLDER...");
    std::map<std::string, std::string> headings = read_headings(argv[1]);
    std::set<std::filesystem::path> files;
    for (int i = 3; i < argc; ++i) {
        const std::filesystem::directory_iterator folder(argv[i]), end;
        files.insert(folder, end);
    }
    tvk::fuzz::require(!files.empty(), "nothing to replay");
    for (const std::filesystem::path &file : files) {
        const auto heading = headings.extract(file.filename().string());
        tvk::fuzz::print_notes(!heading.empty());
        if (!heading.empty()) {
            std::cout << heading.mapped() << std::endl;
        } else {
            std::cerr << file.filename().string() << std::endl;
        }
        replay(tvk::fuzz::read_file(file));
    }
    tvk::fuzz::print_notes(false);
    tvk::fuzz::require(headings.empty(),
                       "recorded, but not there: " + (headings.empty() ? "" : headings.begin()->first));
    for (unsigned seed = 0; seed < static_cast<unsigned>(std::atoi(argv[2])); ++seed) {
        std::cerr << "random input " << seed << std::endl;
        replay(random_input(seed));
    }
}
