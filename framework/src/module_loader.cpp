// Finds mapping modules, checks their files and tables, and loads them.
#include "framework/module_loader.h"

#include <dlfcn.h>
#include <elf.h>
#include <link.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <system_error>
#include <vector>

#include "framework/diagnostics.h"

namespace tvk::framework {

namespace {

namespace fs = std::filesystem;

constexpr char kPathVariable[] = "TVK_MAP_MODULE_PATH";

void add_folder(std::vector<fs::path> &folders, const fs::path &folder) {
    const fs::path plain = folder.lexically_normal();
    if (std::find(folders.begin(), folders.end(), plain) == folders.end()) {
        folders.push_back(plain);
    }
}

std::vector<fs::path> module_folders() {
    std::vector<fs::path> folders;
    if (const char *variable = std::getenv(kPathVariable)) {
        std::istringstream entries(variable);
        for (std::string entry; std::getline(entries, entry, ':');) {
            if (!entry.empty()) {
                add_folder(folders, entry);
            }
        }
    }
    std::error_code error;
    const fs::path program = fs::read_symlink("/proc/self/exe", error);
    if (!error) {
        const fs::path prefix = program.parent_path() / "..";
        add_folder(folders, prefix / "lib" / TVK_MODULE_SUBDIR);
        add_folder(folders, prefix / TVK_LIBRARY_FOLDER / TVK_MODULE_SUBDIR);
    }
    return folders;
}

std::string joined(const std::vector<std::string> &texts) {
    std::string all;
    for (const std::string &text : texts) {
        all += (all.empty() ? "" : ", ") + text;
    }
    return all.empty() ? "none" : all;
}

std::vector<std::string> modules_in(const std::vector<fs::path> &folders) {
    std::vector<std::string> names;
    for (const fs::path &folder : folders) {
        std::error_code error;
        for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
            if (entry->path().extension() == ".so") {
                names.push_back(entry->path().stem().string());
            }
        }
    }
    std::sort(names.begin(), names.end());
    names.erase(std::unique(names.begin(), names.end()), names.end());
    return names;
}

fs::path find_module(const std::string &name) {
    if (name.find('/') != std::string::npos) {
        return name;
    }
    const std::vector<fs::path> folders = module_folders();
    std::vector<std::string> searched;
    for (const fs::path &folder : folders) {
        std::error_code error;
        if (fs::path file = folder / (name + ".so"); !name.empty() && fs::exists(file, error)) {
            return file;
        }
        searched.push_back(folder.string());
    }
    throw UsageError("no mapping module \"" + name + "\"; searched: " + joined(searched) +
                     "; modules there: " + joined(modules_in(folders)));
}

// Returns why the file is no module of this machine, or "". The loader would say of a module of another machine that
// the file is missing, and it crashes on a file that is cut off.
std::string fault_in_file(const fs::path &path) {
    std::error_code kind;
    if (fs::exists(path, kind) && !fs::is_regular_file(path, kind)) {
        return "is no regular file";
    }
    std::ifstream file(path, std::ios::binary);
    ElfW(Ehdr) header{};
    ElfW(Ehdr) own{};
    std::ifstream program("/proc/self/exe", std::ios::binary);
    if (!file || !program.read(reinterpret_cast<char *>(&own), sizeof own)) {
        return "";  // dlopen gives the reason
    }
    if (!file.read(reinterpret_cast<char *>(&header), sizeof header) ||
        std::memcmp(header.e_ident, ELFMAG, SELFMAG) != 0) {
        return "is no shared object";
    }
    if (header.e_ident[EI_CLASS] != own.e_ident[EI_CLASS] || header.e_ident[EI_DATA] != own.e_ident[EI_DATA] ||
        header.e_machine != own.e_machine) {
        return "is a shared object for another kind of machine than this one";
    }
    std::error_code error;
    const auto size = fs::file_size(path, error);
    file.seekg(static_cast<std::streamoff>(header.e_phoff));
    for (int i = 0; i < header.e_phnum; ++i) {
        ElfW(Phdr) part{};
        const bool is_read = static_cast<bool>(file.read(reinterpret_cast<char *>(&part), sizeof part));
        if (!is_read || (part.p_type == PT_LOAD && (part.p_offset > size || part.p_filesz > size - part.p_offset))) {
            return "is a shared object that is cut off: parts of it lie behind the end of the file";
        }
    }
    return "";
}

// Returns the message of dlopen, without the file name that it may begin with.
std::string loader_message(const std::string &file) {
    const char *text = dlerror();
    std::string message = text != nullptr ? text : "unknown fault";
    if (message.starts_with(file + ": ")) {
        message.erase(0, file.size() + 2);
    }
    return message;
}

// Returns why the table cannot be used, or "".
std::string fault_in(const tvk_map_module *table) {
    if (table == nullptr) {
        return "has no table of containers";
    }
    if (table->version != TVK_MAP_MODULE_VERSION) {
        return "is a mapping module of version " + std::to_string(table->version) + "; this program loads version " +
               std::to_string(TVK_MAP_MODULE_VERSION);
    }
    if (table->name == nullptr || (table->container_count > 0 && table->containers == nullptr)) {
        return "has an incomplete table: no name, or no containers";
    }
    for (uint32_t i = 0; i < table->container_count; ++i) {
        const tvk_map_module_container &container = table->containers[i];
        if (container.tag == nullptr || container.ns == nullptr || container.handler == nullptr) {
            return "has a container without tag, namespace or handler (entry " + std::to_string(i) + ")";
        }
    }
    return "";
}

}  // namespace

