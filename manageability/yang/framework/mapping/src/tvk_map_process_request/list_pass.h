// One pass over a list entry: it calls the list handler, then walks the children of the entry, or of the instances that
// the handler pushed.
#ifndef TVK_MAP_PROCESS_REQUEST_LIST_PASS_H
#define TVK_MAP_PROCESS_REQUEST_LIST_PASS_H

#include "tvk_map_process_request/list_entry.h"

namespace tvk {

// The cases in which a delete reaches an entry by its keys.
enum class KeyDelete {
    kNone,
    kNamed,       // the request names the entry by its keys alone
    kPropagated,  // a delete above the entry is propagated to it
};

// Makes the pass and returns the first failure of a handler, or TVK_OK. Adds to seen the kinds of children that the
// walk sees. Adds 1 to items when the list handler has pushed an item with nodes, which the caller pops.
qerrno make_pass(const ListEntry &entry, SeenChildren &seen, int &items);

}  // namespace tvk

#endif
