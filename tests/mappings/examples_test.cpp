// Tests the example mappings where the sample requests do not: the reasons for which they refuse requests, and the
// outcomes of several operations on one node.
#include <gtest/gtest.h>

#include <algorithm>

#include "mapped_request.h"
#include "status.h"

namespace {

using namespace tvk::test;

constexpr char kInterfacesNs[] = "http://openconfig.net/yang/interfaces";
constexpr char kIpNs[] = "http://openconfig.net/yang/interfaces/ip";
constexpr char kEthernetNs[] = "http://openconfig.net/yang/interfaces/ethernet";
constexpr char kInstancesNs[] = "http://openconfig.net/yang/network-instance";
constexpr char kNativeNs[] = "urn:example:native-interfaces";

template <class... Entries>
Node interfaces(const Entries &...entries) {
    return node("interfaces", kInterfacesNs)(entries...);
}

template <class... Children>
Node eth0(const Children &...children) {
    return node("interface")(leaf("name", "eth0"), children...);
}

template <class... Leaves>
Node config(const Leaves &...leaves) {
    return node("config")(leaves...);
}

Node ethernet(const Node &leaf) {
    return eth0(node("ethernet", kEthernetNs)(config(leaf)));
}

Node subinterface(const std::string &index, const Node &child = config()) {
    return eth0(node("subinterfaces")(node("subinterface")(leaf("index", index), child)));
}

Node address(const std::string &family, const std::string &ip, const std::string &length) {
    return subinterface(
        "1",
        node(family, kIpNs)(node("addresses")(node("address")(leaf("ip", ip), config(leaf("prefix-length", length))))));
}

template <class... Children>
Node protocol(const Children &...children) {
    return node("network-instances", kInstancesNs)(
        node("network-instance")(leaf("name", "default"), node("protocols")(node("protocol")(children...))));
}

Node neighbor(const std::string &address, const Node &child) {
    return protocol(leaf("identifier", "BGP"), leaf("name", "main"),
                    node("bgp")(node("neighbors")(node("neighbor")(leaf("neighbor-address", address), child))));
}

Node configured(const char *name) {
    return node("interface-configuration")(leaf("interface-name", name), leaf("active", "act"));
}

Node native(const Node &first, const Node &second) {
    return root()(node("interface-configurations", kNativeNs)(first, second));
}

class ExampleMappings : public HeapTest {
protected:
    struct Outcome {
        qerrno status;
        std::string text;  // the failed node and the reason; the unmapped nodes
        Tree target;
    };

