// The texts of whole requests, and the nodes that their replies must have.
#include "requests.h"

#include <map>
#include <tuple>

#include "inputs.h"

namespace tvk::bench {

namespace {

constexpr char kNetconfNs[] = "urn:ietf:params:xml:ns:netconf:base:1.0";
constexpr char kPolicyTypesNs[] = "http://openconfig.net/yang/policy-types";

std::string element(const std::string &name, const std::string &content, const std::string &attributes = "") {
    return "<" + name + attributes + ">" + content + "</" + name + ">";
}

std::string key_of(Model model, std::size_t i) {
    return model == Model::kInterfaces
               ? names(i + 1)[i]
               : "10." + std::to_string(i >> 16) + "." + std::to_string(i >> 8 & 255) + "." + std::to_string(i & 255);
}

struct Shape {
    const char *name;
    const char *entry;
    const char *key;
    const char *leaf;         // in config
    const char *other_value;  // of the leaf, in one entry of ten
    const char *list_xpath;
    std::size_t nodes_around;          // around the entries
    std::size_t nodes_around_if_keys;  // the same without the leaves that are no keys
    std::size_t nodes_per_entry;
    std::size_t nodes_per_config;  // with its leaves
};

constexpr Shape kInterfaces{
    "interfaces", "interface", "name", "mtu", "9000", "/bench-interfaces:interfaces/interface", 1, 1, 14, 6};
constexpr Shape kBgp{
    "bgp",     "neighbor", "neighbor-address",
    "peer-as", "64512",    "/bench-bgp:network-instances/network-instance/protocols/protocol/bgp/neighbors/neighbor",
    14,        9,          10,
    5};

const Shape &shape_of(Model model) {
    return model == Model::kInterfaces ? kInterfaces : kBgp;
}

// The nodes below the key of an entry.
std::string content_of(Model model, std::size_t i) {
    const bool is_other = i % 10 == 0;
    const std::string key = key_of(model, i);
    const std::string number = std::to_string(i);
    if (model == Model::kInterfaces) {
        const std::string config = element("name", key) + element("type", "ethernetCsmacd") +
                                   element("mtu", is_other ? kInterfaces.other_value : "1500") +
                                   element("description", "uplink port " + number) + element("enabled", "false");
        const std::string subinterface =
            element("index", "0") + element("config", element("index", "0") + element("enabled", "false"));
        return element("config", config) + element("subinterfaces", element("subinterface", subinterface));
    }
    const std::string config = element("neighbor-address", key) +
                               element("peer-as", is_other ? kBgp.other_value : "65001") +
                               element("description", "uplink peer " + number) + element("enabled", "true");
    return element("config", config) + element("transport", element("config", element("local-address", "192.0.2.254")));
}

// The nodes of the top container around the entries: names alone, names with keys, or, in an edit, with the
// configuration of the outer lists as well.
enum class Around { kNames, kKeys, kConfig };

std::string top(Model model, Around around, const std::string &entries, const std::string &attributes = "") {
    const std::string operations = std::string(" xmlns:nc=\"") + kNetconfNs + "\"";
    if (model == Model::kInterfaces) {
        return element("interfaces", entries, std::string(" xmlns=\"") + kNs + "\"" + operations + attributes);
    }
    const std::string name = around == Around::kNames ? "" : element("name", "default");
    const std::string key =
        around == Around::kNames ? "" : element("identifier", "oc-pol-types:BGP") + element("name", "main");
    const std::string instance = name + (around == Around::kConfig ? element("config", name) : "");
    const std::string protocol = key + (around == Around::kConfig ? element("config", key) : "") +
                                 element("bgp", element("neighbors", entries, attributes));
    return element("network-instances",
                   element("network-instance", instance + element("protocols", element("protocol", protocol))),
                   std::string(" xmlns=\"http://openconfig.net/yang/network-instance\" xmlns:oc-pol-types=\"") +
                       kPolicyTypesNs + "\"" + operations);
}

std::string operation(bool is_meant, const char *name) {
    return is_meant ? std::string(" nc:operation=\"") + name + "\"" : "";
}

std::string made_edit(Model model, Edit edit, std::size_t count) {
    const Shape &shape = shape_of(model);
    const std::string attributes =
        operation(edit == Edit::kReplaceEntries, "replace") + operation(edit == Edit::kDelete, "delete");
    std::string entries;
    for (std::size_t i = 0; i < count; ++i) {
        entries += element(shape.entry,
                           element(shape.key, key_of(model, i)) + (edit == Edit::kDelete ? "" : content_of(model, i)),
                           attributes);
    }
    return top(model, Around::kConfig, entries, operation(edit == Edit::kReplaceContainer, "replace"));
}

std::string filter(Model model, Get get, std::size_t entries) {
    const Shape &shape = shape_of(model);
    if (get == Get::kEntry) {
        return top(model, Around::kKeys,
                   element(shape.entry, element(shape.key, key_of(model, selected_entry(entries)))));
    }
    return top(
        model, Around::kNames,
        element(shape.entry, element("config", element(shape.leaf, get == Get::kContent ? shape.other_value : ""))));
}

}  // namespace

std::string work_of(Edit edit, Model model) {
    constexpr const char *kNames[] = {"edit_merge_", "edit_replace_", "edit_replace_container_", "edit_delete_"};
    return std::string(kNames[static_cast<std::size_t>(edit)]) + shape_of(model).name;
}

std::string work_of(Get get, Model model) {
    constexpr const char *kNames[] = {"get_all_", "get_leaf_", "get_entry_", "get_content_"};
    return std::string(kNames[static_cast<std::size_t>(get)]) + shape_of(model).name;
}

std::string work_of_get_in_memory(Model model) {
    return std::string("get_in_memory_") + shape_of(model).name;
}

const std::string &edit_request(Model model, Edit edit, std::size_t entries) {
    static std::map<std::tuple<Model, Edit, std::size_t>, std::string> requests;
    std::string &request = requests[{model, edit, entries}];
    if (request.empty()) {
        request = made_edit(model, edit, entries);
    }
    return request;
}

std::string get_request(Model model, Get get, std::size_t entries) {
    const std::string asked =
        get == Get::kAll ? "" : element("filter", filter(model, get, entries), " type=\"subtree\"");
    return element("rpc", element("get-config", element("source", "<running/>") + asked),
                   std::string(" message-id=\"1\" xmlns=\"") + kNetconfNs + "\"");
}

std::string get_xpath(Model model, Get get, std::size_t entries) {
    const Shape &shape = shape_of(model);
    switch (get) {
        case Get::kAll:
            return std::string(shape.list_xpath).substr(0, std::string(shape.list_xpath).find('/', 1));
        case Get::kLeaf:
            return std::string(shape.list_xpath) + "/config/" + shape.leaf;
        case Get::kEntry:
            return std::string(shape.list_xpath) + "[" + shape.key + "='" + key_of(model, selected_entry(entries)) +
                   "']";
        default:
            return std::string(shape.list_xpath) + "/config[" + shape.leaf + "='" + shape.other_value + "']";
    }
}

std::size_t nodes_selected(Model model, Get get, std::size_t entries) {
    const Shape &shape = shape_of(model);
    switch (get) {
        case Get::kAll:
            return shape.nodes_around + shape.nodes_per_entry * entries;
        case Get::kLeaf:
            return shape.nodes_around_if_keys + 4 * entries;  // entry, key, config, leaf
        case Get::kEntry:
            return shape.nodes_around_if_keys + shape.nodes_per_entry;
        default:
            return shape.nodes_around_if_keys + (2 + shape.nodes_per_config) * ((entries + 9) / 10);
    }
}

}  // namespace tvk::bench
