// The values that a read is answered with. What the filter did not ask for is left out while the response is built, or
// pruned from it afterwards.
#ifndef EXAMPLES_COMMON_ANSWER_H
#define EXAMPLES_COMMON_ANSWER_H

#include "list_shape.h"

namespace mapping {

// Each mapping has its own way of building the response: adds the entry of list that is being answered, with its keys,
// and those around it, where the response has them not. The output list holds an entry for each level that is open,
// outermost first. Place is where a leaf of the entry is added, by its path below the top container.
struct Place {
    Node *node;
    int flags;
};
qerrno open_entry(tvk_map_ctx ctx, Node *target, const ListShape &list, Place &place);

// A leaf of the response, at path below the top container.
struct Answer {
    const ListShape *list;  // null: it stands in none
    const char *path;
    const char *in_ns;  // namespace of what it stands in
    const char *ns;
    const char *value;
    const char *value_ns;  // null: no identity
    bool is_default;       // to be told as one
};
qerrno answer_value(tvk_map_ctx ctx, Node *target, const Answer &answer);

}  // namespace mapping

#endif
