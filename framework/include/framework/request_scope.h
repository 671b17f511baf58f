// Creates the records around a request, and releases them with it.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "framework/session.h"
#include "tvk_map_module.h"
#include "tvk_map_types.h"

namespace tvk::framework {

// The nodes of a request that mappings say they do not map, each with the reason, or "" when they give none.
struct Unmapped {
    std::map<const qidl_tvk_datatree *, std::string> nodes;
    bool lost_some = false;  // memory ran out while a node was noted

    bool any() const { return !nodes.empty() || lost_some; }
};

/*
 * Owns the record of a request, its context, its state record, and the mapping context that ties them together. When
 * the scope ends, it tells the modules, and releases all that the records own, also what a failed walk left on its
 * stacks. It ends before the request's tree and the target are released.
 */
class RequestScope {
public:
    // with_defaults is the mode that the client asked for, enum tvk_with_defaults_mode. Modules keep their data in
    // memory, which outlives the scope; when it is null, their data ends with the request.
    RequestScope(Framework &framework, uint32_t request_type, uint8_t with_defaults = TVK_WITH_DEFAULTS_NONE,
                 MappingMemory *memory = nullptr);
    ~RequestScope();
    RequestScope(const RequestScope &) = delete;
    RequestScope &operator=(const RequestScope &) = delete;

    tvk_map_ctx ctx() { return &mapping_context_; }
    tvk_map_request_state &state() { return *state_; }
    const Unmapped &unmapped() const { return unmapped_; }

    // Prepares the handlers of module for container, a top container of the request, which is also the filter of what a
    // read adds. Returns the status of the module's begin_request, or TVK_OK when it was called before.
    qerrno enter(const tvk_map_module &module, qidl_tvk_datatree &container);

private:
    bool is_read() const;
    // Puts the memory of module into the context; that of no module when it is null.
    void show(const tvk_map_module *module);
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
