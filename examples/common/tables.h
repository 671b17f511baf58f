// Makes the library's tables of handlers, with counts that come from the arrays.
#ifndef EXAMPLES_COMMON_TABLES_H
#define EXAMPLES_COMMON_TABLES_H

#include "leaf_rules.h"

namespace mapping {

// Returns the table of a container.
template <std::size_t kCount>
constexpr struct tmap_node_cont_info container_table(tmap_cont_handler_fp enter,
                                                     const struct tmap_child_entry (&children)[kCount]) {
    static_assert(kCount <= UINT16_MAX);
    return {.cont_handler = enter,
            .child_handler = handle_unmapped,
            .child_conts = children,
            .child_cont_count = kCount,
            .generator_data = nullptr,
            .unsupported_ns = nullptr};
}

// Returns the table of a list.
template <std::size_t kCount, std::size_t kKeyCount>
constexpr struct tmap_node_list_info list_table(tmap_node_process_fp handle,
                                                const struct tmap_child_entry (&children)[kCount],
                                                const struct tmap_key_entry (&keys)[kKeyCount]) {
    static_assert(kCount <= UINT16_MAX && kKeyCount <= UINT8_MAX);
    return {.list_handler = handle,
            .child_handler = handle_unmapped,
            .child_conts = children,
            .keys = keys,
            .child_cont_count = kCount,
            .key_count = kKeyCount,
            .list_path = keys[0].leafref_path,
            .unsupported_ns = nullptr};
}

}  // namespace mapping

#endif
