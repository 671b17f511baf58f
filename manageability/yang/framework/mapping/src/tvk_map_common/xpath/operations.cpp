// Operations on the node at an xpath.
#include <cstring>
#include <utility>

#include "tvk_map_common/datatree/children.h"
#include "tvk_map_common/internal/assertion.h"
#include "tvk_map_common/internal/log.h"
#include "tvk_map_common/internal/node.h"
#include "tvk_map_common/internal/owned.h"
#include "tvk_map_common/xpath/add.h"
#include "tvk_map_common/xpath/key_groups.h"
#include "tvk_map_common/xpath/search.h"

namespace tvk {

namespace {

constexpr char kPrototype[] = "qerrno tvk_map_tree_xpath_operations(tvk_map_ctx, struct tvk_map_node_operation *)";

constexpr char kOperation[] = "tvk_map_tree_xpath_operations";

template <std::size_t kSize>
bool is_filled(const char (&text)[kSize]) {
    return text[0] != '\0' && std::memchr(text, '\0', kSize) != nullptr;
}

bool stores_value(const tvk_map_node_operation &record) {
    return record.op == TVK_XPATH_MODIFY ||
           (record.op == TVK_XPATH_ADD && (record.kind == TVK_XPATH_LEAF || record.kind == TVK_XPATH_LEAF_INSTANCE));
}

bool is_valid(const tvk_map_node_operation &record) {
    return record.op >= TVK_XPATH_ADD && record.op <= TVK_XPATH_READ && record.kind >= TVK_XPATH_CONTAINER &&
           record.kind <= TVK_XPATH_LEAF_INSTANCE && is_filled(record.ns) && is_filled(record.xpath) &&
           (!stores_value(record) || std::memchr(record.value, '\0', sizeof record.value) != nullptr) &&
           has_usable_steps(record.xpath);
}

qerrno add(tvk_map_ctx ctx, tvk_map_node_operation &record) {
    TVK_ASSERT_CONTEXT(ctx, kCommonSource, kPrototype);
    XpathSearch search{&record, 0, ctx};
    if (tvk_map_search_subtree_node(search) != TVK_ERR_NOT_PRESENT) {
        TVK_ERR_AS(kOperation, ctx, "Node already present in the path %s\n", record.xpath);
        return TVK_ERR_PRESENT;
    }
    // One character is skipped as the leading "/", whether the path has one or not. Without one the rest is another
    // path, and its steps are checked again.
    const char *remaining = record.xpath + search.stop_offset + 1;
    const bool is_usable = record.xpath[0] == '/' || has_usable_steps(remaining);
    if (!is_usable || Steps{remaining}.at_end()) {
        record.result = nullptr;
        return TVK_ERR_INVALID;
    }
    return add_remaining_path(ctx, record, remaining);
}

qerrno modify(tvk_map_ctx ctx, tvk_map_node_operation &record, const Node &parent) {
    NamedString copy = copy_text(record.value, "TVK MAP MODIFY DATA");
    if (copy == nullptr) {
        record.result = nullptr;
        return TVK_ERR_NO_MEMORY;
    }
    set_value(ctx, parent, *record.result, std::move(copy));
    return TVK_OK;
}

void read(tvk_map_node_operation &record) {
    // The value is read as it stands, whatever its presence bit says, because the keys of a path are compared in the
    // same way.
    const char *value = record.result->data != nullptr ? record.result->data : "";
    strncpy_s(record.value, sizeof record.value, value, sizeof record.value - 1);
}

qerrno find(tvk_map_ctx ctx, tvk_map_node_operation &record, const Node *&parent) {
    XpathSearch search{&record, 0, ctx};
    const qerrno status = tvk_map_search_subtree_node(search);
    parent = search.parent;
    if (status != TVK_OK) {
        TVK_ASSERT_CONTEXT(ctx, kCommonSource, kPrototype);
        TVK_ERR_AS(kOperation, ctx, "Node not present in the path %s\n", record.xpath);
    }
    return status;
}

}  // namespace

}  // namespace tvk

using namespace tvk;

qerrno tvk_map_tree_xpath_operations(tvk_map_ctx ctx, struct tvk_map_node_operation *record) {
    if (record == nullptr || record->root == nullptr) {
        TVK_ASSERT_CONTEXT(ctx, kCommonSource, kPrototype);
        TVK_ERR(ctx, "NULL argument(s) passed!");
        return TVK_ERR_INVALID;
    }
    if (!is_valid(*record)) {
        return TVK_ERR_INVALID;
    }
    if (record->op == TVK_XPATH_NO_ACTION) {
        return TVK_OK;
    }
    if (record->op == TVK_XPATH_ADD) {
        return add(ctx, *record);
    }
    const Node *parent = nullptr;
    if (const qerrno status = find(ctx, *record, parent); status != TVK_OK) {
        return status;
    }
    if (record->op == TVK_XPATH_MODIFY) {
        return modify(ctx, *record, *parent);
    }
    read(*record);
    return TVK_OK;
}
