// The steps of an xpath, and the key groups in them: list[name=value][name=value].
#ifndef TVK_MAP_XPATH_KEY_GROUPS_H
#define TVK_MAP_XPATH_KEY_GROUPS_H

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "tvk_map_xpath.h"

namespace tvk {

// Iterates over the steps of a path, which must outlive it. Empty steps are skipped.
class Steps {
public:
    explicit Steps(const char *path) : path_(path), at_(path) { cut(); }

    bool at_end() const { return length_ == 0; }
    bool is_last() const;
    void advance();

    // Returns the offset of the step in the path.
    std::size_t offset() const { return static_cast<std::size_t>(at_ - path_); }
    // Returns the step without the "/" behind it.
    std::string_view text() const { return {at_, length_}; }
    bool is_keyed() const { return keyed_; }
    // Returns whether a keyed step lacks the "]/" that closes it. The text behind such a step could not be told from a
    // key value.
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

// Returns the part of a keyed step before its keys.
std::string_view list_name(std::string_view keyed_step);

// Splits a keyed step into its keys. Returns false when there are too many or one is too long; keys then holds some of
// them.
bool tvk_map_get_key_value_info(std::string_view keyed_step, KeyGroups &keys);

// Returns whether every keyed step of a path is closed and can be split into its keys.
bool has_usable_steps(const char *path);

}  // namespace tvk

#endif
