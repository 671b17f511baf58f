// Steps of an xpath and the key groups in them: list[name=value][name=value].
#ifndef TVK_MAP_XPATH_KEY_GROUPS_H
#define TVK_MAP_XPATH_KEY_GROUPS_H

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "tvk_map_xpath.h"

namespace tvk {

// Goes through the steps of a path that outlives it. Empty steps vanish.
class Steps {
public:
    explicit Steps(const char *path) : path_(path), at_(path) { cut(); }

    bool at_end() const { return length_ == 0; }
    bool is_last() const;
    void advance();

    // Where the step begins in the path.
    std::size_t offset() const { return static_cast<std::size_t>(at_ - path_); }
    // The step without the "/" behind it.
    std::string_view text() const { return {at_, length_}; }
    bool is_keyed() const { return keyed_; }
    // A keyed step must be closed by "]/": what stands behind it would not be told from a key value otherwise.
    bool is_open() const { return open_; }

private:
    void cut();

    const char *path_;
    const char *at_;
    std::size_t length_ = 0;
    bool keyed_ = false;
    bool open_ = false;
};

struct KeyGroup {
    char name[TVK_MAP_XPATH_MAX_KEY_NAME];
    char value[TVK_MAP_XPATH_MAX_VALUE];
};

struct KeyGroups {
    std::uint8_t count;
    KeyGroup groups[TVK_MAP_XPATH_MAX_KEYS];

    std::span<const KeyGroup> all() const { return {groups, count}; }
};

// The part of a keyed step before its keys.
std::string_view list_name(std::string_view keyed_step);

// Cuts a keyed step into its keys. False when there are too many, or one is too long; keys then holds some of them.
bool tvk_map_get_key_value_info(std::string_view keyed_step, KeyGroups &keys);

// Whether every keyed step of a path is closed and can be cut into its keys.
bool has_usable_steps(const char *path);

}  // namespace tvk

#endif
