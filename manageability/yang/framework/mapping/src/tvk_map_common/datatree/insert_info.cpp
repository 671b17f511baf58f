// Copying the insert attribute of a node for mapping code.
#include <algorithm>
#include <cstdint>

#include "qidl_tvk_datatree.h"
#include "tvk_map_common/internal/node.h"
#include "tvk_map_print.h"
#include "tvk_string.h"

namespace tvk {

namespace {

// Copies text; one that does not fit leaves the destination empty.
void copy(char (&destination)[TVK_MAP_INSERT_TEXT], const char *text) {
    tvk_strcpy_s("tvk_datatree_get_insert_attribute_info", destination, sizeof destination, text);
}

void copy_keys(const struct qidl_tvk_edit_insert &insert, struct tvk_map_insert_info &info) {
    copy(info.keys_str, insert.keys_str);
    const int32_t available = insert.keys != nullptr ? insert.key_count : 0;
    info.key_count = std::clamp(available, 0, TVK_MAP_MAX_INSERT_KEYS);
    for (int32_t i = 0; i < info.key_count; ++i) {
        copy(info.keys[i].name, insert.keys[i].name);
        copy(info.keys[i].value, insert.keys[i].value);
    }
}

}  // namespace

}  // namespace tvk

using namespace tvk;

qerrno tvk_datatree_get_insert_attribute_info(const struct qidl_tvk_datatree *node, struct tvk_map_insert_info *info) {
    if (node == nullptr || info == nullptr || !carries_insert(*node)) {
        return TVK_OK;
    }
    const struct qidl_tvk_edit_insert &insert = node->edit_insert;
    info->position = insert.position;
    info->has_key_or_value = 1;
    if ((insert.insert_presence & TVK_INSERT_HAS_KEYS) != 0 || insert.keys_presence != 0) {
        copy_keys(insert, *info);
    } else if ((insert.insert_presence & TVK_INSERT_HAS_VALUE) != 0 || insert.value_presence != 0) {
        info->key_count = 0;
        copy(info->value, insert.value);
    } else {
        info->has_key_or_value = 0;
    }
    return TVK_OK;
}
