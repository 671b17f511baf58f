// A question that is asked of filter nodes both before the walk and after it.
#pragma once

#include "tvk_datatree.hpp"

namespace tvk::framework {

// Tells whether a filter node selects by its value.
inline bool is_content_match(const Node &node) {
    return children(node).empty() && *value_of(node) != '\0';
}

}  // namespace tvk::framework
