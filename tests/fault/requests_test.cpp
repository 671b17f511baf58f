// Whole edits and gets through the example mappings, with every allocation failing once.
#include <algorithm>
#include <set>

#include "allocation_failures.h"
#include "mapped_request.h"
#include "status.h"
#include "tree.h"
#include "tvk_map_filter.h"

namespace {

using namespace tvk::test;

constexpr char kInterfacesNs[] = "http://openconfig.net/yang/interfaces";
constexpr char kIpNs[] = "http://openconfig.net/yang/interfaces/ip";
constexpr char kInstancesNs[] = "http://openconfig.net/yang/network-instance";
constexpr char kBgpTypesNs[] = "http://openconfig.net/yang/bgp-types";

template <class... Children>
Node neighbors(const Children &...children) {
    return node("network-instances", kInstancesNs)(node("network-instance")(
        leaf("name", "default"), node("protocols")(node("protocol")(leaf("identifier", "BGP"), leaf("name", "main"),
                                                                    node("bgp")(node("neighbors")(children...))))));
}

template <class... Children>
Node neighbor(const std::string &address, const Children &...children) {
    return node("neighbor")(leaf("neighbor-address", address), children...);
}

// Lists, leaves, identities and both passes of a replace are met.
Node edit_of_interfaces() {
    return node("interfaces", kInterfacesNs)(
        node("interface")
            .op(TVK_OPERATION_CREATE)(
                leaf("name", "eth0"),
                node("config")(leaf("name", "eth0"), leaf("type", "ethernetCsmacd"), leaf("mtu", "9000")),
                node("subinterfaces")(node("subinterface")(
                    leaf("index", "1"), node("ipv4", kIpNs)(node("addresses")(node("address")(
                                            leaf("ip", "192.0.2.1"), node("config")(leaf("prefix-length", "24")))))))),
        node("interface").op(TVK_OPERATION_REPLACE)(leaf("name", "eth1"), node("config")(leaf("description", "new"))),
        node("interface")(leaf("name", "eth2"), node("hold-time").op(TVK_OPERATION_DELETE)),
        node("interface").op(TVK_OPERATION_DELETE)(leaf("name", "eth0")));
}

// And stitching, conversions and changes by xpath.
Node edit_of_neighbors() {
    return neighbors(
        neighbor("192.0.2.1", node("config")(leaf("peer-as", "65001"), leaf("description", "new")),
                 node("afi-safis")(node("afi-safi")(leaf("afi-safi-name", "IPV4_UNICAST").data_ns(kBgpTypesNs),
                                                    node("config")(leaf("enabled", "true"))))),
        neighbor("192.0.2.2", node("config")(leaf("peer-as", "65002"))).op(TVK_OPERATION_REPLACE),
        neighbor("192.0.2.1").op(TVK_OPERATION_DELETE));
}

Node native_interfaces() {
    const auto interface = [](const char *name) {
        return node("interface-configuration")(leaf("interface-name", name), leaf("active", "act"));
    };
    return node("interface-configurations", "urn:example:native-interfaces")(
        interface("eth0")(leaf("type", "ethernet"),
                          node("mtus")(node("mtu")(leaf("owner", "interface"), leaf("mtu", "9000")))),
        interface("eth0.1")(node("interface-virtual"), node("ipv4-addresses")(node("address")(
                                                           leaf("ip", "192.0.2.1"), leaf("prefix-length", "24")))));
}

Node native_neighbors() {
    return node("bgp", "urn:example:native-bgp")(node("instances")(node("instance")(
        leaf("instance-name", "default"), leaf("process-name", "main"),
        node("peers")(node("peer")(leaf("address", "3221225985"), leaf("remote-as", "65001"), leaf("bandwidth", "5"),
                                   node("families")(node("family")(leaf("name", "inet"), leaf("mode", "on")))),
                      node("peer")(leaf("address", "3221225986"), leaf("remote-as", "65002"))))));
}

void erase_mark(std::string &line, const std::string &begin, const std::string &end) {
    if (const std::size_t at = line.find(begin); at != std::string::npos) {
        line.erase(at, line.find_first_of(end, at + begin.size()) - at);
    }
}

// The lines of a tree, each with those above it, without what tells siblings apart and what the filter left.
void add_nodes(const qidl_tvk_datatree &tree, const std::string &above, std::set<std::string> &nodes) {
    const std::string text = show(tree);
    std::string line = text.substr(0, text.find('\n'));
    erase_mark(line, " #", " \n");
    erase_mark(line, " {", " \n");
    erase_mark(line, " empty:", " \n");
    nodes.insert(above + line);
    for (std::int32_t i = 0; i < tree.subtree_count; ++i) {
        add_nodes(tree.subtrees[i], above + line + "/", nodes);
    }
}

std::set<std::string> nodes_of(const Tree &tree) {
    std::set<std::string> nodes;
    add_nodes(*tree, "", nodes);
    return nodes;
}

bool is_within(const std::set<std::string> &part, const std::set<std::string> &whole) {
    return std::includes(whole.begin(), whole.end(), part.begin(), part.end());
}

class RequestOutOfMemory : public HeapTest {
protected:
    static void expect_walk_is_over(const tvk_map_request_state &state) {
        EXPECT_EQ(0, state.hierarchy_depth);
        EXPECT_EQ(0, state.output_list_count);
        EXPECT_EQ(nullptr, state.itree_stack);
    }

