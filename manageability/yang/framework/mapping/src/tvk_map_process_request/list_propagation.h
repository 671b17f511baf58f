// Entries that are deleted or read whole: what the model has below them is asked for too.
#ifndef TVK_MAP_PROCESS_REQUEST_LIST_PROPAGATION_H
#define TVK_MAP_PROCESS_REQUEST_LIST_PROPAGATION_H

#include "tvk_map_process_request/list_entry.h"
#include "tvk_map_process_request/list_pass.h"

namespace tvk {

// For node, the entry or one of its instances, that the request names by its keys and nothing else. Its keys are out of
// the way meanwhile, on top of the instance-tree stack. Returns the status of the last handler; TVK_ERR_NO_MEMORY when
// the keys cannot be kept at hand, and no handler was called then.
qerrno propagate_keys_alone(const ListEntry &entry, Node &node, KeyDelete key_delete);

// For node without children, which has nothing to be told apart by. The results of the handlers do not count.
void propagate_childless(const ListEntry &entry, Node &node);

}  // namespace tvk

#endif
