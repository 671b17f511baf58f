// Reads files and standard input.
#include "data_file.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>

#include "framework/diagnostics.h"

namespace tvk::tool {

namespace {

constexpr char kStandardInput[] = "standard input";

struct CloseFile {
    void operator()(std::FILE *file) const {
        if (file != stdin) {
            std::fclose(file);
        }
    }
};

std::string read_bytes(const std::string &path, const std::string &name) {
    const std::unique_ptr<std::FILE, CloseFile> file(path == "-" ? stdin : std::fopen(path.c_str(), "rb"));
    if (!file) {
        throw framework::UsageError(name, 0, std::string("cannot be opened: ") + std::strerror(errno));
    }
    std::string bytes;
    char buffer[65536];
    size_t got = 0;
    while ((got = std::fread(buffer, 1, sizeof buffer, file.get())) > 0) {
        bytes.append(buffer, got);
    }
    if (std::ferror(file.get()) != 0) {
        throw framework::UsageError(name, 0, std::string("cannot be read: ") + std::strerror(errno));
    }
    return bytes;
}

}  // namespace

netconf::XmlDocument read_document(const std::string &path, const netconf::Layout &layout) {
    const std::string name = path == "-" ? kStandardInput : path;
    return netconf::XmlDocument::parse(read_bytes(path, name), name, layout);
}

void read_data(const std::string &path, const netconf::Layout &layout, framework::TreeHolder &data) {
    netconf::take_data(read_document(path, layout), data);
}

}  // namespace tvk::tool
