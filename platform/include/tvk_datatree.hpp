/*
 * Accessors of data tree records for C++17: presence bits, texts, children, operations and key marks.
 *
 * All functions are inline and need no library. None of them allocates or throws. They read a field only when its
 * presence bit is set, except for carries_insert.
 */
#ifndef TVK_DATATREE_HPP
#define TVK_DATATREE_HPP

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "qidl_tvk_datatree.h"

#if __cplusplus >= 202002L
#include <span>
#endif

namespace tvk {

/* A data tree record. */
using Node = struct qidl_tvk_datatree;

/* Tells whether any of the presence bits in bit is set. */
inline bool has(const Node &node, std::uint16_t bit) {
    return (node.presence & bit) != 0;
}

/* Sets presence bits. */
inline void set_present(Node &node, std::uint16_t bit) {
    node.presence = static_cast<std::uint16_t>(node.presence | bit);
}

/* Clears presence bits. The fields stay as they are. */
inline void set_absent(Node &node, std::uint16_t bit) {
    node.presence = static_cast<std::uint16_t>(node.presence & ~bit);
}

/*
 * A range of neighbouring records, which it does not own. A range is valid until the array is grown, shrunk or
 * released. In C++20 it converts to std::span.
 */
template <typename Record>
class NodeRange {
public:
    /* An empty range. */
    constexpr NodeRange() = default;

    /* The range of count records from first on. It is empty when first is null or count is below 1. */
    constexpr NodeRange(Record *first, std::int32_t count)
        : first_(first), size_(first != nullptr && count > 0 ? static_cast<std::size_t>(count) : 0) {}

    /* The same records, to be read only. */
    constexpr operator NodeRange<const Record>() const {
        return NodeRange<const Record>(first_, static_cast<std::int32_t>(size_));
    }

    /* The first record; for an empty range a pointer that may be null. */
    constexpr Record *begin() const { return first_; }

    /* The end of the last record. */
    constexpr Record *end() const { return first_ + size_; }

    /* The same as begin. */
    constexpr Record *data() const { return first_; }

    /* The number of records. */
    constexpr std::size_t size() const { return size_; }

    /* Tells whether there is no record. */
    constexpr bool empty() const { return size_ == 0; }

    /* The record at position, which is below size. */
    constexpr Record &operator[](std::size_t position) const { return first_[position]; }

    /* The first record of a range that is not empty. */
    constexpr Record &front() const { return *first_; }

    /* The last record of a range that is not empty. */
    constexpr Record &back() const { return first_[size_ - 1]; }

private:
    Record *first_ = nullptr;
    std::size_t size_ = 0;
};

/* The children of a node. There are none when the bit is clear, the array is missing or the count is below 1. */
inline NodeRange<Node> children(Node &node) {
    return {node.subtrees, has(node, TVK_HAS_SUBTREES) ? node.subtree_count : 0};
}

/* The same, to be read only. */
inline NodeRange<const Node> children(const Node &node) {
    return {node.subtrees, has(node, TVK_HAS_SUBTREES) ? node.subtree_count : 0};
}

/* Returns text, a field of node, or otherwise while its presence bit is clear or the field is null. */
inline const char *text_of(const Node &node, const char *text, std::uint16_t bit, const char *otherwise = "") {
    return has(node, bit) && text != nullptr ? text : otherwise;
}

/* The name of a node, "" when it has none. */
inline const char *tag_of(const Node &node) {
    return text_of(node, node.tag, TVK_HAS_TAG);
}

/* The namespace of a node, "" when it has none. */
inline const char *namespace_of(const Node &node) {
    return text_of(node, node.ns, TVK_HAS_NS);
}

/* The value of a node, "" when it has none. */
inline const char *value_of(const Node &node) {
    return text_of(node, node.data, TVK_HAS_DATA);
}

/* The namespace that qualifies the value of a node, "" when nothing does. */
inline const char *value_namespace_of(const Node &node) {
    return text_of(node, node.data_ns, TVK_HAS_DATA_NS);
}

/* Tells whether two texts are there and equal. A null text equals no text. */
inline bool same_text(const char *a, const char *b) {
    return a != nullptr && b != nullptr && std::strcmp(a, b) == 0;
}

/* Tells whether two nodes have the same tag and the same namespace. An absent one equals "". */
inline bool same_name(const Node &a, const Node &b) {
    return std::strcmp(tag_of(a), tag_of(b)) == 0 && std::strcmp(namespace_of(a), namespace_of(b)) == 0;
}

/* Tells whether a node carries an operation. */
inline bool has_operation(const Node &node) {
    return has(node, TVK_HAS_OPERATION);
}

/* Tells whether a node carries that operation, a value of enum qidl_tvk_operation. */
inline bool has_operation(const Node &node, std::uint32_t operation) {
    return has_operation(node) && node.operation == operation;
}

/* The name of an operation in NETCONF, null for a value that is none. */
inline const char *operation_name(std::uint32_t operation) {
#define TVK_OPERATION_CASE_(value, name) \
    case value:                          \
        return name;
    switch (operation) {
        TVK_FOR_EACH_OPERATION(TVK_OPERATION_CASE_)
        default:
            return nullptr;
    }
#undef TVK_OPERATION_CASE_
}

/* Gives a node an operation, a value of enum qidl_tvk_operation. */
inline void set_operation(Node &node, std::uint32_t operation) {
    node.operation = operation;
    set_present(node, TVK_HAS_OPERATION);
}

/* Tells whether a node carries the operation delete or remove. */
inline bool is_delete(const Node &node) {
    return has_operation(node, TVK_OPERATION_DELETE) || has_operation(node, TVK_OPERATION_REMOVE);
}

/* Tells whether a node is marked as a key leaf: the presence bit is set and the mark is not 0. */
inline bool has_key_mark(const Node &node) {
    return has(node, TVK_HAS_IS_KEY) && node.is_key != 0;
}

/* Marks a node as a key leaf. */
inline void mark_key(Node &node) {
    node.is_key = 1;
    set_present(node, TVK_HAS_IS_KEY);
}

/* Tells whether a node carries an insert record: its bit is set, or a presence field of the record is not 0. */
inline bool carries_insert(const Node &node) {
    const qidl_tvk_edit_insert &insert = node.edit_insert;
    return has(node, TVK_HAS_EDIT_INSERT) ||
           (insert.insert_presence | insert.keys_presence | insert.value_presence) != 0;
}

}  // namespace tvk

#if __cplusplus >= 202002L
/* The records outlive the range. */
template <typename Record>
inline constexpr bool std::ranges::enable_borrowed_range<tvk::NodeRange<Record>> = true;
#endif

#endif
