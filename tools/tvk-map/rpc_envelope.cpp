#include "rpc_envelope.h"

#include <cstring>
#include <vector>

#include "namespaces.h"

namespace tvk::tool {

bool is_envelope(const xmlNode *element, const char *name) {
    const char *ns = namespace_of(element->ns);
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
    return {operations.front(), attribute_of(rpc, "message-id")};
}

}  // namespace tvk::tool
