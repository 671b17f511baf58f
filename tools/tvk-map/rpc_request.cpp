#include "rpc_request.h"

#include <cstring>

#include "namespaces.h"
#include "operation.h"

namespace tvk::tool {

namespace {

bool is_envelope(const xmlNode *element, const char *name) {
    const char *ns = namespace_of(element->ns);
    return std::strcmp(as_text(element->name), name) == 0 && (*ns == '\0' || std::strcmp(ns, kNetconfNamespace) == 0);
}

std::string named(const xmlNode *element) {
    return std::string("<") + as_text(element->name) + ">";
}

// The text of element without white space around it.
std::string trimmed_text(xmlNode *element) {
    xmlChar *content = xmlNodeGetContent(element);
    std::string text = content != nullptr ? as_text(content) : "";
    xmlFree(content);
    text.erase(text.find_last_not_of(" \t\r\n") + 1);
    text.erase(0, text.find_first_not_of(" \t\r\n"));
    return text;
}

xmlNode *find_child(const XmlDocument &document, const xmlNode *parent, const char *name) {
    for (xmlNode *child : document.child_elements(parent)) {
        if (is_envelope(child, name)) {
            return child;
        }
    }
    return nullptr;
}

std::optional<uint32_t> default_operation_of(const XmlDocument &document, const xmlNode *edit) {
    xmlNode *element = find_child(document, edit, "default-operation");
    if (element == nullptr) {
        return std::nullopt;
    }
    const std::string text = trimmed_text(element);
    if (text != "merge" && text != "replace" && text != "none") {
        document.fail(element, "default-operation \"" + text + "\" is none of merge, replace, none");
    }
    return index_of_name(kOperationNames, text);
}

// An <edit-config>, or a <copy-config> with the configuration itself as its source.
void read_operation(const XmlDocument &document, const xmlNode *operation, EditPayload &payload) {
    const xmlNode *place = operation;
    if (is_envelope(operation, "copy-config")) {
        const xmlNode *source = find_child(document, operation, "source");
        place = source != nullptr ? source : operation;
    }
    const xmlNode *config = find_child(document, place, "config");
    if (config == nullptr) {
        document.fail(place, named(place) + " holds no <config>");
    }
    payload.tops = document.child_elements(config);
    if (is_envelope(operation, "edit-config")) {
        payload.default_operation = default_operation_of(document, operation);
    }
}

bool is_edit_operation(const xmlNode *element) {
    return is_envelope(element, "edit-config") || is_envelope(element, "copy-config");
}

void read_rpc(const XmlDocument &document, xmlNode *rpc, EditPayload &payload) {
    if (xmlChar *id = xmlGetNoNsProp(rpc, as_xml("message-id"))) {
        payload.message_id = as_text(id);
        xmlFree(id);
    }
    const std::vector<xmlNode *> operations = document.child_elements(rpc);
    if (operations.size() != 1) {
        document.fail(rpc, "<rpc> holds " + std::to_string(operations.size()) + " operations; one was expected");
    }
    const xmlNode *operation = operations.front();
    if (is_envelope(operation, "config")) {
        payload.tops = document.child_elements(operation);
    } else if (is_edit_operation(operation)) {
        read_operation(document, operation, payload);
    } else {
        document.fail(operation, named(operation) + " is no edit: <edit-config> or <copy-config> was expected");
    }
}

}  // namespace

EditPayload find_edit_payload(const XmlDocument &document) {
    EditPayload payload;
    xmlNode *root = document.root();
    if (is_envelope(root, "rpc")) {
        read_rpc(document, root, payload);
    } else if (is_edit_operation(root)) {
        read_operation(document, root, payload);
    } else if (is_envelope(root, "config")) {
        payload.tops = document.child_elements(root);
    } else {
        payload.tops = {root};
    }
    return payload;
}

std::vector<xmlNode *> find_data(const XmlDocument &document) {
    xmlNode *root = document.root();
    if (is_envelope(root, "data") || is_envelope(root, "config")) {
        return document.child_elements(root);
    }
    return {root};
}

}  // namespace tvk::tool
