// Sets up the records of a request, and tells modules of its begin and end.
#include "framework/request_scope.h"

#include <algorithm>
#include <new>

#include "kel_memory.h"
#include "tvk_map_walk.h"

namespace tvk::framework {

namespace {

void note_unmapped(tvk_map_context *ctx, const qidl_tvk_datatree *node) {
    auto &unmapped = *static_cast<Unmapped *>(ctx->framework_data);
    try {
        unmapped.nodes[node] = ctx->failure_reason != nullptr ? ctx->failure_reason : "";
    } catch (const std::bad_alloc &) {  // no exception may pass through the library
        unmapped.lost_some = true;
    }
    kel_named_free(ctx->failure_reason);
    ctx->failure_reason = nullptr;
}

}  // namespace

RequestScope::RequestScope(Framework &framework, uint32_t request_type, uint8_t with_defaults, MappingMemory *memory)
    : state_(std::make_unique<tvk_map_request_state>()), memory_(memory != nullptr ? *memory : own_memory_) {
    request_.type = request_type;
    request_.session_id = kSessionId;
    request_.presence = TVK_REQUEST_HAS_SESSION_ID;
    if (with_defaults != TVK_WITH_DEFAULTS_NONE) {
        request_.with_defaults_mode = with_defaults;
        request_.presence |= TVK_REQUEST_HAS_WITH_DEFAULTS;
    }
    request_context_.tvk_ctx = framework.context();
    request_context_.request = &request_;
    state_->request = &request_;
    mapping_context_.req_ctx = &request_context_;
    mapping_context_.state = state_.get();
    mapping_context_.trace_enabled = framework.context()->trace_enabled;
    mapping_context_.dfs_trace = framework.context()->trace_enabled;
    mapping_context_.index_children_from = framework.index_children_from();
    mapping_context_.note_unmapped = note_unmapped;
    mapping_context_.framework_data = &unmapped_;
}

RequestScope::~RequestScope() {
    end_modules();
    mapping_context_.trace_enabled = 0;  // the trace shows the request, not its release
    tvk_map_release_request_state(ctx());
    kel_named_free(mapping_context_.failure_reason);
}

qerrno RequestScope::enter(const tvk_map_module &module, qidl_tvk_datatree &container) {
    state_->datatree = &container;
    if (is_read()) {
        state_->build_flags = TVK_BUILD_FILTERED;
    }
    if (shown_ == &module) {
        return TVK_OK;
    }
    const bool is_begun = std::find(begun_.begin(), begun_.end(), &module) != begun_.end();
    if (!is_begun) {
        memory_.of(module);
        begun_.reserve(begun_.size() + 1);
    }
    show(&module);
    if (is_begun) {
        return TVK_OK;
    }
    const qerrno status = module.begin_request != nullptr ? module.begin_request(ctx()) : TVK_OK;
    if (status == TVK_OK) {
        begun_.push_back(&module);
    }
    return status;
}

bool RequestScope::is_read() const {
    return request_.type == TVK_REQUEST_GET || request_.type == TVK_REQUEST_GET_CONFIG;
}

void RequestScope::show(const tvk_map_module *module) {
    if (shown_ != nullptr) {
        memory_.of(*shown_) = mapping_context_.mapping_data;
    }
    shown_ = module;
    mapping_context_.mapping_data = module != nullptr ? memory_.of(*module) : nullptr;
}

void RequestScope::end_modules() {
    for (const tvk_map_module *module : begun_) {
        show(module);
        if (module->end_request != nullptr) {
            module->end_request(ctx());
        }
    }
    show(nullptr);
}

}  // namespace tvk::framework
