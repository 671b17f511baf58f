// Reads the elements around data.
#include "netconf/rpc_envelope.h"

#include <algorithm>
#include <cstring>
#include <set>

#include "netconf/namespaces.h"

namespace tvk::netconf {

namespace {

RpcAttributes attributes_of(const xmlNode *rpc) {
    RpcAttributes attributes;
    for (const xmlAttr *attribute = rpc->properties; attribute != nullptr; attribute = attribute->next) {
        xmlChar *value = xmlNodeListGetString(rpc->doc, attribute->children, 1);
        attributes.push_back({as_text(attribute->name), uri_of(attribute->ns), value != nullptr ? as_text(value) : ""});
        xmlFree(value);
    }
    return attributes;
}

}  // namespace

bool is_envelope(const xmlNode *element, const char *name) {
    const char *ns = uri_of(element->ns);
    return std::strcmp(as_text(element->name), name) == 0 && (*ns == '\0' || std::strcmp(ns, kNetconfNamespace) == 0);
}

xmlNode *find_envelope(const XmlDocument &document, const xmlNode *parent, const char *name) {
    for (xmlNode *child : document.child_elements(parent)) {
        if (is_envelope(child, name)) {
            return child;
        }
    }
    return nullptr;
}

void check_children(const XmlDocument &document, const xmlNode *parent, std::initializer_list<const char *> names) {
    std::set<std::string> met;
    for (xmlNode *child : document.child_elements(parent)) {
        const char *name = as_text(child->name);
        const bool is_parameter = std::strcmp(uri_of(child->ns), kWithDefaultsNamespace) == 0;
        const bool is_known = std::any_of(names.begin(), names.end(), [&](const char *known) {
            return is_envelope(child, known) || (is_parameter && std::strcmp(name, known) == 0);
        });
        if (!is_known) {
            document.fail(child, named(parent) + " holds " + named(child) + ", which is unknown there");
        }
        if (!met.insert(name).second) {
            document.fail(child, named(parent) + " holds a second " + named(child));
        }
    }
}

bool is_reply(const xmlNode *root) {
    return is_envelope(root, "rpc-reply") || is_envelope(root, "data");
}

std::vector<xmlNode *> open_reply(const XmlDocument &document, xmlNode *root) {
    if (is_envelope(root, "data")) {
        return document.child_elements(root);
    }
    const xmlNode *data = find_envelope(document, root, "data");
    if (data == nullptr) {
        const bool is_error = find_envelope(document, root, "rpc-error") != nullptr;
        document.fail(root,
                      is_error ? "<rpc-reply> tells an error; <data> was expected" : "<rpc-reply> holds no <data>");
    }
    return document.child_elements(data);
}

std::string named(const xmlNode *element) {
    return std::string("<") + as_text(element->name) + ">";
}

std::string parameter_text(const XmlDocument &document, const xmlNode *parameter) {
    if (xmlFirstElementChild(const_cast<xmlNode *>(parameter)) != nullptr) {
        document.fail(parameter, named(parameter) + " holds elements where only text may stand");
    }
    xmlChar *content = xmlNodeGetContent(parameter);
    const std::string text = content != nullptr ? as_text(content) : "";
    xmlFree(content);
    return std::string(without_blanks(text));
}

Rpc open_rpc(const XmlDocument &document, xmlNode *rpc) {
    const std::vector<xmlNode *> operations = document.child_elements(rpc);
    if (operations.size() != 1) {
        document.fail(rpc, "<rpc> holds " + std::to_string(operations.size()) + " operations; one was expected");
    }
    return {operations.front(), attributes_of(rpc)};
}

}  // namespace tvk::netconf
