// Finds and loads mapping modules.
#pragma once

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "tvk_map_module.h"

namespace tvk::framework {

// Owns a mapping module that is loaded. Its table stays valid as long.
class MappingModule {
public:
    /*
     * Loads a module. A name without "/" is looked up as NAME.so in the folders of TVK_MAP_MODULE_PATH (separated by
     * colons) and then in the module folder beside the program. A name with "/" is the path of the file.
     * Throws UsageError when there is no such module or it cannot be used.
     */
    static MappingModule load(const std::string &name);

    const char *name() const { return table_->name; }
    std::span<const tvk_map_module_container> containers() const {
        return {table_->containers, table_->container_count};
    }
    // Returns the container of that tag and namespace, or null.
    const tvk_map_module_container *find(const char *tag, const char *ns) const;
    const tvk_map_module &table() const { return *table_; }
    // Tells whether the mapping obeys the places of entries (yang:insert).
    bool takes_insert() const { return (table_->flags & TVK_MAP_MODULE_TAKES_INSERT) != 0; }

private:
    struct Unload {
        void operator()(void *library) const;
    };
    using Library = std::unique_ptr<void, Unload>;

    MappingModule(Library library, const tvk_map_module *table) : library_(std::move(library)), table_(table) {}

    Library library_;
    const tvk_map_module *table_;
};

// The modules that requests are handed to. No two of them map the same container.
class Mappings {
public:
    // Throws UsageError when two modules map the same container.
    explicit Mappings(std::vector<MappingModule> modules);
    // Loads the modules of those names. Throws UsageError.
    static Mappings load(const std::vector<std::string> &names);

    std::span<const MappingModule> modules() const { return modules_; }

    // The module that maps a container, and its entry for it.
    struct Target {
        const MappingModule *module;
        const tvk_map_module_container *container;
    };
    // Returns the target of the container of that tag and namespace, or nothing when no module maps it.
    std::optional<Target> find(const char *tag, const char *ns) const;

private:
    std::vector<MappingModule> modules_;
};

}  // namespace tvk::framework
