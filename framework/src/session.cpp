// Registers the session, and keeps the data of modules.
#include "framework/session.h"

#include <algorithm>
#include <new>

#include "tvk_platform_control.h"

namespace tvk::framework {

MappingMemory::~MappingMemory() {
    for (const Entry &entry : entries_) {
        if (entry.data != nullptr && entry.module->release_data != nullptr) {
            entry.module->release_data(entry.data);
        }
    }
}

void *&MappingMemory::of(const tvk_map_module &module) {
    const auto entry =
        std::find_if(entries_.begin(), entries_.end(), [&](const Entry &other) { return other.module == &module; });
    return entry != entries_.end() ? entry->data : entries_.emplace_back(Entry{&module, nullptr}).data;
}

Session::Session(Framework &framework, qidl_tvk_datatree &database)
    : database_(database),
      framework_(framework.context()),
      connections_a_{&database, &database},
      connections_b_{&database, nullptr, &database} {
    if (tvk_platform_set_session(framework_, kSessionId, &session_) == 0) {
        throw std::bad_alloc();
    }
}

Session::~Session() {
    tvk_platform_set_session(framework_, kSessionId, nullptr);
}

const ChildArrays &Session::database_arrays() {
    if (!database_arrays_) {
        database_arrays_.emplace(database_);
    }
    return *database_arrays_;
}

}  // namespace tvk::framework
