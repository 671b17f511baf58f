/*
 * Status codes shared by the platform layer and everything above it.
 *
 * A status is an unsigned 32-bit number and zero is success. The codes are not used with one meaning
 * throughout: the comment of each operation says which it returns and why.
 */
#ifndef TVK_STATUS_H
#define TVK_STATUS_H

#include <stdint.h>

typedef uint32_t qerrno;

#define TVK_OK 0u

/* A node, key or path is not in the tree, or a tree or context cannot be used. */
#define TVK_ERR_NOT_FOUND 0xaaf29e00u
/* An argument is null or invalid, or a child is missing. */
#define TVK_ERR_INVALID 0xaaf2a000u
/* An allocation or a copy failed, or a fixed table is full. */
#define TVK_ERR_NO_MEMORY 0xaaf2a400u
/* A namespace, or a leafref, is not the one that the model asks for. */
#define TVK_ERR_NAMESPACE 0xaaf2ee00u
/* The keys of a list entry are incomplete or empty. */
#define TVK_ERR_LIST_KEY 0xaaf2f000u
/* A key leaf carries a delete or remove operation. */
#define TVK_ERR_KEY_OPERATION 0xaaf2f200u
/* A container or list handler answers it to leave the node out. It is never the result of a request. */
#define TVK_SKIP_NODE 0xaaf2f600u
/* The platform does not support the node. */
#define TVK_ERR_UNSUPPORTED 0xaaf2f800u
/* An xpath leads to no node. */
#define TVK_ERR_NOT_PRESENT 0xaaf2fa00u
/* A node is to be added where there is one. */
#define TVK_ERR_PRESENT 0xaaf2fc00u

#endif
