// A framework in C++17: adds a path on the heap of the default platform layer, with its accounting and log switched on.
#include <cstdio>
#include <cstring>
#include <string>

#include "tvk_diagnostics.h"
#include "tvk_map.h"
#include "tvk_platform_control.h"

namespace {

void keep_lines(void *user, const char *line) {
    static_cast<std::string *>(user)->append(line);
}

}  // namespace

int main() {
    static tvk_map_request_state state;
    tvk_request request{};
    tvk_map_context context{};
    qidl_tvk_datatree target{};
    std::string log;
    request.type = TVK_REQUEST_EDIT_CONFIG;
    state.request = &request;
    context.state = &state;

    tvk_platform_set_accounting(1);
    tvk_platform_set_debug_log(1, TVK_LOG_LEVEL_TRC, keep_lines, &log);
    const qerrno status =
        tvk_map_datatree_add_path(&context, &target, "host/name", "urn:example:host", "r1", nullptr, nullptr, 0);
    const bool added = status == TVK_OK && target.subtree_count == 1 &&
                       std::strcmp(target.subtrees->subtrees->data, "r1") == 0 && tvk_platform_live_blocks(nullptr) > 0;
    qidl_tvk_datatree_free_ext(&target, tvk_gpb_free, nullptr, 0);
    if (!added || log.empty() || tvk_platform_live_blocks(nullptr) != 0) {
        std::fprintf(stderr, "status 0x%x, %zu blocks left, log: %s\n", status, tvk_platform_live_blocks(nullptr),
                     log.c_str());
        return 1;
    }
    return 0;
}
