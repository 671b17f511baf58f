// Writes the nodes of a tree, with their namespaces and attributes.
#include "netconf/xml_encode.h"

#include <cstring>
#include <set>
#include <vector>

#include "framework/diagnostics.h"
#include "netconf/insert_record.h"
#include "netconf/namespaces.h"
#include "netconf/operation.h"
#include "netconf/xml_document.h"

namespace tvk::netconf {

namespace {

bool is_name(const char *text) {
    return xmlValidateNCName(as_xml(text), 0) == 0;
}

// Tells whether a namespace is one of XML itself. Neither elements nor prefixes of values can be in it.
bool is_reserved(const char *ns) {
    return std::strcmp(ns, kXmlNamespace) == 0 || std::strcmp(ns, "http://www.w3.org/2000/xmlns/") == 0;
}

void write_operation(XmlOutput &output, const Node &node) {
    if (node.operation >= kOperationNames.size()) {
        throw EncodeError(framework::quoted(node.tag) + " carries an unknown operation, " +
                          std::to_string(node.operation));
    }
    output.attribute("nc:operation", kOperationNames[node.operation]);
}

void write_insert(XmlOutput &output, const Node &node) {
    const qidl_tvk_edit_insert &insert = node.edit_insert;
    if ((insert.insert_presence & TVK_INSERT_HAS_POSITION) != 0) {
        if (insert.position >= kInsertNames.size()) {
            throw EncodeError(framework::quoted(node.tag) + " carries an unknown insert position, " +
                              std::to_string(insert.position));
        }
        output.attribute("yang:insert", kInsertNames[insert.position]);
    }
    if (insert.keys_presence != 0) {
        const bool qualified = *namespace_of(node) != '\0';  // keys are in the namespace of their list
        if (qualified) {
            output.attribute("xmlns:key", namespace_of(node));
        }
        output.attribute("yang:key", insert_key_text(insert, qualified ? "key:" : "").c_str());
    }
    if (insert.value_presence != 0 && insert.value != nullptr) {
        output.attribute("yang:value", insert.value);
    }
}

void write_attribute(XmlOutput &output, const Node &node, const std::string &name, const char *value, int number) {
    const size_t close = name.find('}');
    const bool qualified = !name.empty() && name.front() == '{' && close != std::string::npos && close > 1;
    const std::string local = qualified ? name.substr(close + 1) : name;
    if (!is_name(local.c_str())) {
        throw EncodeError(framework::quoted(name) + " of " + framework::quoted(node.tag) +
                          " is no name for an attribute");
    }
    if (!qualified) {
        output.attribute(local.c_str(), value);
        return;
    }
    const std::string ns = name.substr(1, close - 1);
    if (ns == kXmlNamespace) {
        output.attribute(("xml:" + local).c_str(), value);
    } else {
        output.attribute(("a" + std::to_string(number)).c_str(), local.c_str(), ns.c_str(), value);
    }
}

void write_attributes(XmlOutput &output, const Node &node) {
    if (!has(node, TVK_HAS_ATTRIBUTES) || node.attributes == nullptr) {
        return;
    }
    std::set<std::string> written;
    for (int i = 0; i < node.attribute_count; ++i) {
        const qidl_tvk_name_value &attribute = node.attributes[i];
        const std::string name = attribute.name != nullptr ? attribute.name : "";
        if (!written.insert(name).second || name == "xmlns") {
            throw EncodeError(framework::quoted(node.tag) + " carries the attribute " + framework::quoted(name) +
                              ", which cannot be written twice or at all");
        }
        write_attribute(output, node, name, attribute.value != nullptr ? attribute.value : "", i + 1);
    }
}

// Tells whether the element may use a prefix already, or cannot declare it. The value is then written without a
// declaration.
bool is_own_prefix(const std::string &prefix) {
    const bool is_numbered =
        prefix.size() > 1 && prefix.front() == 'a' && prefix.find_first_not_of("0123456789", 1) == std::string::npos;
    return prefix == "nc" || prefix == "yang" || prefix == "key" || prefix.starts_with("xml") || is_numbered;
}

void write_value(XmlOutput &output, const Node &node) {
    const char *value = value_of(node);
    const char *ns = value_namespace_of(node);
    if (*value == '\0') {
        return;
    }
    if (!children(node).empty()) {
        throw EncodeError(framework::quoted(node.tag) + " has a value and children as well");
    }
    if (*ns == '\0') {
        output.text(value);
        return;
    }
    if (const char *colon = std::strchr(value, ':')) {  // the text still has the prefix that it was read with
        const std::string prefix(value, colon);
        if (is_name(prefix.c_str()) && !is_own_prefix(prefix)) {
            output.attribute(("xmlns:" + prefix).c_str(), ns);
        }
        output.text(value);
        return;
    }
    output.attribute("xmlns:id", ns);
    output.text(std::string("id:") + value);
}

// The marks that some node of a tree carries.
struct TreeMarks {
    bool operations = false;
    bool inserts = false;
};

void start_node(XmlOutput &output, const Node &node, const char *outer_ns, TreeMarks &marks) {
    const char *tag = tag_of(node);
    if (!is_name(tag)) {
        throw EncodeError(framework::quoted(tag) + " is no name for an element");
    }
    if (is_reserved(namespace_of(node)) || is_reserved(value_namespace_of(node))) {
        throw EncodeError(framework::quoted(tag) + " is in the namespace of XML itself");
    }
    output.start(tag);
    if (std::strcmp(namespace_of(node), outer_ns) != 0) {
        output.attribute("xmlns", namespace_of(node));
    }
    if (has_operation(node)) {
        write_operation(output, node);
        marks.operations = true;
    }
    if (carries_insert(node)) {
        write_insert(output, node);
        marks.inserts = true;
    }
    write_attributes(output, node);
    write_value(output, node);
}

constexpr size_t kMaxLevels = 250;  // the message around the data has a few more

// A node whose children are being visited.
struct Level {
    const Node *node;
    const char *ns;
    size_t next;
};

TreeMarks write_children(XmlOutput &output, const Node &root, const char *outer_ns) {
    TreeMarks marks;
    std::vector<Level> open{{&root, outer_ns, 0}};
    while (!open.empty()) {
        Level &level = open.back();
        const auto children = tvk::children(*level.node);
        if (level.next < children.size()) {
            const Node &child = children[level.next++];
            if (open.size() > kMaxLevels) {
                throw EncodeError("the data has more than " + std::to_string(kMaxLevels) +
                                  " levels, which no reader of XML takes");
            }
            start_node(output, child, level.ns, marks);
            open.push_back({&child, namespace_of(child), 0});
            continue;
        }
        open.pop_back();
        if (!open.empty()) {
            output.end();
        }
    }
    return marks;
}

}  // namespace

void write_data(XmlOutput &output, const Node &root) {
    // The nodes show which prefixes are needed. A look at all of them before would be a second pass over a tree that
    // may be larger than the caches.
    const size_t place = output.end_of_attributes();
    const TreeMarks marks = write_children(output, root, kNetconfNamespace);
    if (marks.inserts) {
        output.insert_attribute(place, "xmlns:yang", kYangNamespace);
    }
    if (marks.operations) {
        output.insert_attribute(place, "xmlns:nc", kNetconfNamespace);
    }
}

std::string encode_config(const Node &root) {
    XmlOutput output;
    output.start("config");
    output.attribute("xmlns", kNetconfNamespace);
    write_data(output, root);
    return output.finish();
}

}  // namespace tvk::netconf
