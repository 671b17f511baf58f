// Building xpaths from path tokens and the node hierarchy.
#include "tvk_map_common/internal/assertion.h"
#include "tvk_map_common/internal/log.h"
#include "tvk_map_common/internal/node.h"
#include "tvk_map_common/internal/request.h"
#include "tvk_map_walk.h"
#include "tvk_map_xpath.h"

namespace tvk {

namespace {

// Appends texts to a buffer. The first one that does not fit leaves the buffer empty, and nothing more is appended.
class XpathText {
public:
    explicit XpathText(char *buffer) : buffer_(buffer) {}

    XpathText &operator<<(const char *text) {
        fits_ = fits_ && (text == nullptr || strcat_s(buffer_, TVK_MAP_MAX_PATH, text) == 0);
        return *this;
    }
    bool fits() const { return fits_; }

private:
    char *buffer_;
    bool fits_ = true;
};

// Returns the nodes among which the keys of a list entry are. While keys or a propagation are worked on, an entry
// without children stands for the nodes on top of the instance-tree stack.
std::span<Node> key_candidates(tvk_map_ctx ctx, Node &list_entry) {
    const std::span<Node> own = children(list_entry);
    if (!own.empty() || (!is_propagating(ctx) && !is_working_on_keys(ctx))) {
        return own;
    }
    tvk_map_itree_item *item = nullptr;
    tvk_map_util_itree_stack_peak(ctx, &item);
    if (item == nullptr || item->nodes == nullptr) {
        return {};
    }
    const std::span<Node> nodes{item->nodes, item->node_count};
    for (Node &node : nodes) {
        mark_key(node);
    }
    return nodes;
}

const tvk_map_hierarchy_level *list_level(tvk_map_ctx ctx, std::int64_t index) {
    if (ctx->state == nullptr || index < 1 || index >= ctx->state->hierarchy_depth) {
        return nullptr;
    }
    const tvk_map_hierarchy_level &level = ctx->state->hierarchy[index];
    return level.kind == TVK_LEVEL_LIST && level.node != nullptr ? &level : nullptr;
}

}  // namespace

}  // namespace tvk

using namespace tvk;

qerrno tvk_map_xpath_list_append(tvk_map_ctx ctx, char *xpath, struct qidl_tvk_datatree *list_entry,
                                 const char *token) {
    TVK_ASSERT_CONTEXT(
        ctx, kCommonSource,
        "qerrno tvk_map_xpath_list_append(tvk_map_ctx, char *, struct qidl_tvk_datatree *, const char *)");
    if (xpath == nullptr || list_entry == nullptr) {
        TVK_ERR(ctx, "NULL argument(s) passed!");
        return TVK_ERR_INVALID;
    }
    const auto candidates = key_candidates(ctx, *list_entry);
    XpathText text{xpath};
    text << token;
    bool has_keys = false;
    for (const Node &child : candidates) {
        if (is_key(child)) {
            text << (has_keys ? "][" : "[") << child.tag << "=" << (has(child, TVK_HAS_DATA) ? child.data : "");
            has_keys = true;
        }
    }
    text << (has_keys ? "]" : "");
    return text.fits() ? TVK_OK : TVK_ERR_NO_MEMORY;
}

qerrno tvk_map_build_xpath_from_tokens(tvk_map_ctx ctx, const char *const *tokens, uint32_t token_count,
                                       int32_t level_offset, char *xpath, char *trim_path) {
    TVK_ASSERT_CONTEXT(ctx, kCommonSource,
                       "qerrno tvk_map_build_xpath_from_tokens(tvk_map_ctx, const char *const *, uint32_t, int32_t, "
                       "char *, char *)");
    if (xpath == nullptr) {
        TVK_ERR(ctx, "NULL argument(s) passed!");
        return TVK_ERR_INVALID;
    }
    for (std::uint32_t i = 0; tokens != nullptr && i < token_count; ++i) {
        if (const auto *level = list_level(ctx, std::int64_t{level_offset} + i); level != nullptr) {
            // An entry whose keys do not fit ends the path without being an error.
            if (tvk_map_xpath_list_append(ctx, xpath, level->node, tokens[i]) != TVK_OK) {
                return TVK_OK;
            }
        } else if (!(XpathText{xpath} << tokens[i]).fits()) {
            return TVK_ERR_NO_MEMORY;
        }
        if (trim_path != nullptr && !(XpathText{trim_path} << tokens[i]).fits()) {
            return TVK_OK;
        }
    }
    return TVK_OK;
}

qerrno tvk_map_add_leaf_from_xpath(tvk_map_ctx ctx, const struct qidl_tvk_datatree *leaf,
                                   struct qidl_tvk_datatree *root, const void *, const char *ns,
                                   const char *const *tokens, uint32_t token_count) {
    constexpr std::int32_t kLevelOffset = -1;
    TVK_ASSERT_CONTEXT(ctx, kCommonSource,
                       "qerrno tvk_map_add_leaf_from_xpath(tvk_map_ctx, const struct qidl_tvk_datatree *, struct "
                       "qidl_tvk_datatree *, const void *, const char *, const char *const *, uint32_t)");
    if (!is_read_request(ctx)) {
        return TVK_OK;
    }
    if (leaf == nullptr || root == nullptr || ns == nullptr || tokens == nullptr) {
        TVK_ERR(ctx, "NULL argument(s) passed!");
        return TVK_ERR_INVALID;
    }
    tvk_map_node_operation record{};
    record.op = TVK_XPATH_ADD;
    record.kind = TVK_XPATH_LEAF;
    record.root = root;
    // A namespace that does not fit leaves the field empty, and the operation refuses that.
    strncpy_s(record.ns, sizeof record.ns, ns, sizeof record.ns);
    if (const qerrno status =
            tvk_map_build_xpath_from_tokens(ctx, tokens, token_count, kLevelOffset, record.xpath, nullptr);
        status != TVK_OK) {
        return status;
    }
    if (has(*leaf, TVK_HAS_DATA) && leaf->data != nullptr) {
        strncpy_s(record.value, sizeof record.value, leaf->data, sizeof record.value - 1);
    }
    const qerrno status = tvk_map_tree_xpath_operations(ctx, &record);
    if (status == TVK_ERR_PRESENT) {
        TVK_TRC(ctx, "xpath already added");
        return TVK_OK;
    }
    return status;
}
