// A framework in C++17: adds a path on the heap of the default platform layer, with its accounting switched on.
#include "tvk_map.h"
#include "tvk_platform_control.h"

int main() {
    static tvk_map_request_state state;
    tvk_map_context context{};
    qidl_tvk_datatree target{};
    context.state = &state;
    tvk_platform_set_accounting(1);
    const qerrno status =
        tvk_map_datatree_add_path(&context, &target, "host/name", "urn:example:host", "r1", nullptr, nullptr, 0);
    const bool added = status == TVK_OK && target.subtree_count == 1 && tvk_platform_live_blocks(nullptr) > 0;
    qidl_tvk_datatree_free_ext(&target, tvk_gpb_free, nullptr, 0);
    return added && tvk_platform_live_blocks(nullptr) == 0 ? 0 : 1;
}
