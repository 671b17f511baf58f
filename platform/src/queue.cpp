// The queue of elements that carry their own link.
#include <cstring>

#include "kel_queue.h"

namespace {

// The link is the first field of an element, whatever type the element gives it.
void *next_of(const void *element) {
    void *next = nullptr;
    std::memcpy(&next, element, sizeof next);
    return next;
}

void set_next(void *element, void *next) {
    std::memcpy(element, &next, sizeof next);
}

}  // namespace

uint32_t kel_queue_init(struct kel_queue *queue, uint32_t capacity) {
    if (queue == nullptr) {
        return 0;
    }
    *queue = {nullptr, nullptr, 0, capacity};
    return 1;
}

int kel_queue_empty(const struct kel_queue *queue) {
    return queue == nullptr || queue->head == nullptr ? 1 : 0;
}

void *kel_queue_dequeue(struct kel_queue *queue) {
    if (kel_queue_empty(queue) != 0) {
        return nullptr;
    }
    void *element = queue->head;
    queue->head = next_of(element);
    if (queue->head == nullptr) {
        queue->tail = nullptr;
    }
    --queue->count;
    set_next(element, nullptr);
    return element;
}

void kel_queue_requeue(struct kel_queue *queue, void *element) {
    if (queue == nullptr || element == nullptr) {
        return;
    }
    set_next(element, queue->head);
    queue->head = element;
    if (queue->tail == nullptr) {
        queue->tail = element;
    }
    ++queue->count;
}
