#include "xml_decode.h"

#include <cstring>
#include <optional>
#include <string>
#include <utility>

#include "heap.h"
#include "insert_record.h"
#include "namespaces.h"
#include "operation.h"

namespace tvk::tool {

namespace {

// Every node has a copy of its own, while in the document it may stand but once.
constexpr size_t kMaxNamespace = 1000;

void set_presence(Node &node, uint16_t bit) {
    node.presence = static_cast<uint16_t>(node.presence | bit);
}

std::string attribute_text(const xmlAttr &attribute) {
    xmlChar *text = xmlNodeListGetString(attribute.doc, attribute.children, 1);
    std::string copy = text != nullptr ? as_text(text) : "";
    xmlFree(text);
    return copy;
}

enum class Role { kOperation, kInsert, kKey, kValue, kOther };

Role role_of(const xmlAttr &attribute) {
    const char *name = as_text(attribute.name);
    const char *ns = namespace_of(attribute.ns);
    if (std::strcmp(ns, kNetconfNamespace) == 0) {
        return std::strcmp(name, "operation") == 0 ? Role::kOperation : Role::kOther;
    }
    if (std::strcmp(ns, kYangNamespace) != 0) {
        return Role::kOther;
    }
    if (std::strcmp(name, "insert") == 0) {
        return Role::kInsert;
    }
    if (std::strcmp(name, "key") == 0) {
        return Role::kKey;
    }
    return std::strcmp(name, "value") == 0 ? Role::kValue : Role::kOther;
}

// The attributes from attribute on that go to a node's attributes.
size_t count_other(const xmlAttr *attribute) {
    size_t count = 0;
    for (; attribute != nullptr; attribute = attribute->next) {
        count += role_of(*attribute) == Role::kOther ? 1 : 0;
    }
    return count;
}

// What stands between the tags of an element, comments and processing instructions aside.
struct Content {
    size_t element_count = 0;
    size_t text_count = 0;
    bool text_is_white = true;
    const char *text = nullptr;  // the last piece
};

class Decoder {
public:
    Decoder(const XmlDocument &document, Values values) : document_(document), values_(values) {}

    void decode(xmlNode *element, Node &node) const {
        node.tag = copy_text(as_text(element->name));
        set_presence(node, TVK_HAS_TAG);
        if (element->ns != nullptr && element->ns->href != nullptr) {
            node.ns = copy_text(checked_namespace(element, as_text(element->ns->href)));
            set_presence(node, TVK_HAS_NS);
        }
        if (element->properties != nullptr) {
            decode_attributes(element, node);
        }
        const Content content = content_of(element);
        if (content.element_count > 0) {
            decode_children(element, content, node);
        } else if (content.text_count > 0) {
            decode_text(element, content, node);
        }
    }

private:
    const char *checked_namespace(const xmlNode *element, const char *ns) const {
        if (std::strlen(ns) > kMaxNamespace) {
            document_.fail(element, std::string("a namespace of <") + as_text(element->name) + "> is longer than " +
                                        std::to_string(kMaxNamespace) + " characters");
        }
        return ns;
    }

    Content content_of(const xmlNode *element) const {
        Content content;
        for (const xmlNode *child = element->children; child != nullptr; child = child->next) {
            if (child->type == XML_ELEMENT_NODE) {
                ++content.element_count;
            } else if (child->type == XML_TEXT_NODE) {
                ++content.text_count;
                content.text = as_text(child->content);
                content.text_is_white = content.text_is_white && is_white(content.text);
            }
        }
        return content;
    }

    static void release(xmlNode *element) {
        if (element != nullptr) {
            xmlUnlinkNode(element);
            xmlFreeNode(element);
        }
    }

    // Recursion ends with libxml2's limit on the depth of a document. Children are released while they are still in
    // the caches: of a large document that saves fetching all of it a second time. Each waits for the next one, and the
    // last for its parent, as behind line 65534 libxml2 asks the nodes beside an element for its line.
    void decode_children(xmlNode *element, const Content &content, Node &node) const {
        if (!content.text_is_white) {
            document_.fail(element,
                           std::string("<") + node.tag + "> mixes text with elements, which no data node does");
        }
        node.subtrees = zeroed_array<Node>(content.element_count);
        set_presence(node, TVK_HAS_SUBTREES);
        xmlNode *decoded = nullptr;
        for (xmlNode *child = element->children; child != nullptr; child = child->next) {
            if (child->type == XML_ELEMENT_NODE) {
                decode(child, node.subtrees[node.subtree_count++]);
                release(std::exchange(decoded, child));
            }
        }
    }

