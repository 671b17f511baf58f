// Parses and writes the place of an entry.
#include "netconf/insert_record.h"

#include <libxml/tree.h>

#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "framework/heap.h"
#include "netconf/operation.h"
#include "netconf/xml_document.h"

namespace tvk::netconf {

namespace {

constexpr uint8_t kPresent = 1;

// Takes the first predicate off text. Returns its name and value, or nothing when text does not begin with a predicate.
std::optional<std::pair<std::string, std::string>> take_predicate(std::string_view &text) {
    const size_t equals = text.find('=');
    if (text.empty() || text.front() != '[' || equals == std::string_view::npos) {
        return std::nullopt;
    }
    const std::string name(without_blanks(text.substr(1, equals - 1)));
    const size_t open = text.find_first_not_of(kBlanks, equals + 1);
    if (xmlValidateQName(as_xml(name.c_str()), 0) != 0 || open == std::string_view::npos ||
        (text[open] != '\'' && text[open] != '"')) {
        return std::nullopt;
    }
    const size_t close = text.find(text[open], open + 1);
    const size_t end = close == std::string_view::npos ? close : text.find_first_not_of(kBlanks, close + 1);
    if (end == std::string_view::npos || text[end] != ']') {
        return std::nullopt;
    }
    std::pair<std::string, std::string> key(name.substr(name.find(':') + 1), text.substr(open + 1, close - open - 1));
    text = without_blanks(text.substr(end + 1));
    return key;
}

}  // namespace

bool read_insert_position(const char *text, qidl_tvk_edit_insert &insert) {
    const std::optional<uint32_t> position = index_of_name(kInsertNames, text);
    if (!position) {
        return false;
    }
    insert.position = *position;
    insert.insert_presence |= TVK_INSERT_HAS_POSITION;
    return true;
}

bool read_insert_keys(const char *text, qidl_tvk_edit_insert &insert) {
    std::vector<std::pair<std::string, std::string>> keys;
    for (std::string_view rest = without_blanks(text); !rest.empty();) {
        std::optional<std::pair<std::string, std::string>> key = take_predicate(rest);
        if (!key) {
            return false;
        }
        keys.push_back(std::move(*key));
    }
    if (keys.empty()) {
        return false;
    }
    insert.keys = framework::zeroed_array<qidl_tvk_name_value>(keys.size());
    for (const auto &[name, value] : keys) {
        qidl_tvk_name_value &key = insert.keys[insert.key_count++];
        key.name = framework::copy_text(name.c_str());
        key.value = framework::copy_text(value.c_str());
    }
    insert.keys_str = framework::copy_text(text);
    insert.keys_presence = kPresent;
    insert.insert_presence |= TVK_INSERT_HAS_KEYS;
    return true;
}

void read_insert_value(const char *text, qidl_tvk_edit_insert &insert) {
    insert.value = framework::copy_text(text);
    insert.value_presence = kPresent;
    insert.insert_presence |= TVK_INSERT_HAS_VALUE;
}

std::string insert_key_text(const qidl_tvk_edit_insert &insert, const char *prefix) {
    if (insert.keys == nullptr || insert.key_count <= 0) {
        return insert.keys_str != nullptr ? insert.keys_str : "";
    }
    std::string text;
    for (int32_t i = 0; i < insert.key_count; ++i) {
        const qidl_tvk_name_value &key = insert.keys[i];
        const std::string value = key.value != nullptr ? key.value : "";
        const char quote = value.find('\'') == std::string::npos ? '\'' : '"';
        text += std::string("[") + prefix + (key.name != nullptr ? key.name : "") + "=" + quote + value + quote + "]";
    }
    return text;
}

}  // namespace tvk::netconf
