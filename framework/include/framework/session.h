// The session of requests: the native data that they read, and the data that modules keep between them.
#pragma once

#include <optional>
#include <vector>

#include "framework/framework.h"
#include "framework/tree_holder.h"
#include "tvk_map_module.h"
#include "tvk_map_session.h"

namespace tvk::framework {

// The number of the one session.
inline constexpr uint32_t kSessionId = 1;

// Owns the data that modules keep from one read to the next, as long as the native data does not change.
class MappingMemory {
public:
    MappingMemory() = default;
    ~MappingMemory();
    MappingMemory(const MappingMemory &) = delete;
    MappingMemory &operator=(const MappingMemory &) = delete;

    // Returns the data of module, null at first. Throws std::bad_alloc.
    void *&of(const tvk_map_module &module);

private:
    struct Entry {
        const tvk_map_module *module;
        void *data;
    };
    std::vector<Entry> entries_;
};

// Makes itself the session of the framework while it lives. All its connection handles lead to database, which must not
// change meanwhile.
class Session {
public:
    // Throws std::bad_alloc.
    Session(Framework &framework, qidl_tvk_datatree &database);
    ~Session();
    Session(const Session &) = delete;
    Session &operator=(const Session &) = delete;

    MappingMemory &memory() { return memory_; }
    // Returns the child arrays of database. They are gathered at the first call, so that later reads need not look at
    // all data. Throws std::bad_alloc.
    const ChildArrays &database_arrays();

private:
    MappingMemory memory_;
    const qidl_tvk_datatree &database_;
    std::optional<ChildArrays> database_arrays_;
    tvk_framework_ctx framework_;
    varn_connection_table_a connections_a_;
    varn_connection_table_b connections_b_;
    varn_backend backend_{&connections_a_};
    me_backend_session_ctx_t backend_session_{&backend_, &connections_b_};
    me_backend_session_ctx_t *backend_sessions_[1] = {&backend_session_};
    me_session me_session_{backend_sessions_};
    tvk_session session_{&me_session_};
};

}  // namespace tvk::framework
