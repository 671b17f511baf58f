// Splitting an xpath into steps, and keyed steps into their keys.
#include "tvk_map_common/xpath/key_groups.h"

#include <cstring>

namespace tvk {

namespace {

bool is_separator(char c) {
    return c == '[' || c == ']' || c == '=';
}

// Returns the bracket that closes a keyed step, or null. separator is the first "/" of the step: a value may hold "/",
// so the step may go on behind it.
const char *find_close(const char *separator) {
    return std::strstr(separator - 1, "]/");
}

void copy(char *destination, std::string_view text) {
    std::memcpy(destination, text.data(), text.size());
    destination[text.size()] = '\0';
}

}  // namespace

bool Steps::is_last() const {
    const char *rest = at_ + length_;
    return rest[std::strspn(rest, "/")] == '\0';
}

void Steps::advance() {
    at_ += length_;
    cut();
}

void Steps::cut() {
    while (*at_ == '/') {
        ++at_;
    }
    const char *end = strchrnul(at_, '/');
    keyed_ = std::memchr(at_, '[', static_cast<std::size_t>(end - at_)) != nullptr;
    if (keyed_) {
        const char *close = find_close(end);
        open_ = close == nullptr;
        end = open_ ? end + std::strlen(end) : close + 1;
    }
    length_ = static_cast<std::size_t>(end - at_);
}

std::string_view list_name(std::string_view keyed_step) {
    return {keyed_step.data(), keyed_step.find('[')};
}

namespace {

// Iterates over the keys of a keyed step.
class KeyCursor {
public:
    explicit KeyCursor(std::string_view keyed_step)
        : at_(keyed_step.data() + keyed_step.find('[')), end_(keyed_step.data() + keyed_step.size()) {}

    // Moves to the next key; returns false at the end.
    bool advance() {
        const char *name = at_;
        while (name != end_ && is_separator(*name)) {
            ++name;
        }
        if (name == end_) {
            return false;
        }
        const char *name_end = name;
        while (name_end != end_ && !is_separator(*name_end)) {
            ++name_end;
        }
        // A name directly before its closing bracket has no value.
        const bool has_value = name_end != end_ && *name_end != ']';
        const char *value = has_value ? name_end + 1 : name_end;
        at_ = has_value ? value_end(value) : value;
        name_ = {name, static_cast<std::size_t>(name_end - name)};
        value_ = {value, static_cast<std::size_t>(at_ - value)};
        return true;
    }

    std::string_view name() const { return name_; }
    std::string_view value() const { return value_; }
    bool fits() const { return name_.size() < sizeof KeyGroup::name && value_.size() < sizeof KeyGroup::value; }

private:
    const char *value_end(const char *value) const {
        const void *close = std::memchr(value, ']', static_cast<std::size_t>(end_ - value));
        return close != nullptr ? static_cast<const char *>(close) : end_;
    }

    const char *at_;
    const char *end_;
    std::string_view name_;
    std::string_view value_;
};

// Returns the number of keys of a step; more than the limit when a key is too long.
std::size_t count_keys(std::string_view keyed_step) {
    std::size_t count = 0;
    for (KeyCursor key{keyed_step}; key.advance(); ++count) {
        if (!key.fits()) {
            return TVK_MAP_XPATH_MAX_KEYS + 1;
        }
    }
    return count;
}

}  // namespace

bool tvk_map_get_key_value_info(std::string_view keyed_step, KeyGroups &keys) {
    keys.count = 0;
    for (KeyCursor key{keyed_step}; key.advance(); ++keys.count) {
        if (keys.count == TVK_MAP_XPATH_MAX_KEYS || !key.fits()) {
            return false;
        }
        copy(keys.groups[keys.count].name, key.name());
        copy(keys.groups[keys.count].value, key.value());
    }
    return true;
}

// Only keyed steps can be unusable, so the function searches for their brackets and leaves the rest of the path alone.
bool has_usable_steps(const char *path) {
    const char *open = std::strchr(path, '[');
    while (open != nullptr) {
        const char *close = find_close(strchrnul(open, '/'));
        if (close == nullptr || count_keys({open, close + 1}) > TVK_MAP_XPATH_MAX_KEYS) {
            return false;
        }
        open = std::strchr(close, '[');
    }
    return true;
}

}  // namespace tvk
