/*
 * A queue of elements that carry their own link.
 *
 * An element is any record whose first pointer-sized field belongs to the queue while the element is in it.
 * The queue holds elements, it does not own them.
 */
#ifndef KEL_QUEUE_H
#define KEL_QUEUE_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

struct kel_queue {
    void *head;
    void *tail;
    uint32_t count;
    uint32_t capacity;
};

/*
 * Makes queue empty. The capacity is a hint and not a limit.
 *
 * Returns
 * - 1: the queue is empty.
 * - 0: queue is null.
 */
uint32_t kel_queue_init(struct kel_queue *queue, uint32_t capacity);

/*
 * Asks whether the queue is empty.
 *
 * Returns
 * - 1: it holds no element, or is null.
 * - 0: it holds one or more.
 */
int kel_queue_empty(const struct kel_queue *queue);

/* Takes the element at the head and returns it; null when there is none, or queue is null. */
void *kel_queue_dequeue(struct kel_queue *queue);

/* Puts element back at the head, so that it is the next to be taken. Null arguments do nothing. */
void kel_queue_requeue(struct kel_queue *queue, void *element);

#ifdef __cplusplus
}
#endif

#endif
