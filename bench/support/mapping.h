// The variants of this library: a request as a framework would make it, and the trees that the benchmarks build.
#pragma once

#include <cstddef>
#include <vector>

#include "framework/request_scope.h"
#include "framework/tree_holder.h"
#include "harness.h"
#include "qidl_tvk_datatree.h"
#include "tvk_map_types.h"

namespace tvk::bench {

using Node = qidl_tvk_datatree;

enum class Index : uint32_t { kOff = 0, kOn = 16 };

struct Variant {
    const char *name;
    Index index;
    std::size_t largest;

    std::vector<std::size_t> sizes() const { return sizes_up_to(largest); }
};

// One variant with the index over children, and one without it.
inline constexpr Variant kVariants[] = {{"tvk_map", Index::kOn, kLargest},
                                        {"tvk_map_scan", Index::kOff, kLargestQuadratic}};

// A request with its tree. The fields are released in the order that both need.
class Build {
public:
    explicit Build(Index index = Index::kOn, uint32_t request_type = TVK_REQUEST_EDIT_CONFIG)
        : framework_(false), request_(framework_, request_type) {
        request_.ctx()->index_children_from = static_cast<uint32_t>(index);
    }

    Node &root() { return tree_.root(); }
    Node &top() { return *tree_.root().subtrees; }
    tvk_map_ctx ctx() { return request_.ctx(); }

private:
    framework::TreeHolder tree_;
    framework::Framework framework_;
    framework::RequestScope request_;
};

// Exported operations take some texts as writable and do not write them.
inline char *text(const char *constant) {
    return const_cast<char *>(constant);
}

// Throws for a status that is no success.
void check(qerrno status);

// Adds the container around the entries, or a whole entry below it, by the handles of its nodes, without looking for
// anything among the entries.
Node &add_top(Build &build);
void add_entry(Build &build, Node &top, std::size_t entry);
void add_entries(Build &build, std::size_t entries);

// Counts the nodes below root.
std::size_t count_nodes(const Node &root);

}  // namespace tvk::bench
