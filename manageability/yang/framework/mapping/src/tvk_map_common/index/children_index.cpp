// The indexed child arrays of a request, and the lookup tables of each.
#include "tvk_map_common/index/children_index.h"

#include <algorithm>
#include <new>

#include "tvk_map_datatree.h"

namespace tvk {

namespace {

// Makes a record on the named heap; null when there is no memory.
template <typename T>
T *make() {
    void *block = kel_named_calloc_(1, sizeof(T), "TVK MAP index", 0);
    return block != nullptr ? new (block) T{} : nullptr;
}

template <typename T>
void destroy(T *&record) {
    if (record != nullptr) {
        record->~T();
        kel_named_free(record);
        record = nullptr;
    }
}

// The lookup tables of one child array.
struct IndexedChildren {
    static constexpr std::size_t kMaxTables = 4;  // one table for each kind of search

    ~IndexedChildren() { clear(); }

    void clear() {
        destroy(tags);
        for (EntryTable *&table : tables) {
            destroy(table);
        }
        first_tag = nullptr;
    }

    // Returns whether the tables fit these children. Every change should be announced; this is the last line of defence
    // against one that was not.
    bool fits(std::span<const Node> children) const {
        return known() <= children.size() && first_tag == children.front().tag;
    }

    std::size_t known() const {
        std::size_t most = tags != nullptr ? tags->known() : 0;
        for (const EntryTable *table : tables) {
            most = std::max(most, table != nullptr ? table->frontier() : 0);
        }
        return most;
    }

    void drop_last(std::span<const Node> children) {
        if (tags != nullptr && !tags->drop_last(children)) {
            destroy(tags);
        }
        for (EntryTable *table : tables) {
            if (table != nullptr && table->frontier() == children.size()) {
                table->drop_last();
            }
        }
    }

    const char *first_tag;
    TagGroups *tags;
    EntryTable *tables[kMaxTables];
};

}  // namespace

}  // namespace tvk

using namespace tvk;

// The indexed parents in the order of their arrays' addresses, so that the list of an entry is found from the entry
// itself.
struct tvk_map_children_index {
    static constexpr std::size_t kMaxParents = 1024;

    struct Parent {
        const Node *array;
        IndexedChildren *children;
    };

    ~tvk_map_children_index() {
        for (Parent &parent : all()) {
            destroy(parent.children);
        }
    }

    std::span<Parent> all() { return {parents, count}; }

    Parent *find(const Node *array) {
        if (recent < count && parents[recent].array == array) {
            return parents + recent;
        }
        Parent *at = std::ranges::lower_bound(parents, parents + count, array, {}, &Parent::array);
        if (at == parents + count || at->array != array) {
            return nullptr;
        }
        recent = static_cast<std::size_t>(at - parents);
        return at;
    }

    Parent *insert(const Node *array) {
        if (count == kMaxParents) {
            erase(*choose_victim());
        }
        IndexedChildren *made = make<IndexedChildren>();
        if (made == nullptr) {
            return nullptr;
        }
        return place({array, made});
    }

    void erase(Parent &parent) {
        destroy(parent.children);
        close_gap(parent);
    }

    void move(Parent &parent, const Node *to) {
        Parent moving = parent;
        close_gap(parent);
        moving.array = to;
        place(moving);
    }

    // Returns the tables of the last array that begins at or before the entry, and the entry's position from there;
    // null when there is none. The position may lie behind the array, and EntryTable::forget ignores it then.
    IndexedChildren *list_of(const Node &entry, std::size_t &position) {
        Parent *behind = std::ranges::upper_bound(parents, parents + count, &entry, {}, &Parent::array);
        if (behind == parents) {
            return nullptr;
        }
        const auto offset =
            reinterpret_cast<std::uintptr_t>(&entry) - reinterpret_cast<std::uintptr_t>(behind[-1].array);
        position = offset / sizeof(Node);
        return behind[-1].children;
    }

private:
    // Chooses the one of the next few parents that has the fewest children to look at again. A long list that is
    // searched all the time is thus not given up for its entries.
    Parent *choose_victim() {
        constexpr std::size_t kChoice = 8;
        Parent *chosen = nullptr;
        for (std::size_t i = 0; i < kChoice; ++i) {
            victim = (victim + 1) % kMaxParents;
            if (chosen == nullptr || parents[victim].children->known() < chosen->children->known()) {
                chosen = parents + victim;
            }
        }
        return chosen;
    }
    Parent *place(const Parent &parent) {
        Parent *at = std::ranges::lower_bound(parents, parents + count, parent.array, {}, &Parent::array);
        std::copy_backward(at, parents + count, parents + count + 1);
        *at = parent;
        ++count;
        return at;
    }
    void close_gap(Parent &parent) {
        std::copy(&parent + 1, parents + count, &parent);
        --count;
    }

    Parent parents[kMaxParents];
    std::size_t count;
    std::size_t victim;
    std::size_t recent;  // the parent found last, most often the next one, too
};