    static Outcome edit(const Node &request, const Node &before = root(), bool gathers = false) {
        Tree target = before;
        const Tree tree = request;
        const bool is_bgp = std::string(tree->tag) == "network-instances";
        MappingContext mapping;
        std::string unmapped;
        mapping.context.framework_data = &unmapped;
        if (gathers) {
            mapping.context.note_unmapped = [](tvk_map_ctx ctx, const qidl_tvk_datatree *node) {
                *static_cast<std::string *>(ctx->framework_data) += std::string(node->tag) + " ";
            };
        }
        MappedRequest mapped(example(EXAMPLES, is_bgp ? "openconfig_bgp" : "openconfig_interfaces"), mapping.ctx);
        const qerrno status = mapped.handle(tree, target);
        const tvk_map_context &context = mapping.context;
        std::string text = context.failed_node != nullptr
                               ? std::string(context.failed_node->tag) + ": " + context.failure_reason
                               : unmapped;
        return {status, std::move(text), std::move(target)};
    }
};

TEST_F(ExampleMappings, SayWhyTheyRefuse) {
    const std::string long_name(256, 'x');
    const std::string of_vendor = std::string("its namespace is 'urn:vendor', not '") + kInterfacesNs + "'";
    const struct {
        Node request;
        std::string text;
        qerrno status = TVK_ERR_INVALID;
    } rows[] = {
        {interfaces(eth0(config(leaf("mtu", "banana")))), "mtu: 'banana' is no uint16"},
        {interfaces(eth0(config(leaf("mtu", "65536")))), "mtu: '65536' is no uint16"},
        {interfaces(eth0(config(leaf("mtu", "-1")))), "mtu: '-1' is no uint16"},
        {interfaces(eth0(config(leaf("mtu", "")))), "mtu: '' is no uint16"},
        {interfaces(eth0(config(leaf("enabled", "yes")))), "enabled: 'yes' is no boolean"},
        {interfaces(eth0(config(leaf("mtu", "1"), leaf("mtu", "2")))), "mtu: it is given twice"},
        {interfaces(eth0(config(node("mtu")(leaf("a", "1"))))), "mtu: it holds elements, and is a leaf"},
        {interfaces(eth0(config(leaf("type", "fast").data_ns("urn:ietf:params:xml:ns:yang:iana-if-type")))),
         "type: 'fast' is none of ethernetCsmacd, ieee8023adLag, softwareLoopback"},
        {interfaces(eth0(config(leaf("type", "ethernetCsmacd").data_ns("urn:x")))),
         "type: 'ethernetCsmacd' is no identity of 'urn:ietf:params:xml:ns:yang:iana-if-type'"},
        {interfaces(ethernet(leaf("mac-address", "00:00:5e:00:53"))),
         "mac-address: '00:00:5e:00:53' is no MAC address"},
        {interfaces(subinterface("abc")), "index: 'abc' is no uint32"},
        {interfaces(address("ipv4", "999.1.1.1", "24")), "ip: '999.1.1.1' is no IPv4 address"},
        {interfaces(address("ipv4", "192.0.2.1", "33")), "prefix-length: '33' is no prefix length from 0 to 32"},
        {interfaces(address("ipv6", "2001:db8:::1", "64")), "ip: '2001:db8:::1' is no IPv6 address"},
        // Names.
        {interfaces(node("interface")(leaf("name", long_name))),
         "name: '" + long_name.substr(0, 64) + "...' is no interface name of 1 to 255 characters"},
        {interfaces(node("interface")(leaf("name", long_name.substr(3)),
                                      node("subinterfaces")(node("subinterface")(leaf("index", "10"))))),

         "subinterface: with its interface '" + long_name.substr(0, 64) +
             "...' its name is no interface name of 1 to 255 characters"},
        // Namespaces.
        {interfaces(eth0(config(leaf("mtu", "1", "urn:vendor")))), "mtu: " + of_vendor, TVK_ERR_NAMESPACE},
        {interfaces(eth0(node("config", "urn:vendor")(leaf("mtu", "1")))), "config: " + of_vendor, TVK_ERR_NAMESPACE},
        {interfaces(node("interface").ns("urn:vendor")(leaf("name", "eth0"))), "interface: " + of_vendor,
         TVK_ERR_NAMESPACE},
        {interfaces(node("interface")(leaf("name", "eth0", "urn:vendor"))), "name: " + of_vendor, TVK_ERR_NAMESPACE},
        {interfaces(eth0(config(leaf("mtu", "1").no_ns()))),
         std::string("mtu: its namespace is '', not '") + kInterfacesNs + "'", TVK_ERR_NAMESPACE},
        // Keys, and state.
        {interfaces(node("interface")(config(leaf("mtu", "1")))), "interface: its key <name> is missing",
         TVK_ERR_LIST_KEY},
        {interfaces(eth0(leaf("name", "eth0"))), "name: it is given twice"},
        {protocol(leaf("identifier", "BGP"), leaf("identifier", "BGP")), "identifier: it is given twice"},
        {interfaces(eth0(node("state")(leaf("mtu", "1")))), "state: it holds state, which cannot be edited",
         TVK_ERR_UNSUPPORTED},
        // The BGP example.
        {protocol(leaf("identifier", "ISIS"), leaf("name", "main")), "identifier: only BGP is mapped, 'ISIS' is not",
         TVK_ERR_UNSUPPORTED},
        {neighbor("2001:db8::1", config()), "neighbor-address: '2001:db8::1' is no IPv4 address"},
        {neighbor("192.0.2.1", config(leaf("peer-as", "0"))), "peer-as: '0' is no AS number: 0 is reserved"},
        {neighbor("192.0.2.1", config(leaf("link-bandwidth", "1500", "urn:example:bgp-bandwidth"))),
         "link-bandwidth: '1500' is no whole number of kilobits per second up to 4294967000"},
        {neighbor("192.0.2.1", config(leaf("description", std::string(300, 'd')))),
         "description: '" + std::string(64, 'd') + "...' is no text of 1 to 299 bytes"},
    };
    for (const auto &row : rows) {
        const Outcome outcome = edit(row.request);
        EXPECT_STATUS(row.status, outcome.status) << row.text;
        EXPECT_EQ(row.text, outcome.text);
    }
}

TEST_F(ExampleMappings, GatherWhatTheyDoNotMap) {
    const Node request = interfaces(
        eth0(config(leaf("loopback", "1"), leaf("mtu", "1500"), leaf("tpid", "x", "http://openconfig.net/yang/vlan")),
             node("routed-vlan", "http://openconfig.net/yang/vlan")(config(leaf("vlan", "17"))),
             node("ethernet", kEthernetNs)(node("switched-vlan", "http://openconfig.net/yang/vlan")(config()))));
    const Outcome gathered = edit(request, root(), true);
    EXPECT_STATUS(TVK_OK, gathered.status);
    EXPECT_EQ("loopback tpid routed-vlan switched-vlan ", gathered.text);
    EXPECT_NE(std::string::npos, show(gathered.target).find("mtu = 1500"));  // the walk went on
    EXPECT_EQ("loopback: it is not mapped", edit(request).text);
}

// eth0.1 may be subinterface 1 of eth0 or an interface of that name, as the native side says.
TEST_F(ExampleMappings, TellSubinterfacesFromNamesWithDots) {
    const Node real = native(configured("eth0"), configured("eth0.1"));
    const Node part = native(configured("eth0"), configured("eth0.1")(node("interface-virtual")));
    EXPECT_EQ("subinterface: the device has an interface 'eth0.1'", edit(interfaces(subinterface("1")), real).text);
    EXPECT_EQ("interface: 'eth0.1' is a subinterface of the device",
              edit(interfaces(node("interface")(leaf("name", "eth0.1"))), part).text);
    const Node deletion = interfaces(eth0().op(TVK_OPERATION_DELETE));
    const auto deleted = [](const Tree &target) {
        const qidl_tvk_datatree *entries = target->subtrees[0].subtrees;
        return std::count_if(entries, entries + 2, [](const auto &entry) { return entry.operation != 0; });
    };
    EXPECT_EQ(1, deleted(edit(deletion, real).target));
    EXPECT_EQ(2, deleted(edit(deletion, part).target));
    const Node sub_of_sub = native(configured("eth0"), configured("eth0.1.0")(node("interface-virtual")));
    EXPECT_EQ(1, deleted(edit(deletion, sub_of_sub).target));
}

// ---- Several operations on one node ----

constexpr int kPlain = -1;  // none of its own

const qidl_tvk_datatree *below(const qidl_tvk_datatree *tree, const std::string &path) {
    const std::size_t end = path.find('/');
    const auto *child = std::find_if(tree->subtrees, tree->subtrees + tree->subtree_count,
                                     [&](const auto &node) { return path.substr(0, end) == node.tag; });
    if (child == tree->subtrees + tree->subtree_count) {
        return nullptr;
    }
    return end == std::string::npos ? child : below(child, path.substr(end + 1));
}

bool deletes(int operation) {
    return operation == TVK_OPERATION_DELETE || operation == TVK_OPERATION_REMOVE;
}

Node with(const Node &node, int operation) {
    Node marked = node;
    return operation == kPlain ? marked : marked.op(static_cast<std::uint32_t>(operation));
}

// One entry of eth0 for each operation: on the entry, the container hold-time or the leaf description.
Node sequence(char kind, const std::vector<int> &operations) {
    Node top = node("interfaces", kInterfacesNs);
    for (const int operation : operations) {
        const bool is_delete = deletes(operation);
        if (kind == 'e') {
            top(with(is_delete ? eth0() : eth0(config(leaf("description", "new"))), operation));
        } else if (kind == 'c') {
            const Node hold_time = node("hold-time");
            top(eth0(with(is_delete ? hold_time : node("hold-time")(config(leaf("up", "1"))), operation)));
        } else {
            top(eth0(config(with(is_delete ? node("description") : leaf("description", "new"), operation))));
        }
    }
    return top;
}

// A device that holds eth0 is told one operation, and one that may not hold it another.
TEST_F(ExampleMappings, JoinTheOperationsOnANode) {
    constexpr int kM = TVK_OPERATION_MERGE, kR = TVK_OPERATION_REPLACE, kC = TVK_OPERATION_CREATE,
                  kD = TVK_OPERATION_DELETE, kV = TVK_OPERATION_REMOVE;
    const struct {
        std::vector<int> operations;
        int entry, container, leaf;  // in native data that have it
        int entry_on_nothing;
    } rows[] = {
        {{kPlain, kM}, kM, kPlain, kM, kM}, {{kR, kM}, kR, kR, kR, kR},         {{kC, kM}, kC, kC, kC, kC},
        {{kM, kR}, kR, kR, kR, kR},         {{kC, kR}, kC, kR, kC, kC},         {{kD, kPlain}, kR, kR, kR, kR},
        {{kV, kM}, kR, kR, kR, kR},         {{kD, kC}, kR, kR, kR, kR},         {{kD, kR}, kR, kR, kR, kR},
        {{kD, kPlain, kM}, kR, kR, kR, kR}, {{kPlain, kD}, kD, kD, kD, kV},     {{kM, kD}, kV, kD, kV, kV},
        {{kC, kD}, kV, kV, kV, kV},         {{kR, kD}, kV, kV, kV, kV},         {{kD, kV}, kD, kD, kD, kD},
        {{kD, kD}, kD, kD, kD, kD},         {{kD, kPlain, kD}, kV, kV, kV, kV}, {{kR, kM, kV}, kV, kV, kV, kV},
    };
    const Node before = native(configured("eth0")(leaf("description", "old"), node("carrier-delay")(leaf("down", "9"))),
                               configured("eth1"));
    const auto operation_at = [](const Tree &target, const std::string &path) {
        const qidl_tvk_datatree *found = below(target.get(), "interface-configurations/interface-configuration" + path);
        return found != nullptr && (found->presence & TVK_HAS_OPERATION) != 0 ? static_cast<int>(found->operation)
                                                                              : kPlain;
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(::testing::PrintToString(row.operations));
        EXPECT_EQ(row.entry, operation_at(edit(sequence('e', row.operations), before).target, ""));
        EXPECT_EQ(row.container, operation_at(edit(sequence('c', row.operations), before).target, "/carrier-delay"));
        EXPECT_EQ(row.leaf, operation_at(edit(sequence('l', row.operations), before).target, "/description"));
        EXPECT_EQ(row.entry_on_nothing, operation_at(edit(sequence('e', row.operations)).target, ""));
    }
}

// ---- Long lists, and reads ----

Node interface(const std::string &name) {
    return node("interface")(leaf("name", name));
}

// eth0, eth1 and so on, and subinterfaces of each from 1 on.
Node long_list(int interfaces, int subinterfaces) {
    Node list = node("interface-configurations", kNativeNs);
    for (int i = 0; i < interfaces; ++i) {
        const std::string name = "eth" + std::to_string(i);
        list(configured(name.c_str()));
        for (int index = 1; index <= subinterfaces; ++index) {
            list(configured((name + "." + std::to_string(index)).c_str())(node("interface-virtual")));
        }
    }
    return list;
}

// The mapping may remember the places of subinterfaces while their list grows, but not when the list begins anew.
TEST_F(ExampleMappings, DeleteThePartsOfAnInterfaceInALongList) {
    Tree target = root()(long_list(12, 2));  // eth1 is not eth10
    MappingContext mapping;
    MappedRequest mapped(example(EXAMPLES, "openconfig_interfaces"), mapping.ctx);
    const auto edit_more = [&](const Node &request) { EXPECT_STATUS(TVK_OK, mapped.handle(Tree(request), target)); };
    const auto deleted = [&] {
        const qidl_tvk_datatree &list = target->subtrees[0];
        return std::count_if(list.subtrees, list.subtrees + list.subtree_count,
                             [](const auto &entry) { return deletes(static_cast<int>(entry.operation)); });
    };
    edit_more(interfaces(interface("eth1").op(TVK_OPERATION_DELETE)));
    EXPECT_EQ(3, deleted());
    edit_more(interfaces(interface("eth3").op(TVK_OPERATION_DELETE),
                         interface("eth4")(node("subinterfaces")(node("subinterface")(leaf("index", "17")))),
                         interface("eth4").op(TVK_OPERATION_DELETE)));
    EXPECT_EQ(3 + 3 + 4, deleted());
    edit_more(node("interfaces", kInterfacesNs).op(TVK_OPERATION_DELETE));
    for (int i = 40; i > 0; --i) {
        edit_more(interfaces(
            interface("eth" + std::to_string(i))(node("subinterfaces")(node("subinterface")(leaf("index", "1"))))));
    }
    edit_more(interfaces(interface("eth38").op(TVK_OPERATION_DELETE)));
    EXPECT_EQ(2, deleted());
}

// The mapping alone, before the framework selects: of each list what the filter can mean, in two reads of one database.
TEST_F(ExampleMappings, AnswerTheEntriesThatAFilterMeans) {
    Node states = node("interface-states", kNativeNs);
    for (int i = 0; i < 20; ++i) {
        states(node("interface-state")(leaf("interface-name", "eth" + std::to_string(i)),
                                       leaf("if-index", std::to_string(100 + i))));
    }
    const Node wanted_state = node("state")(node("ifindex"));
    const struct {
        const char *name;
        Node filter;
        std::int32_t entries;
        std::string first;
    } rows[] = {
        {"by key", interface("eth13")(wanted_state), 1, "ifindex = 113"},
        {"all parts", interface("eth7")(node("subinterfaces")), 1, "index = 3"},
        {"one part", interface("eth7")(node("subinterfaces")(node("subinterface")(leaf("index", "2")))), 1,
         "index = 2"},
        {"each", node("interface")(wanted_state), 20, "ifindex = 100"},
        {"by content", node("interface")(node("state")(leaf("ifindex", "105"))), 1, "name = eth5"},
        {"no such key", interface("eth20")(wanted_state), 0, ""},
        {"a leaf that no entry has", interface("eth7")(leaf("mtu", "1"), wanted_state), 0, ""},
        {"a leaf that is not mapped", node("interface")(node("state")(leaf("cpu", "1"), node("ifindex"))), 0, ""},
        {"a key of another model", node("interface")(leaf("name", "eth7", "urn:vendor"), wanted_state), 0, ""},
        {"a container of another model", node("interface")(node("state", "urn:vendor")(node("ifindex"))), 0, ""},
    };
    MappingContext mapping(TVK_REQUEST_GET);
    const Database database(mapping, long_list(20, 3), states);
    MappedRequest mapped(example(EXAMPLES, "openconfig_interfaces"), mapping.ctx);
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        const Tree filter = interfaces(row.filter);
        Tree response = root();
        mapping.state->datatree = filter.get();
        mapping.state->build_flags = TVK_BUILD_FILTERED;
        EXPECT_STATUS(TVK_OK, mapped.handle(filter, response));
        EXPECT_EQ(row.entries, response->subtrees[0].subtree_count) << show(response);
        EXPECT_NE(std::string::npos, show(response).find(row.first)) << show(response);
    }
}

TEST_F(ExampleMappings, AnswerNoProtocolButTheirOwn) {
    MappingContext mapping(TVK_REQUEST_GET);
    const Database database(mapping, node("bgp")(node("instances")(node("instance")(leaf("instance-name", "default"),
                                                                                    leaf("process-name", "main")))));
    MappedRequest mapped(example(EXAMPLES, "openconfig_bgp"), mapping.ctx);
    for (const std::string identifier : {"BGP", "OSPF"}) {
        const Tree filter =
            protocol(leaf("identifier", identifier), leaf("name", "main"), node("config")(node("name")));
        Tree response = root();
        mapping.state->datatree = filter.get();
        mapping.state->build_flags = TVK_BUILD_FILTERED;
        EXPECT_STATUS(TVK_OK, mapped.handle(filter, response));
        EXPECT_EQ(identifier == "BGP", show(response).find("main") != std::string::npos) << show(response);
    }
}

}  // namespace
