// One request: what a framework creates around it, and releases with it.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "framework/session.h"
#include "tvk_map_module.h"
#include "tvk_map_types.h"

namespace tvk::framework {

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
