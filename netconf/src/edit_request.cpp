// Reads edit requests.
#include "netconf/edit_request.h"

#include <algorithm>
#include <utility>

#include "netconf/namespaces.h"
#include "netconf/operation.h"
#include "netconf/rpc_envelope.h"

namespace tvk::netconf {

namespace {

// Throws UsageError when edit holds a parameter of that name with none of the values.
void check_parameter(const XmlDocument &document, const xmlNode *edit, const char *name,
                     std::initializer_list<const char *> values) {
    const xmlNode *element = find_envelope(document, edit, name);
    if (element == nullptr) {
        return;
    }
    const std::string text = parameter_text(document, element);
    std::string list;
    for (const char *value : values) {
        if (text == value) {
            return;
        }
        list += (list.empty() ? "" : ", ") + std::string(value);
    }
    document.fail(element, std::string(name) + " \"" + text + "\" is none of " + list);
}

// Returns the default operation of an edit, whose text is checked already, or nothing.
std::optional<uint32_t> default_operation_of(const XmlDocument &document, const xmlNode *edit) {
    const xmlNode *element = find_envelope(document, edit, "default-operation");
    if (element == nullptr) {
        return std::nullopt;
    }
    const std::string text = parameter_text(document, element);
    return text == "none" ? framework::kNoOperation : *index_of_name(kOperationNames, text);
}

std::vector<xmlNode *> open_config(const XmlDocument &document, const xmlNode *config) {
    if (xmlHasNsProp(config, as_xml("operation"), as_xml(kNetconfNamespace)) != nullptr) {
        document.fail(config, "<config> carries an operation, which only the nodes in it can");
    }
    return document.child_elements(config);
}

// Reads an <edit-config>, or a <copy-config> whose source is a configuration in the message.
void read_operation(const XmlDocument &document, const xmlNode *operation, EditPayload &payload) {
    const xmlNode *place = operation;
    if (is_envelope(operation, "copy-config")) {
        const xmlNode *source = find_envelope(document, operation, "source");
        place = source != nullptr ? source : operation;
    }
    if (is_envelope(operation, "edit-config")) {
        check_children(document, operation, {"target", "default-operation", "test-option", "error-option", "config"});
    } else {
        check_children(document, operation, {"target", "source", "config", "with-defaults"});
        if (place != operation) {
            check_children(document, place, {"config"});
        }
    }
    const xmlNode *config = find_envelope(document, place, "config");
    if (config == nullptr) {
        document.fail(place, named(place) + " holds no <config>");
    }
    payload.tops = open_config(document, config);
    payload.request.parameters.is_whole = is_envelope(operation, "copy-config");
    if (is_envelope(operation, "edit-config")) {
        check_parameter(document, operation, "default-operation", {"merge", "replace", "none"});
        check_parameter(document, operation, "test-option", {"test-then-set", "set", "test-only"});
        check_parameter(document, operation, "error-option",
                        {"stop-on-error", "continue-on-error", "rollback-on-error"});
        payload.request.parameters.default_operation = default_operation_of(document, operation);
    }
}

bool is_edit_operation(const xmlNode *element) {
    return is_envelope(element, "edit-config") || is_envelope(element, "copy-config");
}

// Tells whether a root stands around the data and is no data itself.
bool is_message(const xmlNode *root) {
    return is_envelope(root, "rpc") || is_edit_operation(root) || is_envelope(root, "config") || is_reply(root);
}

bool is_edit_data(const xmlNode *element) {
    const xmlNode *parent = parent_element(element);
    return parent != nullptr ? is_envelope(parent, "config") || is_envelope(parent, "data") : !is_message(element);
}

void read_rpc(const XmlDocument &document, xmlNode *element, EditPayload &payload) {
    const Rpc rpc = open_rpc(document, element);
    payload.request.attributes = rpc.attributes;
    if (is_envelope(rpc.operation, "config")) {
        payload.tops = open_config(document, rpc.operation);
    } else if (is_edit_operation(rpc.operation)) {
        read_operation(document, rpc.operation, payload);
    } else {
        document.fail(rpc.operation, named(rpc.operation) + " is no edit: <edit-config> or <copy-config> was expected");
    }
}

}  // namespace

const Layout kEditLayout{is_edit_data, Values::kAsWritten};

EditPayload find_edit_payload(const XmlDocument &document) {
    EditPayload payload;
    xmlNode *root = document.root();
    if (!is_message(root)) {
        payload.tops = {root};
    } else if (is_envelope(root, "rpc")) {
        read_rpc(document, root, payload);
    } else if (is_edit_operation(root)) {
        read_operation(document, root, payload);
    } else if (is_reply(root)) {
        payload.tops = open_reply(document, root);
        payload.request.parameters.is_reply = true;
    } else {
        payload.tops = open_config(document, root);
    }
    return payload;
}

EditRequest read_edit(XmlDocument document, framework::TreeHolder &request) {
    EditPayload payload = find_edit_payload(document);
    payload.request.parameters.has_inserts = std::any_of(payload.tops.begin(), payload.tops.end(),
                                                         [](const xmlNode *top) { return data_of(top).has_inserts; });
    move_data(payload.tops, request.root());
    return std::move(payload.request);
}

}  // namespace tvk::netconf
