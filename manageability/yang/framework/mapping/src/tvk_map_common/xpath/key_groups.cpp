#include "tvk_map_common/xpath/key_groups.h"

#include <algorithm>
#include <cstring>

namespace {

bool is_separator(char c) {
    return c == '[' || c == ']' || c == '=';
}

template <std::size_t kSize>
bool copy_range(char (&destination)[kSize], const char *begin, const char *end) {
    const auto length = static_cast<std::size_t>(end - begin);
    if (length >= kSize) {
        return false;
    }
    std::memcpy(destination, begin, length);
    destination[length] = '\0';
    return true;
}

}  // namespace

bool tvk::Steps::is_last() const {
    const char *rest = at_ + length_;
    return rest[std::strspn(rest, "/")] == '\0';
}

void tvk::Steps::advance() {
    at_ += length_;
    cut();
}

void tvk::Steps::cut() {
    at_ += std::strspn(at_, "/");
    length_ = std::strcspn(at_, "/");
    keyed_ = std::memchr(at_, '[', length_) != nullptr;
    if (keyed_) {
        const char *close = std::strstr(at_, "]/");
        open_ = close == nullptr;
        length_ = open_ ? std::strlen(at_) : static_cast<std::size_t>(close + 1 - at_);
    }
}

std::string_view tvk::list_name(std::string_view keyed_step) {
    return {keyed_step.data(), keyed_step.find('[')};
}

bool tvk::tvk_map_get_key_value_info(std::string_view keyed_step, KeyGroups &keys) {
    keys.count = 0;
    const char *const end = keyed_step.data() + keyed_step.size();
    const char *name = keyed_step.data() + keyed_step.find('[');
    while ((name = std::find_if_not(name, end, is_separator)) != end) {
        if (keys.count == TVK_MAP_XPATH_MAX_KEYS) {
            return false;
        }
        KeyGroup &key = keys.groups[keys.count];
        const char *name_end = std::find_if(name, end, is_separator);
        // A name that its bracket closes has no value.
        const bool has_value = name_end != end && *name_end != ']';
        const char *value = has_value ? name_end + 1 : name_end;
        const char *value_end = has_value ? std::find(value, end, ']') : value;
        if (!copy_range(key.name, name, name_end) || !copy_range(key.value, value, value_end)) {
            return false;
        }
        ++keys.count;
        name = value_end;
    }
    return true;
}

bool tvk::has_usable_steps(const char *path) {
    for (Steps steps{path}; !steps.at_end(); steps.advance()) {
        KeyGroups keys{};
        if (steps.is_keyed() && (steps.is_open() || !tvk_map_get_key_value_info(steps.text(), keys))) {
            return false;
        }
    }
    return true;
}
