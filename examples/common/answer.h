// Adds values to the response of a read. Values that the filter did not ask for are left out while the response is
// built, or pruned from it afterwards.
#ifndef EXAMPLES_COMMON_ANSWER_H
#define EXAMPLES_COMMON_ANSWER_H

#include "list_shape.h"

namespace mapping {

// The node and flags to add a leaf with, by its path below the top container.
struct Place {
    Node *node;
    int flags;
};

// Adds to the response the entry of list that is being answered, with its keys, and the entries around it, when they
// are missing. Sets place for the leaves of the entry. The output list holds an entry for each level that is open,
// outermost first. Each mapping defines it in its own way.
qerrno open_entry(tvk_map_ctx ctx, Node *target, const ListShape &list, Place &place);

// A leaf of the response.
struct Answer {
    const ListShape *list;  // the list around it, or null
    const char *path;       // below the top container
    const char *in_ns;      // the namespace of the node around it
    const char *ns;
    const char *value;
    const char *value_ns;  // the module of an identity, else null
    bool is_default;       // it is marked as a default
};

// Adds a leaf to the response, unless the filter leaves it out. A failure is noted.
qerrno answer_value(tvk_map_ctx ctx, Node *target, const Answer &answer);

}  // namespace mapping

#endif