void MappingModule::Unload::operator()(void *library) const {
    dlclose(library);
}

MappingModule MappingModule::load(const std::string &name) {
    const std::string file = find_module(name).string();
    if (const std::string fault = fault_in_file(file); !fault.empty()) {
        throw UsageError(file, 0, "cannot be loaded as a mapping module: " + fault);
    }
    Library library(dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL));
    if (!library) {
        throw UsageError(file, 0, "cannot be loaded as a mapping module: " + loader_message(file));
    }
    const auto get_table = reinterpret_cast<tvk_map_module_get_fp>(dlsym(library.get(), TVK_MAP_MODULE_SYMBOL));
    if (get_table == nullptr) {
        throw UsageError(file, 0, "is no mapping module: it does not export " TVK_MAP_MODULE_SYMBOL);
    }
    const tvk_map_module *table = get_table();
    if (const std::string fault = fault_in(table); !fault.empty()) {
        throw UsageError(file, 0, fault);
    }
    return MappingModule(std::move(library), table);
}

const tvk_map_module_container *MappingModule::find(const char *tag, const char *ns) const {
    for (const tvk_map_module_container &container : containers()) {
        if (std::strcmp(container.tag, tag) == 0 && std::strcmp(container.ns, ns) == 0) {
            return &container;
        }
    }
    return nullptr;
}

Mappings::Mappings(std::vector<MappingModule> modules) : modules_(std::move(modules)) {
    for (auto module = modules_.begin(); module != modules_.end(); ++module) {
        for (const tvk_map_module_container &container : module->containers()) {
            const auto same = std::find_if(modules_.begin(), module, [&](const MappingModule &other) {
                return other.find(container.tag, container.ns) != nullptr;
            });
            if (same != module) {
                throw UsageError(std::string("the mappings \"") + same->name() + "\" and \"" + module->name() +
                                 "\" both map \"" + container.tag + "\" (namespace " + container.ns + ")");
            }
        }
    }
}

Mappings Mappings::load(const std::vector<std::string> &names) {
    std::vector<MappingModule> modules;
    modules.reserve(names.size());
    for (const std::string &name : names) {
        modules.push_back(MappingModule::load(name));
    }
    return Mappings(std::move(modules));
}

std::optional<Mappings::Target> Mappings::find(const char *tag, const char *ns) const {
    for (const MappingModule &module : modules_) {
        if (const tvk_map_module_container *container = module.find(tag, ns)) {
            return Target{&module, container};
        }
    }
    return std::nullopt;
}

}  // namespace tvk::framework
