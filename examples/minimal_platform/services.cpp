// A log that is off, a trace that drops its lines, a device of no special type, and a session table of fixed size.
#include <atomic>
#include <cstdint>

#include "minimal_platform.h"
#include "platform_info.h"
#include "qidl_tvk_datatree.h"
#include "tvk_diagnostics.h"
#include "tvk_session.h"

namespace {

struct Entry {
    tvk_framework_ctx tvk_ctx;
    std::uint32_t id;
    tvk_session *session;  // null: the entry is not in use
};

constinit Entry sessions[MINIMAL_PLATFORM_SESSIONS] = {};
constinit std::atomic<std::uint32_t> next_trace_index{1};

Entry *find_entry(tvk_framework_ctx tvk_ctx, std::uint32_t id) {
    for (Entry &entry : sessions) {
        if (entry.session != nullptr && entry.tvk_ctx == tvk_ctx && entry.id == id) {
            return &entry;
        }
    }
    return nullptr;
}

Entry *find_unused() {
    for (Entry &entry : sessions) {
        if (entry.session == nullptr) {
            return &entry;
        }
    }
    return nullptr;
}

}  // namespace

// The library formats nothing for a log that is off, so the operation for a line has nothing to do.
int tvk_debug_should_log(void *const *, uint32_t) {
    return 0;
}

void _kel_dt_log_filter_adv(void *, uint32_t, uint32_t, uint32_t, uint32_t, uint32_t, uint32_t *, const char *, ...) {}

uint32_t ret_nc_tvk_trace_index_incr(void) {
    return next_trace_index.fetch_add(1, std::memory_order_relaxed);
}

void _lstrace(void *, uint64_t, const char *) {}

qerrno tvk_gpb_datatree_trace_internal(void *const *, const struct qidl_tvk_datatree *, const char *, uint32_t,
                                       uint32_t, uint32_t) {
    return TVK_OK;
}

uint32_t platform_get_router_type(void) {
    return 0;
}

struct tvk_session *tvk_session_find(tvk_framework_ctx tvk_ctx, uint32_t session_id) {
    const Entry *entry = find_entry(tvk_ctx, session_id);
    return entry != nullptr ? entry->session : nullptr;
}

int minimal_platform_set_session(tvk_framework_ctx tvk_ctx, uint32_t session_id, struct tvk_session *session) {
    Entry *entry = find_entry(tvk_ctx, session_id);
    if (entry == nullptr && session != nullptr) {
        entry = find_unused();
    }
    if (entry != nullptr) {
        *entry = {tvk_ctx, session_id, session};
    }
    return entry != nullptr || session == nullptr ? 1 : 0;
}