    void decode_text(const xmlNode *element, const Content &content, Node &node) const {
        if (content.text_count == 1 && values_ == Values::kAsWritten) {
            set_value(element, content.text, content.text_is_white, node);
            return;
        }
        std::string text;  // comments stand between the pieces
        for (const xmlNode *child = element->children; child != nullptr; child = child->next) {
            if (child->type == XML_TEXT_NODE) {
                text += as_text(child->content);
            }
        }
        if (values_ == Values::kTrimmed) {
            text = std::string(without_blanks(text));
        }
        set_value(element, text.c_str(), content.text_is_white, node);
    }

    void set_value(const xmlNode *element, const char *text, bool white, Node &node) const {
        if (*text == '\0' || (white && std::strpbrk(text, "\r\n") != nullptr)) {
            return;
        }
        if (const char *colon = std::strchr(text, ':'); colon != nullptr) {
            if (const char *ns = identity_namespace(element, std::string(text, colon), colon + 1)) {
                node.data_ns = copy_text(checked_namespace(element, ns));
                set_presence(node, TVK_HAS_DATA_NS);
                text = colon + 1;
            }
        }
        node.data = copy_text(text);
        set_presence(node, TVK_HAS_DATA);
    }

    // The namespace that prefix stands for at element when prefix:name can name an identity, else null.
    static const char *identity_namespace(const xmlNode *element, const std::string &prefix, const char *name) {
        if (prefix == "xml" || xmlValidateNCName(as_xml(prefix.c_str()), 0) != 0 ||
            xmlValidateNCName(as_xml(name), 0) != 0) {
            return nullptr;
        }
        for (const xmlNode *scope = element; scope != nullptr && scope->type == XML_ELEMENT_NODE;
             scope = scope->parent) {
            for (const xmlNs *ns = scope->nsDef; ns != nullptr; ns = ns->next) {
                if (ns->prefix != nullptr && ns->href != nullptr && prefix == as_text(ns->prefix)) {
                    return as_text(ns->href);
                }
            }
        }
        return nullptr;
    }

    void decode_attributes(const xmlNode *element, Node &node) const {
        for (const xmlAttr *attribute = element->properties; attribute != nullptr; attribute = attribute->next) {
            decode_attribute(element, *attribute, node);
        }
        if (has_insert(node)) {
            set_presence(node, TVK_HAS_EDIT_INSERT);
        }
    }

    void decode_attribute(const xmlNode *element, const xmlAttr &attribute, Node &node) const {
        const std::string text = attribute_text(attribute);
        switch (role_of(attribute)) {
            case Role::kOperation:
                decode_operation(element, text, node);
                break;
            case Role::kInsert:
                if (!read_insert_position(text.c_str(), node.edit_insert)) {
                    refuse(element, "insert position", text, std::string("is none of ") + kInsertList);
                }
                break;
            case Role::kKey:
                if (!read_insert_keys(text.c_str(), node.edit_insert)) {
                    refuse(element, "insert key", text, "is no list of [key='value'] predicates");
                }
                break;
            case Role::kValue:
                read_insert_value(text.c_str(), node.edit_insert);
                break;
            case Role::kOther:
                add_attribute(attribute, text, node);
                break;
        }
    }

    void decode_operation(const xmlNode *element, const std::string &text, Node &node) const {
        const std::optional<uint32_t> operation = index_of_name(kOperationNames, text);
        if (!operation) {
            refuse(element, "operation", text, std::string("is none of ") + kOperationList);
        }
        node.operation = *operation;
        set_presence(node, TVK_HAS_OPERATION);
    }

    void add_attribute(const xmlAttr &attribute, const std::string &text, Node &node) const {
        if (node.attributes == nullptr) {  // not before there is one to own: a release goes by the count
            node.attributes = zeroed_array<qidl_tvk_name_value>(count_other(&attribute));
            set_presence(node, TVK_HAS_ATTRIBUTES);
        }
        const std::string ns = checked_namespace(attribute.parent, namespace_of(attribute.ns));
        const std::string name = as_text(attribute.name);
        qidl_tvk_name_value &entry = node.attributes[node.attribute_count++];
        entry.name = copy_text((ns.empty() ? name : "{" + ns + "}" + name).c_str());
        entry.value = copy_text(text.c_str());
    }

    [[noreturn]] void refuse(const xmlNode *element, const char *what, const std::string &text,
                             const std::string &why) const {
        document_.fail(element, std::string(what) + " \"" + text + "\" of <" + as_text(element->name) + "> " + why);
    }

    const XmlDocument &document_;
    Values values_;
};

}  // namespace

void decode_elements(const XmlDocument &document, const std::vector<xmlNode *> &elements, Values values, Node &root) {
    if (elements.empty()) {
        return;
    }
    root.subtrees = zeroed_array<Node>(elements.size());
    set_presence(root, TVK_HAS_SUBTREES);
    const Decoder decoder(document, values);
    for (xmlNode *element : elements) {
        decoder.decode(element, root.subtrees[root.subtree_count++]);
    }
}

}  // namespace tvk::tool
