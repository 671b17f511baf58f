#include "context.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>

#include "kel_memory.h"
#include "tree.h"
#include "tvk_diagnostics.h"
#include "tvk_map_walk.h"
#include "tvk_platform_control.h"

namespace tvk::test {

namespace {

void keep_line(void *user, const char *line) {
    static_cast<Lines *>(user)->emplace_back(line);
}

std::string without_context(std::string line) {
    static const std::string prefix = "TVK: ctx=";
    const std::size_t start = line.find(prefix);
    const std::size_t comma = line.find(',', start);
    if (start == std::strlen("ERR: ") && comma != std::string::npos) {
        line.erase(start, comma + 1 - start);
    }
    return line;
}

}  // namespace

std::string joined(const Lines &lines) {
    std::string text;
    for (const std::string &line : lines) {
        text += (text.empty() ? "" : "|") + line;
    }
    return text;
}

LogCapture::LogCapture(std::uint32_t level) {
    tvk_platform_set_debug_log(1, level, keep_line, &logs_);
    tvk_platform_set_trace(keep_line, &traces_);
    tvk_platform_set_trace_index(1);
}

LogCapture::~LogCapture() {
    tvk_platform_set_debug_log(0, 0, nullptr, nullptr);
    tvk_platform_set_trace(nullptr, nullptr);
}

Lines LogCapture::logs() const {
    Lines lines;
    for (const std::string &line : logs_) {
        lines.push_back(without_context(line));
    }
    return lines;
}

Lines LogCapture::errors() const {
    Lines lines = logs();
    std::erase_if(lines, [](const std::string &line) { return !line.starts_with("ERR:"); });
    return lines;
}

void LogCapture::clear() {
    logs_.clear();
    traces_.clear();
}

MappingContext::MappingContext(std::uint32_t request_type) : state(std::make_unique<tvk_map_request_state>()) {
    request.type = request_type;
    req_ctx.tvk_ctx = &framework;
    req_ctx.request = &request;
    state->request = &request;
    context.req_ctx = &req_ctx;
    context.state = state.get();
    if (const char *from = std::getenv("TVK_INDEX_CHILDREN_FROM"); from != nullptr) {
        context.index_children_from = static_cast<std::uint32_t>(std::atoi(from));
    }
}

MappingContext::~MappingContext() {
    // A walk takes its items off again.
    EXPECT_EQ(0u, tvk_map_util_itree_stack_size(ctx)) << "items are left on the instance-tree stack";
    tvk_map_release_request_state(ctx);
}

std::string field(const char *name, const char *value) {
    return value != nullptr ? std::string(" ") + name + "=" + value : "";
}

std::string field(const char *name, const qidl_tvk_datatree *record) {
    return record != nullptr ? std::string(" ") + name + "=" + sketch(*record) : "";
}

std::string field(const char *name, std::size_t value) {
    return value != 0 ? std::string(" ") + name + "=" + std::to_string(value) : "";
}

std::string MappingContext::text(const qidl_tvk_datatree &tree, int first_level) const {
    std::string text;
    for (int depth = first_level; depth < state->hierarchy_depth; ++depth) {
        text += " level=" + text_of(state->hierarchy[depth].path) + ":" + text_of(state->hierarchy[depth].tag);
    }
    const auto *pending = state->pending_list_node;
    return text + field("trim", state->pending_trim_path) +
           field("pending", pending == nullptr ? nullptr : place_of(tree, pending).c_str()) +
           field("error", state->error_xpath) + field("culprit", state->error_node_tag) +
           field("list", context.current_list_node) + field("items", tvk_map_util_itree_stack_size(ctx)) +
           field("outputs", state->output_list_count) + field("recorded", state->path_record_count) +
           field("schema", state->req_tree_schema);
}

MappingTest::MappingTest() {
    tvk_platform_set_router_type(0);
}

}  // namespace tvk::test
