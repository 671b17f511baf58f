#include "operation.h"

#include <cstring>
#include <span>

#include "allocation_failures.h"
#include "kel_memory.h"
#include "status.h"

namespace tvk::test {

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
    return sketch(*tree) + mapping.text(*tree) + (kel_queue_empty(&stack) != 0 ? "" : " pushed") +
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

Outcomes sweep(const Operation &operation, std::uint32_t index_children_from) {
    Outcomes outcomes;
    const auto run = [&](AllocationFailure &failure) {
        World world(operation, index_children_from);
        const qerrno status = failure.during([&] { return operation.call(world); });
        const std::string outcome = Status{status}.text() + " " + world.text();
        if (failure.is_injected()) {
            outcomes.without_memory.insert(outcome);
        } else {
            outcomes.whole = outcome;
        }
    };
    AllocationFailure none(0, false);
    run(none);
    if (none.allocations() != 0) {
        for_each_allocation_failure(run);
    }
    return outcomes;
}

}  // namespace tvk::test
