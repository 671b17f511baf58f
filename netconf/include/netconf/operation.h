// Names the edit operations and insert positions as NETCONF and YANG write them.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

#include "qidl_tvk_datatree.h"

namespace tvk::netconf {

// The index is the value of qidl_tvk_operation.
#define TVK_NAME_(value, name) name,
inline constexpr std::array kOperationNames{TVK_FOR_EACH_OPERATION(TVK_NAME_)};
#undef TVK_NAME_

// The names as an error message lists them: ", merge, replace" and so on, without the first comma.
#define TVK_LISTED_NAME_(value, name) ", " name
inline constexpr const char *kOperationList = &(TVK_FOR_EACH_OPERATION(TVK_LISTED_NAME_))[2];
#undef TVK_LISTED_NAME_

// The index is the value of qidl_tvk_insert_position.
inline constexpr std::array<const char *, 4> kInsertNames{"last", "first", "before", "after"};
inline constexpr char kInsertList[] = "first, last, before, after";

// Returns the index of name among names, or nothing.
template <std::size_t size>
std::optional<uint32_t> index_of_name(const std::array<const char *, size> &names, std::string_view name) {
    for (uint32_t i = 0; i < size; ++i) {
        if (name == names[i]) {
            return i;
        }
    }
    return std::nullopt;
}

}  // namespace tvk::netconf
