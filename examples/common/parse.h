// Walks containers and lists, after the checks of edits and reads.
#ifndef EXAMPLES_COMMON_PARSE_H
#define EXAMPLES_COMMON_PARSE_H

#include "instances.h"

namespace mapping {

// Walks a container. One that is not in namespace ns is refused in an edit, and selects nothing in a read.
qerrno parse_container(tvk_map_ctx ctx, const Node *node, Node *target, tmap_node_cont_info_p info, const char *ns);

// Walks a list. In an edit the keys are checked first, each by its name, since the library only counts them. In a read
// the walk goes through an instance for each native entry that the keys of the request admit; the list handler then
// calls push_instances.
qerrno parse_list(tvk_map_ctx ctx, const Node *node, Node *target, tmap_node_list_info_p info, const ListShape &list);

// Walks a top container. The target is the native root in an edit, and the node of the container in the response in a
// read.
qerrno parse_top(tvk_map_ctx ctx, const Node *node, Node *target, tmap_node_cont_info_p info, const char *ns);

}  // namespace mapping

#endif
