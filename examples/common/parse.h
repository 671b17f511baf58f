// Walking containers and lists, with what edits and reads check before.
#ifndef EXAMPLES_COMMON_PARSE_H
#define EXAMPLES_COMMON_PARSE_H

#include "instances.h"

namespace mapping {

// A container parse for a container of that namespace: in an edit one of another is refused, in a read it selects
// nothing.
qerrno parse_container(tvk_map_ctx ctx, const Node *node, Node *target, tmap_node_cont_info_p info, const char *ns);

// A list parse. In an edit the keys are checked first, each by its name, since the library counts them alone. In a read
// each native entry that the request's keys admit is an instance; push_instances is what the list handler does then.
qerrno parse_list(tvk_map_ctx ctx, const Node *node, Node *target, tmap_node_list_info_p info, const ListShape &list);

// Walks a top container. In an edit its target is the native root, in a read its own node in the response.
qerrno parse_top(tvk_map_ctx ctx, const Node *node, Node *target, tmap_node_cont_info_p info, const char *ns);

}  // namespace mapping

#endif
