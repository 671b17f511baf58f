// Answers lists in a read: the walk goes through an instance of the list for each native entry.
#ifndef EXAMPLES_COMMON_INSTANCES_H
#define EXAMPLES_COMMON_INSTANCES_H

#include "list_shape.h"

namespace mapping {

// Walks list once for each native entry that the keys of node, a list node of the request, admit.
qerrno answer_list(tvk_map_ctx ctx, const Node *node, Node *target, tmap_node_list_info_p info, const ListShape &list);

// Pushes the instances of the list that is being walked. The list handler calls it in a read.
qerrno push_instances(tvk_map_ctx ctx, const ListShape &list);

}  // namespace mapping

#endif
