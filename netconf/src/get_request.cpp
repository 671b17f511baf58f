// Reads read requests.
#include "netconf/get_request.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <utility>

#include "netconf/namespaces.h"
#include "netconf/rpc_envelope.h"
#include "netconf/with_defaults.h"

namespace tvk::netconf {

namespace {

std::vector<xmlNode *> open_filter(const XmlDocument &document, const xmlNode *filter) {
    const std::string type = attribute_of(filter, "type").value_or("subtree");
    if (type != "subtree") {
        document.fail(filter, "filter type \"" + type + "\" is not supported; a subtree filter was expected");
    }
    return document.child_elements(filter);
}

bool is_with_defaults(const xmlNode *element) {
    return std::strcmp(as_text(element->name), "with-defaults") == 0;
}

uint8_t with_defaults_of(const XmlDocument &document, const xmlNode *operation) {
    const xmlNode *first = nullptr;
    uint8_t found = TVK_WITH_DEFAULTS_NONE;
    for (const xmlNode *child : document.child_elements(operation)) {
        if (!is_with_defaults(child)) {
            continue;
        }
        if (std::exchange(first, child) != nullptr) {
            document.fail(child, named(operation) + " holds a second <with-defaults>");
        }
        if (std::strcmp(uri_of(child->ns), kWithDefaultsNamespace) != 0) {
            document.fail(child, std::string("<with-defaults> is not in its namespace, ") + kWithDefaultsNamespace);
        }
        const std::string name = parameter_text(document, child);
        const std::optional<uint8_t> mode = with_defaults_mode(name);
        if (!mode) {
            document.fail(child, unknown_with_defaults(name));
        }
        found = *mode;
    }
    return found;
}

bool is_get_operation(const xmlNode *element) {
    return is_envelope(element, "get") || is_envelope(element, "get-config");
}

void read_operation(const XmlDocument &document, const xmlNode *operation, GetPayload &payload) {
    if (!is_get_operation(operation)) {
        document.fail(operation, named(operation) + " is no read: <get> or <get-config> was expected");
    }
    payload.request.parameters.type = is_envelope(operation, "get-config") ? TVK_REQUEST_GET_CONFIG : TVK_REQUEST_GET;
    payload.request.parameters.with_defaults = with_defaults_of(document, operation);
    check_children(document, operation, {"source", "filter", "with-defaults"});
    if (const xmlNode *filter = find_envelope(document, operation, "filter")) {
        payload.filter = open_filter(document, filter);
    }
}

// Tells whether a root is part of a message, also of one that is no read, and no data.
bool is_message(const xmlNode *root) {
    constexpr const char *kNames[] = {"rpc",         "get",    "get-config", "filter",   "edit-config",
                                      "copy-config", "config", "data",       "rpc-reply"};
    return std::strcmp(uri_of(root->ns), kNetconfNamespace) == 0 ||
           std::any_of(std::begin(kNames), std::end(kNames), [&](const char *name) { return is_envelope(root, name); });
}

bool is_filter_data(const xmlNode *element) {
    const xmlNode *parent = parent_element(element);
    return parent != nullptr ? is_envelope(parent, "filter") : !is_message(element);
}

}  // namespace

const Layout kGetLayout{is_filter_data, Values::kTrimmed};

GetPayload find_get_payload(const XmlDocument &document) {
    GetPayload payload;
    xmlNode *root = document.root();
    if (!is_message(root)) {
        payload.filter = {root};
    } else if (is_envelope(root, "rpc")) {
        const Rpc rpc = open_rpc(document, root);
        payload.request.attributes = rpc.attributes;
        read_operation(document, rpc.operation, payload);
    } else if (is_envelope(root, "filter")) {
        payload.filter = open_filter(document, root);
    } else {
        read_operation(document, root, payload);
    }
    return payload;
}

GetRequest read_get(XmlDocument document, const framework::Mappings &mappings, framework::TreeHolder &asked) {
    GetPayload payload = find_get_payload(document);
    if (payload.filter) {
        move_data(*payload.filter, asked.root());
    } else {
        framework::select_everything(mappings, asked);
    }
    return std::move(payload.request);
}

}  // namespace tvk::netconf
