#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <span>
#include <sstream>
#include <stdexcept>
#include <string>

#include "tree.h"

namespace tvk::test {

std::string text_of(const char *text) {
    return text != nullptr ? text : "(null)";
}

namespace {

using Record = qidl_tvk_datatree;

template <std::size_t Count>
std::string label(const char *const (&names)[Count], std::uint32_t value) {
    return value < Count ? names[value] : std::to_string(value);
}

constexpr const char *kOperations[] = {"merge", "replace", "create", "delete", "remove"};
constexpr const char *kPositions[] = {"last", "first", "before", "after"};
constexpr const char *kKinds[] = {"none", "dn", "kn", "ka", "da", "traverse"};

std::span<Record> children_of(const Record &record) {
    const auto count = static_cast<std::size_t>(std::max(record.subtree_count, 0));
    return record.subtrees != nullptr ? std::span(record.subtrees, count) : std::span<Record>();
}

std::string show_pairs(const qidl_tvk_name_value *pairs, std::int32_t count, const char *before, const char *after) {
    std::string text;
    for (std::int32_t i = 0; pairs != nullptr && i < count; ++i) {
        text += before + text_of(pairs[i].name) + "=" + text_of(pairs[i].value) + after;
    }
    return text;
}

std::string show_insert(const qidl_tvk_edit_insert &insert) {
    return " insert=" + label(kPositions, insert.position) + show_pairs(insert.keys, insert.key_count, "[", "]") +
           (insert.keys_str != nullptr ? " keys=" + text_of(insert.keys_str) : "") +
           (insert.value != nullptr ? " value=" + text_of(insert.value) : "");
}

std::string show_line(const Record &r, const char *parent_ns) {
    std::string line;
    std::string marks;
    const auto field = [&](bool has_bit, const char *name, bool is_set, const std::string &shown) {
        line += is_set ? shown : "";
        if (has_bit != is_set) {
            marks += (is_set ? " unmarked:" : " empty:") + std::string(name);
        }
    };
    const auto owned = [&](unsigned bit, const char *name, const void *block, const std::string &shown) {
        field((r.presence & bit) != 0, name, block != nullptr, shown);
    };
    // Zero is a value too when the bit says so.
    const auto number = [&](bool has_bit, const char *name, std::uint32_t value, const std::string &shown) {
        field(has_bit, name, has_bit || value != 0, shown);
    };
    const auto &insert = r.edit_insert;
    const auto insert_bits = insert.insert_presence | insert.keys_presence | insert.value_presence;
    owned(TVK_HAS_TAG, "tag", r.tag, text_of(r.tag));
    line += text_of(r.ns) != text_of(parent_ns) ? " (" + text_of(r.ns) + ")" : "";
    owned(TVK_HAS_NS, "ns", r.ns, "");
    owned(TVK_HAS_DATA, "data", r.data, " = " + text_of(r.data));
    number(r.presence & TVK_HAS_OPERATION, "operation", r.operation, " <" + label(kOperations, r.operation) + ">");
    number(r.presence & TVK_HAS_IS_KEY, "key", r.is_key, r.is_key != 0 ? " [key]" : " [no key]");
    number(r.presence & TVK_HAS_SUBTREE_INDEX, "index", r.subtree_index != 0, " #" + std::to_string(r.subtree_index));
    number(r.presence & TVK_HAS_NODE_KIND, "kind", r.node_kind, " {" + label(kKinds, r.node_kind) + "}");
    number(r.presence & TVK_HAS_EDIT_INSERT, "insert", insert_bits != 0, show_insert(insert));
    number(r.schema_info.flags & TVK_SCHEMA_INFO_HAS_NODE_TYPE, "type", r.schema_info.node_type,
           " type=" + std::to_string(r.schema_info.node_type));
    owned(TVK_HAS_DATA_NS, "data-ns", r.data_ns, " data-ns=" + text_of(r.data_ns));
    owned(TVK_HAS_ATTRIBUTES, "attributes", r.attribute_count > 0 ? r.attributes : nullptr,
          show_pairs(r.attributes, r.attribute_count, " @", ""));
    owned(TVK_HAS_SUBTREES, "subtrees", children_of(r).empty() ? nullptr : r.subtrees, "");
    return (r.tag == nullptr ? "(no tag)" : "") + line + marks + "\n";
}

void show_below(const Record &record, const char *parent_ns, std::size_t level, std::string &text) {
    text += std::string(level * 2, ' ') + show_line(record, parent_ns);
    for (const Record &child : children_of(record)) {
        show_below(child, record.ns, level + 1, text);
    }
}

Record *find_child(const Record &parent, const std::string &step) {
    const std::size_t bracket = std::min(step.find('['), step.size());
    long number = bracket < step.size() ? std::strtol(&step[bracket + 1], nullptr, 10) : 1;
    for (Record &child : children_of(parent)) {
        if (child.tag != nullptr && step.substr(0, bracket) == child.tag && --number == 0) {
            return &child;
        }
    }
    return nullptr;
}

}  // namespace

std::string show(const qidl_tvk_datatree &tree) {
    std::string text;
    show_below(tree, nullptr, 0, text);
    return text;
}

qidl_tvk_datatree *find(qidl_tvk_datatree &tree, const std::string &path) {
    qidl_tvk_datatree *found = &tree;
    std::istringstream steps(path);
    for (std::string step; std::getline(steps, step, '/');) {
        found = find_child(*found, step);
        if (found == nullptr) {
            throw std::out_of_range("no node at \"" + path + "\" in\n" + show(tree));
        }
    }
    return found;
}

std::string sketch(const qidl_tvk_datatree &record) {
    std::string text = text_of(record.tag);
    text += record.ns == nullptr || std::strcmp(record.ns, kSketchedNs) != 0 ? ":" + text_of(record.ns) : "";
    text += record.data != nullptr ? std::string("=") + record.data : "";
    text += record.data_ns != nullptr ? std::string("@") + record.data_ns : "";
    text += record.subtree_index != 0 ? "#" + std::to_string(record.subtree_index) : "";
    text += (record.presence & TVK_HAS_EDIT_INSERT) != 0 ? "+" + std::to_string(record.edit_insert.key_count) : "";
    std::string children;
    for (const Record &child : children_of(record)) {
        children += (children.empty() ? "" : ",") + sketch(child);
    }
    return text + (children.empty() ? "" : "(" + children + ")");
}

std::string place_of(const Record &tree, const Record *node) {
    for (std::int32_t i = 0; i < tree.subtree_count; ++i) {
        const Record &child = tree.subtrees[i];
        const std::string step = (child.tag != nullptr ? child.tag : "") + ("[" + std::to_string(i) + "]");
        if (&child == node) {
            return step;
        }
        if (const std::string below = place_of(child, node); below != "?") {
            return step + "/" + below;
        }
    }
    return "?";
}

}  // namespace tvk::test
