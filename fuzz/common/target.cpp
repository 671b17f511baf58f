#include "target.h"

#include <cstdlib>
#include <fstream>
#include <iostream>
#include <sstream>

#include "tvk_platform_control.h"

namespace tvk::fuzz {

namespace {

constexpr std::size_t kLongestNote = 1500;

bool notes_are_wanted = false;

}  // namespace

std::string read_file(const std::string &path) {
    std::ifstream file(path, std::ios::binary);
    require(file.is_open(), path + " cannot be read");
    std::ostringstream bytes;
    bytes << file.rdbuf();
    return bytes.str();
}

void require(bool condition, const std::string &what) {
    if (!condition) {
        std::cerr << what << std::endl;
        std::abort();
    }
}

void require_equal(const std::string &expected, const std::string &actual, const std::string &what) {
    require(expected == actual, what + "\nexpected:\n" + expected + "\nactual:\n" + actual);
}

void note(const std::string &line) {
    if (notes_are_wanted) {
        std::cout << line.substr(0, kLongestNote) << std::endl;
    }
}

void print_notes(bool wanted) {
    notes_are_wanted = wanted;
}

Surroundings::Surroundings() {
    tvk_platform_set_accounting(1);
}

Surroundings::~Surroundings() {
    require_equal("", test::live_blocks(), "blocks that are live at the end of the input");
    tvk_platform_set_accounting(0);
}

}  // namespace tvk::fuzz
