// Compares nodes of data.
#include "framework/node_identity.h"

#include <algorithm>
#include <cstring>
#include <utility>
#include <vector>

namespace tvk::framework {

namespace {

constexpr char kEndOfText = '\x1f';  // XML cannot hold it

const Node *find_child(const Node &node, std::string_view tag) {
    const auto children = tvk::children(node);
    const auto child =
        std::find_if(children.begin(), children.end(), [&](const Node &other) { return tag == tag_of(other); });
    return child != children.end() ? &*child : nullptr;
}

}  // namespace

std::string text_of_value(const Node &node, ValueForm form) {
    const std::string text = value_of(node);
    const char *ns = value_namespace_of(node);
    return form == ValueForm::kWritten || *ns == '\0' ? text
                                                      : "{" + std::string(ns) + "}" + text.substr(text.find(':') + 1);
}

bool is_same_value(const Node &a, const Node &b) {
    return std::strcmp(value_of(a), value_of(b)) == 0 ||
           text_of_value(a, ValueForm::kResolved) == text_of_value(b, ValueForm::kResolved);
}

std::string identity_of(const Node &node, const NodeShape &shape, ValueForm form) {
    std::string text;
    if (!shape.is_list) {
        return text;
    }
    if (shape.keys.empty()) {
        text += text_of_value(node, form) + kEndOfText;
    }
    for (const std::string &key : shape.keys) {
        const Node *leaf = find_child(node, key);
        if (leaf != nullptr) {
            text += text_of_value(*leaf, form);
        }
        text += kEndOfText;
    }
    return text;
}

std::string content_of(const Node &node) {
    std::vector<std::pair<std::string, std::string>> children;
    for (const Node &child : tvk::children(node)) {
        children.emplace_back(std::string(namespace_of(child)) + '\x1f' + tag_of(child), content_of(child));
    }
    std::stable_sort(children.begin(), children.end(), [](const auto &a, const auto &b) { return a.first < b.first; });
    std::string text = text_of_value(node, ValueForm::kResolved) + '\x1f';
    for (int32_t i = 0; i < node.attribute_count && node.attributes != nullptr; ++i) {
        text += std::string(node.attributes[i].name) + '=' + node.attributes[i].value + '\x1f';
    }
    for (const auto &[name, content] : children) {
        text += name;
        text += '\x1f';
        text += content;
    }
    return text + '\x1e';
}

}  // namespace tvk::framework