namespace tvk {

namespace {

tvk_map_children_index *index_of(tvk_map_ctx ctx) {
    return keeps_index(ctx) ? ctx->state->children_index : nullptr;
}

// Returns the tables of these children; null when the children are not to be indexed or cannot be.
IndexedChildren *indexed(tvk_map_ctx ctx, std::span<const Node> children) {
    if (ctx == nullptr || ctx->index_children_from == 0 || children.size() < ctx->index_children_from ||
        ctx->state == nullptr) {
        return nullptr;
    }
    tvk_map_children_index *&index = ctx->state->children_index;
    if (index == nullptr && (index = make<tvk_map_children_index>()) == nullptr) {
        return nullptr;
    }
    tvk_map_children_index::Parent *parent = index->find(children.data());
    if (parent == nullptr && (parent = index->insert(children.data())) == nullptr) {
        return nullptr;
    }
    IndexedChildren &known = *parent->children;
    if (!known.fits(children)) {
        known.clear();
        known.first_tag = children.front().tag;
    }
    return &known;
}

// From this number of entries on a table is filled at the second search, because filling it takes longer than looking
// through the entries once. A search that finds no entry and the addition that follows count as two.
constexpr std::size_t kManyEntries = 64;

EntryTable *table_for(IndexedChildren &known, const char *tag, std::span<const KeyText> keys, std::size_t entries) {
    for (EntryTable *&table : known.tables) {
        if (table == nullptr) {
            table = make<EntryTable>();
            if (table != nullptr && !table->set_up(tag, keys)) {
                destroy(table);
            }
            return entries < kManyEntries ? table : nullptr;
        }
        if (table->is_for(tag, keys)) {
            return table;
        }
    }
    return nullptr;
}

bool has_texts(std::span<const KeyText> keys) {
    return !keys.empty() &&
           std::ranges::all_of(keys, [](const KeyText &key) { return key.name != nullptr && key.value != nullptr; });
}

// A tree deeper than this makes the whole index be forgotten.
constexpr int kMaxForgetDepth = 32;

bool forget_array(tvk_map_children_index &index, std::span<const Node> nodes, int depth) {
    if (depth == kMaxForgetDepth) {
        return false;
    }
    if (auto *known = index.find(nodes.data()); known != nullptr) {
        index.erase(*known);
    }
    return std::ranges::all_of(nodes, [&](const Node &node) {
        return node.subtrees == nullptr ||
               forget_array(index, child_array(node.subtrees, node.subtree_count), depth + 1);
    });
}

}  // namespace

bool find_places(tvk_map_ctx ctx, std::span<const Node> children, const char *tag, TagPlaces &places) {
    IndexedChildren *known = indexed(ctx, children);
    if (known == nullptr || (known->tags == nullptr && (known->tags = make<TagGroups>()) == nullptr) ||
        !known->tags->take_in(children)) {
        return false;
    }
    places = known->tags->find(children, tag);
    return true;
}

const EntryTable *find_entry_table(tvk_map_ctx ctx, std::span<const Node> children, const char *tag,
                                   std::span<const KeyText> keys) {
    IndexedChildren *known = has_texts(keys) ? indexed(ctx, children) : nullptr;
    EntryTable *table = known != nullptr ? table_for(*known, tag, keys, children.size()) : nullptr;
    if (table != nullptr) {
        table->take_in(children);
    }
    return table;
}

void children_grown(tvk_map_ctx ctx, const Node *from, std::span<const Node> to) {
    tvk_map_children_index *index = index_of(ctx);
    if (index == nullptr) {
        return;
    }
    const bool moved = from != to.data();
    // Another array may have stood here before and gone unannounced.
    if (moved || to.size() == ctx->index_children_from) {
        if (auto *gone = index->find(to.data()); gone != nullptr) {
            index->erase(*gone);
        }
    }
    if (auto *known = moved ? index->find(from) : nullptr; known != nullptr) {
        index->move(*known, to.data());
    }
}

void forget_children(tvk_map_ctx ctx, std::span<const Node> nodes) {
    if (tvk_map_children_index *index = index_of(ctx); index != nullptr && !forget_array(*index, nodes, 0)) {
        forget_index(ctx);
    }
}

void forget_last_child(tvk_map_ctx ctx, std::span<const Node> children) {
    forget_children(ctx, child_array(children.back().subtrees, children.back().subtree_count));
    tvk_map_children_index *index = index_of(ctx);
    if (auto *known = index != nullptr ? index->find(children.data()) : nullptr; known != nullptr) {
        known->children->drop_last(children);
    }
}

void forget_index(tvk_map_ctx ctx) {
    if (keeps_index(ctx)) {
        destroy(ctx->state->children_index);
    }
}

void release_nodes(tvk_map_ctx ctx, std::span<Node> nodes) {
    forget_children(ctx, nodes);
    for (Node &node : nodes) {
        free_contents(node);
    }
}

void entry_gains(tvk_map_ctx ctx, const Node &entry, const char *tag) {
    tvk_map_children_index *index = index_of(ctx);
    std::size_t position = 0;
    IndexedChildren *list = index != nullptr ? index->list_of(entry, position) : nullptr;
    if (list == nullptr) {
        return;
    }
    for (EntryTable *table : list->tables) {
        if (table != nullptr && (tag == nullptr || table->reads(tag))) {
            table->forget(position);
        }
    }
}

}  // namespace tvk

qerrno tvk_map_forget_children(tvk_map_ctx ctx, const struct qidl_tvk_datatree *parent) {
    if (ctx == nullptr || ctx->state == nullptr) {
        return TVK_ERR_INVALID;
    }
    if (parent == nullptr) {
        forget_index(ctx);
    } else {
        forget_children(ctx, child_array(parent->subtrees, parent->subtree_count));
        entry_gains(ctx, *parent, nullptr);
    }
    return TVK_OK;
}
