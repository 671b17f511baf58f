// The stand-in for the framework of a device: what it creates around a request, and releases with it.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "framework/tree_holder.h"
#include "tvk_map_module.h"
#include "tvk_map_session.h"
#include "tvk_map_types.h"

namespace tvk::framework {

// What mapping contexts ask for unless someone wants to know the difference.
inline constexpr uint32_t kIndexChildrenFrom = 16;

// Lives as long as the command: the framework context, and the log and trace of the process.
class Framework {
public:
    // With trace, the debug log and the trace lines of all requests go to standard error.
    explicit Framework(bool trace, uint32_t index_children_from = kIndexChildrenFrom);
    ~Framework();
    Framework(const Framework &) = delete;
    Framework &operator=(const Framework &) = delete;

    tvk_framework_ctx context() { return &context_; }
    uint32_t index_children_from() const { return index_children_from_; }

private:
    bool trace_;
    uint32_t index_children_from_;
    tvk_framework_context context_{};
};

// What modules keep from one read to the next, as long as the native data does not change.
class MappingMemory {
public:
    MappingMemory() = default;
    ~MappingMemory();
    MappingMemory(const MappingMemory &) = delete;
    MappingMemory &operator=(const MappingMemory &) = delete;

    void *&of(const tvk_map_module &module);

private:
    struct Entry {
        const tvk_map_module *module;
        void *data;
    };
    std::vector<Entry> entries_;
};

// The session of the requests, while it lives: every connection handle that it has leads to database, which does not
// change meanwhile.
class Session {
public:
    Session(Framework &framework, qidl_tvk_datatree &database);
    ~Session();
    Session(const Session &) = delete;
    Session &operator=(const Session &) = delete;

    MappingMemory &memory() { return memory_; }
    // Found when they are first asked for, so that later reads need not look at all data. Throws std::bad_alloc.
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

// The nodes of a request that mappings say they do not map, and why, if they say it.
struct Unmapped {
    std::map<const qidl_tvk_datatree *, std::string> nodes;
    bool lost_some = false;  // for want of memory

    bool any() const { return !nodes.empty() || lost_some; }
};

/*
 * One request: its record, its context, its state record and the mapping context that ties them together. On the
 * way out the modules are told, and everything that the records own is released, also what a failed walk left on its
 * stacks; so the scope must end before the request's tree and the target.
 */
class RequestScope {
public:
    // with_defaults is the mode that the client asked for, enum tvk_with_defaults_mode. What modules keep goes to
    // memory, or, when that is null, ends with the request.
    RequestScope(Framework &framework, uint32_t request_type, uint8_t with_defaults = TVK_WITH_DEFAULTS_NONE,
                 MappingMemory *memory = nullptr);
    ~RequestScope();
    RequestScope(const RequestScope &) = delete;
    RequestScope &operator=(const RequestScope &) = delete;

    tvk_map_ctx ctx() { return &mapping_context_; }
    tvk_map_request_state &state() { return *state_; }
    const Unmapped &unmapped() const { return unmapped_; }

    // Makes container what the request is about next, in a read the filter of the paths that are added, and module the
    // one whose handlers are called. Returns what the module says to the request's begin.
    qerrno enter(const tvk_map_module &module, qidl_tvk_datatree &container);

private:
    bool is_read() const;
    void show(const tvk_map_module *module);  // its memory, in the context
    void end_modules();

    tvk_request request_{};
    tvk_request_ctx request_context_{};
    std::unique_ptr<tvk_map_request_state> state_;  // too large for the stack
    tvk_map_context mapping_context_{};
    MappingMemory own_memory_;
    MappingMemory &memory_;
    std::vector<const tvk_map_module *> begun_;
    const tvk_map_module *shown_ = nullptr;
    Unmapped unmapped_;
};

}  // namespace tvk::framework
