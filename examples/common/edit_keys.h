// Checks the keys of list entries in an edit.
#ifndef EXAMPLES_COMMON_EDIT_KEYS_H
#define EXAMPLES_COMMON_EDIT_KEYS_H

#include "list_shape.h"

namespace mapping {

// Checks that entry has each of its keys once, of the model, with a value of its type, and marks them. Refuses the
// entry else.
qerrno check_keys(tvk_map_ctx ctx, const Node *entry, tmap_node_list_info_p info, const ListShape &list);

}  // namespace mapping

#endif
