// The edit operations and insert positions as NETCONF and YANG write them.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

namespace tvk::netconf {

// The index is the value of qidl_tvk_operation.
inline constexpr std::array<const char *, 5> kOperationNames{"merge", "replace", "create", "delete", "remove"};
inline constexpr char kOperationList[] = "merge, replace, create, delete, remove";

// The index is the value of qidl_tvk_insert_position.
inline constexpr std::array<const char *, 4> kInsertNames{"last", "first", "before", "after"};
inline constexpr char kInsertList[] = "first, last, before, after";

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
