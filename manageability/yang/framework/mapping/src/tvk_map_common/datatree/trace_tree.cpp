// The listing as trace messages, and the call of the framework's own printer.
#include "tvk_map_common/datatree/listing.h"
#include "tvk_map_common/internal/assertion.h"
#include "tvk_map_common/internal/log.h"

namespace tvk {

namespace {

constexpr char kOperation[] = "tvk_map_trace_subtrees";

class Tracer {
public:
    explicit Tracer(tvk_map_ctx ctx) : ctx_(ctx) {}

    qerrno name(const Node &node, int indent) const {
        if (!is_named(node)) {
            return TVK_ERR_NOT_FOUND;
        }
        TVK_TRC_AS(kOperation, ctx_, "%*s%s", indent, "", node.tag);
        return TVK_OK;
    }
    qerrno name_with_ns(const Node &node, int indent) const {
        if (!is_named(node)) {
            return TVK_ERR_NOT_FOUND;
        }
        TVK_TRC_AS(kOperation, ctx_, "%*s%s (%s)", indent, "", node.tag, shown(node.ns));
        return TVK_OK;
    }
    void data(const char *data) const { TVK_TRC_AS(kOperation, ctx_, " : %s", shown(data)); }
    // The leading blank of the label is left out, unlike in the printed listing.
    void operation(const char *label) const { TVK_TRC_AS(kOperation, ctx_, "%s", label + 1); }
    void position(const char *label) const { TVK_TRC_AS(kOperation, ctx_, "%s", label); }
    void node_kind(const char *label) const { TVK_TRC_AS(kOperation, ctx_, "%s", label); }
    void keys(const struct tvk_map_insert_info &info) const {
        TVK_TRC_AS(kOperation, ctx_, "(key) ");
        for (int32_t i = 0; i < info.key_count; ++i) {
            TVK_TRC_AS(kOperation, ctx_, "(%s=%s)", info.keys[i].name, info.keys[i].value);
        }
    }
    void value(const char *value) const { TVK_TRC_AS(kOperation, ctx_, "(value=%s)", value); }
    void attribute(const struct qidl_tvk_name_value &attribute) const {
        TVK_TRC_AS(kOperation, ctx_, " %s=%s", shown(attribute.name), shown(attribute.value));
    }
    void end_line() const { TVK_TRC_AS(kOperation, ctx_, "\n"); }

private:
    bool is_named(const Node &node) const {
        if (node.tag == nullptr) {
            TVK_ERR_AS(kOperation, ctx_, "Tag name is not available!");
        }
        return node.tag != nullptr;
    }

    tvk_map_ctx ctx_;
};

}  // namespace

}  // namespace tvk

using namespace tvk;

qerrno tvk_map_trace_subtrees(tvk_map_ctx ctx, const struct qidl_tvk_datatree *node, uint32_t depth,
                              int namespace_mode) {
    TVK_ASSERT_CONTEXT(ctx, kCommonSource,
                       "qerrno tvk_map_trace_subtrees(tvk_map_ctx, const struct qidl_tvk_datatree *, uint32_t, int)");
    if (node == nullptr) {
        TVK_ERR(ctx, "NULL argument(s) passed!");
        return TVK_ERR_INVALID;
    }
    TVK_TRC(ctx, "HN: %s", shown(node->tag));
    Tracer tracer{ctx};
    const qerrno status = list_descendants(*node, depth, namespace_mode != 0, tracer);
    if (status == TVK_ERR_NO_MEMORY) {
        TVK_ERR(ctx, "Failed to copy path string!");
    }
    TVK_TRC(ctx, " (=====)");
    return status;
}

qerrno tvk_map_print_datatree_internal(tvk_map_ctx ctx, const struct qidl_tvk_datatree *tree, const char *title,
                                       uint32_t depth, uint32_t max_depth, uint32_t options) {
    if (ctx == nullptr || tree == nullptr || ctx->print_enabled == 0) {
        return TVK_OK;
    }
    return tvk_gpb_datatree_trace_internal(&ctx->log_filter, tree, title, depth, max_depth, options);
}
