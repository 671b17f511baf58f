#include "inputs.h"

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <stdexcept>

namespace tvk::bench {

namespace {

namespace fs = std::filesystem;

// Fills texts up to count with what make(i) returns.
template <class Make>
const Texts &filled(Texts &texts, std::size_t count, Make make) {
    for (std::size_t i = texts.size(); i < count; ++i) {
        texts.push_back(make(i));
    }
    return texts;
}

const Texts &descriptions(std::size_t count) {
    static Texts texts;
    return filled(texts, count, [](std::size_t i) { return "uplink port " + std::to_string(i); });
}

std::string leaf_path(const std::string &list, const char *quote, std::size_t i) {
    const std::size_t entry = i / kLeavesPerEntry;
    const Leaf &leaf = kLeaves[i % kLeavesPerEntry];
    std::string path = list + "[name=" + quote + names(entry + 1)[entry] + quote + "]/";
    if (leaf.is_of_subinterface) {
        path += std::string("subinterfaces/subinterface[index=") + quote + "0" + quote + "]/";
    }
    return path + leaf.path;
}

std::string element(const char *name, const std::string &content) {
    return std::string("<") + name + ">" + content + "</" + name + ">";
}

std::string entry_element(std::size_t i) {
    std::string config;
    for (std::size_t leaf = 0; !kLeaves[leaf].is_of_subinterface; ++leaf) {
        config += element(kLeaves[leaf].path + sizeof "config", value_of(leaf, i));
    }
    const std::string subinterface = element("index", "0") + element("config", element("enabled", "true"));
    return element("interface", element("name", names(i + 1)[i]) + element("config", config) +
                                    element("subinterfaces", element("subinterface", subinterface)));
}

class DocumentFolder {
public:
    DocumentFolder() { fs::create_directory(path_); }
    ~DocumentFolder() {
        std::error_code ignored;
        fs::remove_all(path_, ignored);
    }
    DocumentFolder(const DocumentFolder &) = delete;
    DocumentFolder &operator=(const DocumentFolder &) = delete;

    std::string write(std::size_t entries) const {
        std::string file = path_ / (std::to_string(entries) + ".xml");
        std::ofstream stream(file);
        stream << "<interfaces xmlns=\"" << kNs << "\">";
        for (std::size_t i = 0; i < entries; ++i) {
            stream << entry_element(i);
        }
        stream << "</interfaces>\n";
        if (!stream.flush()) {
            throw std::runtime_error("cannot write " + file);
        }
        return file;
    }

private:
    const fs::path path_ = fs::temp_directory_path() / ("tvk-bench-" + std::to_string(getpid()));
};

}  // namespace

const Texts &names(std::size_t count) {
    static Texts texts;
    descriptions(count);
    return filled(texts, count, [](std::size_t i) { return "GigabitEthernet0/0/0/" + std::to_string(i); });
}

const char *value_of(std::size_t leaf, std::size_t entry) {
    switch (leaf) {
        case 0:
            return names(entry + 1)[entry].c_str();
        case 1:
            return "ethernetCsmacd";
        case 2:
            return entry % 10 == 0 ? "9000" : "1500";
        case 3:
            return descriptions(entry + 1)[entry].c_str();
        default:
            return "true";
    }
}

const Texts &plain_paths(std::size_t entries) {
    static Texts texts;
    names(entries);
    return filled(texts, entries * kLeavesPerEntry,
                  [](std::size_t i) { return leaf_path("/interfaces/interface", "", i); });
}

const Texts &quoted_paths(std::size_t entries) {
    static Texts texts;
    names(entries);
    return filled(texts, entries * kLeavesPerEntry,
                  [](std::size_t i) { return leaf_path("/bench-interfaces:interfaces/interface", "'", i); });
}

const Texts &predicates(std::size_t count) {
    static Texts texts;
    return filled(texts, count, [](std::size_t i) { return "[name='" + names(i + 1)[i] + "']"; });
}

const std::string &document_file(std::size_t entries) {
    static const DocumentFolder folder;
    static std::map<std::size_t, std::string> files;
    std::string &file = files[entries];
    if (file.empty()) {
        file = folder.write(entries);
    }
    return file;
}

std::size_t nodes_selected(Filter filter, std::size_t entries) {
    switch (filter) {
        case Filter::kKey:
            return nodes_of(1);
        case Filter::kLeaf:
            return 1 + 4 * entries;  // interface, name, config, mtu
        default:
            return 1 + 8 * ((entries + 9) / 10);  // interface, name, config with its five leaves
    }
}

}  // namespace tvk::bench
