// Builds records from tags, texts and attributes.
#include "netconf/xml_decode.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <utility>

#include "framework/diagnostics.h"
#include "framework/heap.h"
#include "netconf/insert_record.h"
#include "netconf/namespaces.h"
#include "netconf/operation.h"
#include "netconf/xml_text.h"

namespace tvk::netconf {

namespace {

// Each node has a copy of its namespace, which the document may hold but once.
constexpr size_t kMaxNamespace = 1000;

struct Attribute {
    const char *name;
    const char *ns;  // "" for none
    std::string_view text;
};

Attribute attribute_of(const StartTag &tag, size_t index) {
    constexpr size_t kFields = 5;
    const xmlChar *const *fields = tag.attributes + index * kFields;
    const char *text = as_text(fields[3]);
    return {as_text(fields[0]), fields[2] != nullptr ? as_text(fields[2]) : "",
            std::string_view(text, static_cast<size_t>(as_text(fields[4]) - text))};
}

// The use of an attribute.
enum class Role { kOperation, kInsert, kKey, kValue, kOther };

Role role_of(const Attribute &attribute) {
    if (std::strcmp(attribute.ns, kNetconfNamespace) == 0) {
        return std::strcmp(attribute.name, "operation") == 0 ? Role::kOperation : Role::kOther;
    }
    if (std::strcmp(attribute.ns, kYangNamespace) != 0) {
        return Role::kOther;
    }
    if (std::strcmp(attribute.name, "insert") == 0) {
        return Role::kInsert;
    }
    if (std::strcmp(attribute.name, "key") == 0) {
        return Role::kKey;
    }
    return std::strcmp(attribute.name, "value") == 0 ? Role::kValue : Role::kOther;
}

}  // namespace

DataDecoder::~DataDecoder() {
    for (Element &element : open_) {
        framework::release(element.node);
    }
    for (Node &node : ended_) {
        framework::release(node);
    }
}

void DataDecoder::start(const StartTag &tag) {
    refuse_text_beside_elements();
    text_.clear();
    open_.push_back({Node{}, ended_.size(), declarations_.size(), tag.line});
    Node &node = open_.back().node;
    node.tag = framework::copy_text(as_text(tag.name));
    set_present(node, TVK_HAS_TAG);
    declare(tag);
    if (tag.ns != nullptr) {
        if (std::strcmp(as_text(tag.ns), kXmlNamespace) == 0) {
            fail(std::string("<xml:") + node.tag + "> is in the namespace of XML itself, which no data node is");
        }
        node.ns = framework::copy_text(checked_namespace(as_text(tag.ns)));
        set_present(node, TVK_HAS_NS);
    }
    if (tag.attribute_count > 0) {
        decode_attributes(tag);
    }
}

void DataDecoder::end() {
    const Element &element = open_.back();
    if (ended_.size() > element.child) {
        refuse_text_beside_elements();
        take_children();
    } else if (!text_.empty()) {
        set_value();
    }
    text_.clear();
    declarations_.resize(element.declaration);
    ended_.push_back(element.node);
    open_.pop_back();
}

Node DataDecoder::take() {
    return std::exchange(ended_.front(), Node{});
}

void DataDecoder::declare(const StartTag &tag) {
    for (size_t i = 0; i < tag.declaration_count; ++i) {
        const xmlChar *prefix = tag.declarations[2 * i];
        if (prefix != nullptr) {
            declarations_.push_back({as_text(prefix), as_text(tag.declarations[2 * i + 1])});
        }
    }
}

void DataDecoder::decode_attributes(const StartTag &tag) {
    Node &node = open_.back().node;
    for (size_t i = 0; i < tag.attribute_count; ++i) {
        const Attribute attribute = attribute_of(tag, i);
        const std::string text(attribute.text);
        const Role role = role_of(attribute);
        if (edits_ == Edits::kRefused && role != Role::kOther) {
            fail(std::string("<") + node.tag + "> carries \"" + attribute.name +
                 "\": this is an edit, not data; carry it out first (tvk-map apply)");
        }
        switch (role) {
            case Role::kOperation:
                decode_operation(text);
                break;
            case Role::kInsert:
                if (!read_insert_position(text.c_str(), node.edit_insert)) {
                    refuse("insert position", text, std::string("is none of ") + kInsertList);
                }
                break;
            case Role::kKey:
                if (!read_insert_keys(text.c_str(), node.edit_insert)) {
                    refuse("insert key", text, "is no list of [key='value'] predicates");
                }
                break;
            case Role::kValue:
                read_insert_value(text.c_str(), node.edit_insert);
                break;
            case Role::kOther:
                add_attribute(attribute.name, attribute.ns, text, tag.attribute_count - i);
                break;
        }
    }
    if (carries_insert(node)) {
        set_present(node, TVK_HAS_EDIT_INSERT);
        met_insert_ = true;
        check_insert();
    }
}

void DataDecoder::check_insert() const {
    const qidl_tvk_edit_insert &insert = open_.back().node.edit_insert;
    const bool names_other = (insert.keys_presence | insert.value_presence) != 0;
    const bool has_position = (insert.insert_presence & TVK_INSERT_HAS_POSITION) != 0;
    const bool wants_other =
        has_position && (insert.position == TVK_INSERT_BEFORE || insert.position == TVK_INSERT_AFTER);
    if (names_other != wants_other) {
        fail(std::string("<") + open_.back().node.tag + "> " +
             (wants_other ? "is to be inserted before or after what no \"key\" or \"value\" names"
                          : "names another entry, but is not to be inserted before or after it"));
    }
}

void DataDecoder::decode_operation(const std::string &text) {
    const std::optional<uint32_t> operation = index_of_name(kOperationNames, text);
    if (!operation) {
        refuse("operation", text, std::string("is none of ") + kOperationList);
    }
    Node &node = open_.back().node;
    set_operation(node, *operation);
}

void DataDecoder::add_attribute(const char *name, const char *ns, const std::string &text, size_t room) {
    const std::string qualified = *checked_namespace(ns) != '\0' ? "{" + std::string(ns) + "}" + name : name;
    Node &node = open_.back().node;
    if (node.attributes == nullptr) {  // made with the first one, since a release goes by the count
        node.attributes = framework::zeroed_array<qidl_tvk_name_value>(room);
        set_present(node, TVK_HAS_ATTRIBUTES);
    }
    qidl_tvk_name_value &entry = node.attributes[node.attribute_count++];
    entry.name = framework::copy_text(qualified.c_str());
    entry.value = framework::copy_text(text.c_str());
}

void DataDecoder::take_children() {
    const size_t first = open_.back().child;
    Node &node = open_.back().node;
    const size_t count = ended_.size() - first;
    node.subtrees = framework::zeroed_array<Node>(count);
    node.subtree_count = static_cast<int32_t>(count);
    set_present(node, TVK_HAS_SUBTREES);
    std::copy_n(&ended_[first], count, node.subtrees);
    ended_.resize(first);
}

void DataDecoder::set_value() {
    if (values_ == Values::kTrimmed) {
        text_ = std::string(without_blanks(text_));
    }
    const char *text = text_.c_str();
    if (*text == '\0' || (is_white(text) && std::strpbrk(text, "\r\n") != nullptr)) {
        return;
    }
    Node &node = open_.back().node;
    if (const char *colon = std::strchr(text, ':'); colon != nullptr) {
        if (const char *ns = identity_namespace(std::string(text, colon), colon + 1)) {
            node.data_ns = framework::copy_text(checked_namespace(ns));
            set_present(node, TVK_HAS_DATA_NS);
        }
    }
    node.data = framework::copy_text(text);
    set_present(node, TVK_HAS_DATA);
}

void DataDecoder::refuse_text_beside_elements() const {
    if (!is_white(text_.c_str())) {
        fail(std::string("<") + open_.back().node.tag + "> mixes text with elements, which no data node does");
    }
}

// Returns the namespace that prefix stands for in the open element when prefix:name can name an identity, else null.
const char *DataDecoder::identity_namespace(const std::string &prefix, const char *name) const {
    if (prefix == "xml" || xmlValidateNCName(as_xml(prefix.c_str()), 0) != 0 ||
        xmlValidateNCName(as_xml(name), 0) != 0) {
        return nullptr;
    }
    const auto declaration = std::find_if(declarations_.rbegin(), declarations_.rend(),
                                          [&](const Declaration &entry) { return prefix == entry.prefix; });
    if (declaration != declarations_.rend()) {
        return declaration->ns;
    }
    for (const xmlNode *scope = place_; scope != nullptr && scope->type == XML_ELEMENT_NODE; scope = scope->parent) {
        for (const xmlNs *ns = scope->nsDef; ns != nullptr; ns = ns->next) {
            if (ns->prefix != nullptr && ns->href != nullptr && prefix == as_text(ns->prefix)) {
                return as_text(ns->href);
            }
        }
    }
    return nullptr;
}

const char *DataDecoder::checked_namespace(const char *ns) const {
    if (std::strlen(ns) > kMaxNamespace) {
        fail(std::string("a namespace of <") + open_.back().node.tag + "> is longer than " +
             std::to_string(kMaxNamespace) + " characters");
    }
    return ns;
}

void DataDecoder::refuse(const char *what, const std::string &text, const std::string &why) const {
    fail(std::string(what) + " \"" + text + "\" of <" + open_.back().node.tag + "> " + why);
}

void DataDecoder::fail(const std::string &reason) const {
    throw framework::UsageError(file_, open_.back().line, reason);
}

}  // namespace tvk::netconf
