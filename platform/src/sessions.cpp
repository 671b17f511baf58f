// The session table, one for all framework contexts of the process.
#include <cstdint>
#include <map>
#include <mutex>
#include <new>
#include <utility>

#include "tvk_platform_control.h"
#include "tvk_session.h"

namespace {

using Table = std::map<std::pair<tvk_framework_ctx, std::uint32_t>, tvk_session *>;

// Requests look sessions up on threads of their own while others open and close.
constinit std::mutex table_lock;

Table &table() {
    static Table sessions;
    return sessions;
}

}  // namespace

struct tvk_session *tvk_session_find(tvk_framework_ctx tvk_ctx, uint32_t session_id) {
    const std::lock_guard locked(table_lock);
    const auto found = table().find({tvk_ctx, session_id});
    return found != table().end() ? found->second : nullptr;
}

int tvk_platform_set_session(tvk_framework_ctx tvk_ctx, uint32_t session_id, struct tvk_session *session) {
    const std::lock_guard locked(table_lock);
    if (session == nullptr) {
        table().erase({tvk_ctx, session_id});
        return 1;
    }
    try {
        table().insert_or_assign({tvk_ctx, session_id}, session);
    } catch (const std::bad_alloc &) {
        return 0;
    }
    return 1;
}
