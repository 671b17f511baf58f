#include "operation.h"

#include <cstring>
#include <set>
#include <span>

#include "allocation_failures.h"
#include "kel_memory.h"
#include "status.h"

namespace tvk::test {

namespace {

std::string text_of(const char *text) {
    return text != nullptr ? text : "-";
}

std::string sketch(const qidl_tvk_datatree &record) {
    std::string text = text_of(record.tag);
    text += record.ns == nullptr || std::strcmp(record.ns, kNs) != 0 ? ":" + text_of(record.ns) : "";
    text += record.data != nullptr ? std::string("=") + record.data : "";
    text += record.data_ns != nullptr ? std::string("@") + record.data_ns : "";
    text += record.subtree_index != 0 ? "#" + std::to_string(record.subtree_index) : "";
    text += (record.presence & TVK_HAS_EDIT_INSERT) != 0 ? "+" + std::to_string(record.edit_insert.key_count) : "";
    std::string children;
    for (const auto &child : std::span(record.subtrees, static_cast<std::size_t>(record.subtree_count))) {
        children += (children.empty() ? "" : ",") + sketch(child);
    }
    return text + (children.empty() ? "" : "(" + children + ")");
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

std::string shown(qerrno status, const std::string &text) {
    return ::testing::PrintToString(Status{status}) + " " + text;
}

}  // namespace

World::World(const Operation &operation, std::uint32_t index_children_from) : tree(operation.tree) {
    mapping.context.index_children_from = index_children_from;
    tvk_map_dfs_stack_init(&stack);
    tvk_map_add_to_node_hierarchy(ctx, request.get(), TVK_LEVEL_CONTAINER);
    tvk_map_add_to_node_hierarchy(ctx, find(request, "if"), TVK_LEVEL_LIST);
    if (operation.beforehand) {
        operation.beforehand(*this);
    }
}

World::~World() {
    while (tvk_map_util_itree_stack_size(ctx) > 0) {
        tvk_map_util_itree_stack_pop(ctx);
    }
    tvk_map_dfs_stack_free(&stack);
    kel_named_free(value);
}

std::string World::text() const {
    std::string text = sketch(*tree);
    for (int depth = 2; depth < state.hierarchy_depth; ++depth) {
        text +=
            field("level", text_of(state.hierarchy[depth].path).c_str()) + ":" + text_of(state.hierarchy[depth].tag);
    }
    return text + field("trim", state.pending_trim_path) + field("pending", state.pending_list_node) +
           field("error", state.error_xpath) + field("culprit", state.error_node_tag) +
           field("list", mapping.context.current_list_node) + field("items", tvk_map_util_itree_stack_size(ctx)) +
           field("outputs", state.output_list_count) + field("recorded", state.path_record_count) +
           field("schema", state.req_tree_schema) + (kel_queue_empty(&stack) != 0 ? "" : " pushed") +
           field("found", found) + field("out", out) + field("value", value) + field("number", number);
}

tvk_map_node_operation &World::xpath(std::uint32_t op, std::uint32_t kind, const std::string &place) {
    record = {};
    record.root = tree.get();
    record.op = op;
    record.kind = kind;
    std::strcpy(record.value, "v");
    std::strcpy(record.ns, kNs);
    std::strcpy(record.trim_path, "/trim");
    place.copy(record.xpath, sizeof record.xpath - 1);
    return record;
}

tvk_map_dfs_elem &World::element(qidl_tvk_datatree *node) {
    work.level = 1;
    work.node = work.pair.node = node;
    return work;
}

void sweep(const Operation &operation, std::uint32_t index_children_from) {
    std::string before, whole;
    std::set<std::string> met;
    for_each_allocation_failure([&](AllocationFailure &failure) {
        World world(operation, index_children_from);
        before = world.text();
        const qerrno status = failure.during([&] { return operation.call(world); });
        const std::string outcome = shown(status, world.text());
        if (!failure.is_injected()) {
            EXPECT_STATUS(operation.answers, status);
            whole = outcome;
        } else {
            met.insert(outcome);
        }
    });
    std::set<std::string> expected;
    for (const Outcome &outcome : operation.outcomes) {
        expected.insert(shown(outcome.status, outcome.text.empty() ? before : outcome.text));
    }
    if (index_children_from != 0) {
        expected.insert(whole);
        std::erase_if(expected, [&](const std::string &outcome) { return !met.contains(outcome); });
    }
    EXPECT_EQ(expected, met) << "without failure " << whole;
}

void expect_no_allocation(const Operation &operation, std::uint32_t index_children_from) {
    std::string texts[2];
    qerrno statuses[2];
    for (const bool fails : {false, true}) {
        World world(operation, index_children_from);
        AllocationFailure failure(fails ? 1 : 0, fails);
        statuses[fails] = failure.during([&] { return operation.call(world); });
        texts[fails] = world.text();
        EXPECT_TRUE(index_children_from != 0 || failure.allocations() == 0) << failure.allocations();
    }
    EXPECT_EQ(operation.answers, statuses[0]);
    EXPECT_EQ(statuses[0], statuses[1]);
    EXPECT_EQ(texts[0], texts[1]);
}

}  // namespace tvk::test
