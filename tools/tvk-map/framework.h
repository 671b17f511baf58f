// The stand-in for the framework of a device: what it creates around a request, and releases with it.
#pragma once

#include <cstdint>
#include <memory>

#include "tvk_map_session.h"
#include "tvk_map_types.h"

namespace tvk::tool {

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

// The session of the requests, while it lives: every connection handle that it has leads to database.
class Session {
public:
    Session(Framework &framework, qidl_tvk_datatree &database);
    ~Session();
    Session(const Session &) = delete;
    Session &operator=(const Session &) = delete;

private:
    tvk_framework_ctx framework_;
    varn_connection_table_a connections_a_;
    varn_connection_table_b connections_b_;
    varn_backend backend_{&connections_a_};
    me_backend_session_ctx_t backend_session_{&backend_, &connections_b_};
    me_backend_session_ctx_t *backend_sessions_[1] = {&backend_session_};
    me_session me_session_{backend_sessions_};
    tvk_session session_{&me_session_};
};

/*
 * One request: its record, its context, its state record and the mapping context that ties them together. On the
 * way out everything that these own is released, also what a failed walk left on its stacks; so the scope must end
 * before the request's tree and the target.
 */
class RequestScope {
public:
    // with_defaults is the mode that the client asked for, enum tvk_with_defaults_mode.
    RequestScope(Framework &framework, uint32_t request_type, uint8_t with_defaults = TVK_WITH_DEFAULTS_NONE);
    ~RequestScope();
    RequestScope(const RequestScope &) = delete;
    RequestScope &operator=(const RequestScope &) = delete;

    tvk_map_ctx ctx() { return &mapping_context_; }
    tvk_map_request_state &state() { return *state_; }

    // Makes container what the request is about next. In a read it is the filter of the paths that are added.
    void enter(qidl_tvk_datatree &container);

private:
    void release_stacks();
    void release_texts();

    tvk_request request_{};
    tvk_request_ctx request_context_{};
    std::unique_ptr<tvk_map_request_state> state_;  // too large for the stack
    tvk_map_context mapping_context_{};
};

}  // namespace tvk::tool