    // Runs the edit; returns what it made of the target.
    static Tree edit(AllocationFailure &failure, const std::string &mapping_name, const Node &description,
                     qerrno &status) {
        Tree request = description;
        Tree target = root();
        MappingContext mapping;
        MappedRequest mapped(example(EXAMPLES, mapping_name), mapping.ctx);
        status = failure.during([&] { return mapped.handle(request, target); });
        expect_walk_is_over(*mapping.state);
        return target;
    }

    // Answers the get as a framework does, marking by names or by values.
    static Tree get(AllocationFailure &failure, const std::string &mapping_name, const Node &filter, const Node &native,
                    decltype(tvk_map_dfs_filter_mark) *mark, qerrno &status) {
        Tree request = filter;
        Tree response = root();
        MappingContext mapping(TVK_REQUEST_GET);
        mapping.state->datatree = request.get();
        mapping.state->build_flags = TVK_BUILD_FILTERED;
        const Database database(mapping, native);
        MappedRequest mapped(example(EXAMPLES, mapping_name), mapping.ctx);
        status = failure.during([&] {
            const qerrno mapped_status = mapped.handle(request, response);
            if (mapped_status == TVK_OK && response->subtree_count > 0) {
                mark(mapping.ctx, request.get(), response->subtrees);
                tvk_map_dfs_filter_sweep(mapping.ctx, response->subtrees);
            }
            return mapped_status;
        });
        expect_walk_is_over(*mapping.state);
        return response;
    }
};

TEST_F(RequestOutOfMemory, AnEditLosesNothingOrFails) {
    for (const auto &[mapping, description] :
         {std::pair("openconfig_interfaces", edit_of_interfaces()), {"openconfig_bgp", edit_of_neighbors()}}) {
        SCOPED_TRACE(mapping);
        std::set<std::string> whole;
        for_each_allocation_failure([&, mapping = mapping, &description = description](AllocationFailure &failure) {
            qerrno status = TVK_OK;
            const Tree target = edit(failure, mapping, description, status);
            // An entry that could not be searched for is added again, so there may be more than in the whole.
            const std::set<std::string> done = nodes_of(target);
            if (!failure.is_injected()) {
                EXPECT_STATUS(TVK_OK, status);
                whole = done;
            } else if (status == TVK_OK) {
                EXPECT_TRUE(is_within(whole, done)) << show(target);
            }
        });
        EXPECT_LT(10U, whole.size());
    }
}

// A path that the filter cannot be asked about is left out, and what cannot be visited is swept.
TEST_F(RequestOutOfMemory, AGetAnswersLessAndNeverMore) {
    const struct {
        const char *mapping;
        Node native, filter;
    } rows[] = {
        {"openconfig_interfaces", native_interfaces(), node("interfaces", kInterfacesNs)},
        {"openconfig_interfaces", native_interfaces(),
         node("interfaces", kInterfacesNs)(node("interface")(leaf("name", "eth0"), node("config")(node("mtu"))))},
        {"openconfig_bgp", native_neighbors(), node("network-instances", kInstancesNs)},
        {"openconfig_bgp", native_neighbors(), neighbors(node("neighbor")(node("config")(node("peer-as"))))},
    };
    for (const auto &row : rows) {
        for (auto *mark : {tvk_map_dfs_filter_mark, tvk_map_dfs_filter_con}) {
            SCOPED_TRACE(::testing::Message()
                         << row.mapping << (mark == tvk_map_dfs_filter_con ? " by values" : "") << "\n"
                         << show(row.filter));
            std::set<std::string> whole;
            for_each_allocation_failure([&](AllocationFailure &failure) {
                qerrno status = TVK_OK;
                const Tree response = get(failure, row.mapping, row.filter, row.native, mark, status);
                const std::set<std::string> answered = nodes_of(response);
                if (!failure.is_injected()) {
                    EXPECT_STATUS(TVK_OK, status);
                    whole = answered;
                } else if (status == TVK_OK) {
                    EXPECT_TRUE(is_within(answered, whole)) << show(response);
                }
            });
            EXPECT_LT(5U, whole.size());
        }
    }
}

}  // namespace
