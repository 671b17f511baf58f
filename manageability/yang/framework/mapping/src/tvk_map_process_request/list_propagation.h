// The propagation of a delete or read of a whole list entry to all that the model has below it.
#ifndef TVK_MAP_PROCESS_REQUEST_LIST_PROPAGATION_H
#define TVK_MAP_PROCESS_REQUEST_LIST_PROPAGATION_H

#include "tvk_map_process_request/list_entry.h"
#include "tvk_map_process_request/list_pass.h"

namespace tvk {

// Propagates below node, the entry or one of its instances, which the request names by its keys and nothing else.
// Meanwhile the keys are out of the way, on top of the instance-tree stack. Returns the status of the last handler.
// Returns TVK_ERR_NO_MEMORY before any handler is called when the keys cannot be put there.
qerrno propagate_keys_alone(const ListEntry &entry, Node &node, KeyDelete key_delete);

// Propagates below a node without children, which has no keys. The results of the handlers do not count.
void propagate_childless(const ListEntry &entry, Node &node);

}  // namespace tvk

#endif
