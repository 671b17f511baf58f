// The stack that a phase works off, from its root element until it is empty or told to stop.
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

    // Hands out elements, the last one pushed first, until process(element) gives 1 or none is left. Gives what
    // process gave last, and 0 when there was nothing to process.
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
