// The stack that a phase works off, from its root element until the stack is empty or the phase ends the walk.
#ifndef TVK_MAP_FILTER_WORK_STACK_H
#define TVK_MAP_FILTER_WORK_STACK_H

#include "tvk_map_common/internal/owned.h"
#include "tvk_map_filter.h"

namespace tvk {

class WorkStack {
public:
    WorkStack() { tvk_map_dfs_stack_init(&queue_); }
    ~WorkStack() { tvk_map_dfs_stack_free(&queue_); }
    WorkStack(const WorkStack &) = delete;
    WorkStack &operator=(const WorkStack &) = delete;

    kel_queue *get() { return &queue_; }

    // Calls process with each element, the last one pushed first, until process returns 1 or none is left. Returns the
    // last result of process, or 0 when there was no element.
    template <typename Process>
    std::uint32_t work_off(Process process) {
        std::uint32_t result = 0;
        while (result != 1 && kel_queue_empty(&queue_) == 0) {
            const NamedBlock<tvk_map_dfs_elem> element{static_cast<tvk_map_dfs_elem *>(kel_queue_dequeue(&queue_))};
            if (element != nullptr) {
                result = process(*element);
            }
        }
        return result;
    }

private:
    kel_queue queue_{};
};

}  // namespace tvk

#endif
