// Files as texts.
#ifndef TVK_FUZZ_FILE_H
#define TVK_FUZZ_FILE_H

#include <fstream>
#include <optional>
#include <sstream>
#include <string>

namespace tvk::fuzz {

// Nothing when the file cannot be read.
inline std::optional<std::string> read_file(const std::string &path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream contents;
    if (file.peek() != std::ifstream::traits_type::eof()) {  // of nothing, a copy is an error
        contents << file.rdbuf();
    }
    return file.is_open() ? std::optional(contents.str()) : std::nullopt;
}

}  // namespace tvk::fuzz

#endif
