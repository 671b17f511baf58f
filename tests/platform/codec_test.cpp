#include <gtest/gtest.h>

#include <cstring>
#include <tuple>
#include <vector>

#include "allocation_failures.h"
#include "heap_test.h"
#include "kel_memory.h"
#include "qidl_tvk_datatree.h"
#include "status.h"
#include "tree.h"

using namespace tvk::test;

namespace {

class Codec : public HeapTest {};

qerrno copy(qidl_tvk_datatree &to, const qidl_tvk_datatree &from) {
    std::memset(&to, 0xa5, sizeof to);  // old contents are not looked at
    return qidl_tvk_datatree_duplicate(&to, &from, tvk_gpb_alloc, nullptr);
}

void release(qidl_tvk_datatree &record) {
    qidl_tvk_datatree_free_ext(&record, tvk_gpb_free, nullptr, 0);
}

// Every kind of content, also where the presence bit is clear.
Node rich_tree() {
    return node("routing", "urn:r")(
        node("policy")
            .op(TVK_OPERATION_REPLACE)
            .index(2)
            .attribute("a", "1")
            .attribute("b", "2")(leaf("name", "p1").key().type(TVK_NODE_TYPE_CONTENT_MATCH),
                                 leaf("type", "bgp").data_ns("urn:t").without(TVK_HAS_DATA | TVK_HAS_DATA_NS),
                                 leaf("empty", "").kind(TVK_NODE_KIND_KA)),
        node("statement").insert(TVK_INSERT_AFTER, {{"id", "10"}, {"seq", "1"}}, "x", "[id=10]"),
        node("other", "urn:o")(node({}).no_ns(), node("list").with(TVK_HAS_SUBTREES)));
}

auto plain_fields(const qidl_tvk_datatree &r) {
    return std::tuple(r.framework_word, r.operation, r.attribute_count, r.subtree_count, r.subtree_index,
                      r.schema_info.framework_1, r.schema_info.framework_2, r.schema_info.node_type,
                      r.schema_info.framework_3, r.schema_info.flags, r.framework_words[0], r.framework_words[1],
                      r.framework_words[2], r.is_key, r.edit_insert.position, r.edit_insert.key_count,
                      r.edit_insert.keys_presence, r.edit_insert.value_presence, r.edit_insert.insert_presence,
                      r.node_kind, r.framework_byte, r.presence);
}

template <class Visit>
void for_each_record(qidl_tvk_datatree &record, Visit visit) {
    visit(record);
    for (int i = 0; i < record.subtree_count; ++i) {
        for_each_record(record.subtrees[i], visit);
    }
}

auto all_plain_fields(qidl_tvk_datatree &tree) {
    std::vector<decltype(plain_fields(tree))> fields;
    for_each_record(tree, [&](const qidl_tvk_datatree &record) { fields.push_back(plain_fields(record)); });
    return fields;
}

// The framework's fields, with another value in every record.
void set_framework_fields(qidl_tvk_datatree &tree) {
    std::uint32_t next = 1;
    for_each_record(tree, [&](qidl_tvk_datatree &r) {
        r.framework_word = next++;
        r.framework_byte = static_cast<std::uint8_t>(next++);
        r.presence = static_cast<std::uint16_t>(r.presence | TVK_PRESENCE_FRAMEWORK);
        for (std::uint64_t &word : r.framework_words) {
            word = ~std::uint64_t{next++};
        }
        for (std::uint32_t *word :
             {&r.schema_info.framework_1, &r.schema_info.framework_2, &r.schema_info.framework_3}) {
            *word = next++;
        }
    });
}

TEST_F(Codec, CopiesEveryFieldAndSharesNothing) {
    qidl_tvk_datatree copied;
    Tree insert = node("statement").with(TVK_HAS_EDIT_INSERT);
    std::string text;
    {
        Tree source = rich_tree();
        set_framework_fields(*source);
        find(source, "policy")->attributes[1].framework = &copied;
        text = show(source);
        const auto fields = all_plain_fields(*source);
        ASSERT_STATUS(TVK_OK, copy(copied, *source));
        EXPECT_EQ(fields, all_plain_fields(copied));
        EXPECT_EQ(fields, all_plain_fields(*source)) << "the source is left as it was";
        EXPECT_EQ(&copied, find(copied, "policy")->attributes[1].framework);
        ASSERT_STATUS(TVK_OK, qidl_tvk_edit_ins_duplicate(&insert->edit_insert, &find(source, "statement")->edit_insert,
                                                          tvk_gpb_alloc, nullptr));
    }
    EXPECT_EQ(text, show(copied));
    EXPECT_TREE(node("statement").insert(TVK_INSERT_AFTER, {{"id", "10"}, {"seq", "1"}}, "x", "[id=10]"), insert);
    for (int i = 0; i < 2; ++i) {
        release(copied);  // once more does nothing
        EXPECT_TRUE(copied.tag == nullptr && copied.ns == nullptr && copied.subtrees == nullptr);
    }
}

TEST_F(Codec, FollowsAttributesOnlyWhenTheyAreCounted) {
    Tree parent = node("parent");
    Tree tree = node("tree")(node("linked"));
    auto *link = reinterpret_cast<qidl_tvk_name_value *>(parent.get());
    find(tree, "linked")->attributes = link;
    tree->attribute_count = 3;  // counted, and none there
    tree->edit_insert.key_count = 2;

    qidl_tvk_datatree copied;
    ASSERT_STATUS(TVK_OK, copy(copied, *tree));
    EXPECT_EQ(link, copied.subtrees[0].attributes);
    EXPECT_EQ(nullptr, copied.attributes);
    EXPECT_EQ(3, copied.attribute_count);
    EXPECT_EQ(2, copied.edit_insert.key_count);
    release(copied);
    EXPECT_STREQ("parent", parent->tag);
}

TEST_F(Codec, FailedCopyCanBeReleased) {
    Tree source = rich_tree();
    set_framework_fields(*source);
    for_each_allocation_failure([&](AllocationFailure &failure) {
        qidl_tvk_datatree copied;
        const qerrno status = failure.during([&] { return copy(copied, *source); });
        EXPECT_STATUS(failure.is_injected() ? TVK_ERR_NO_MEMORY : TVK_OK, status);
        EXPECT_EQ(0, std::memcmp(copied.framework_words, source->framework_words, sizeof copied.framework_words));
        release(copied);
    });
}

TEST_F(Codec, TakesTreesOfAnyDepth) {
    constexpr int kDepth = 100'000;
    Tree tree = node("bottom");
    for (int i = 0; i < kDepth; ++i) {
        Tree above = node("level");
        above->subtrees = tree.release();
        above->subtree_count = 1;
        tree = std::move(above);
    }
    qidl_tvk_datatree copied;
    ASSERT_STATUS(TVK_OK, copy(copied, *tree));
    const qidl_tvk_datatree *bottom = &copied;
    for (int i = 0; i < kDepth; ++i) {
        ASSERT_EQ(1, bottom->subtree_count);
        bottom = bottom->subtrees;
    }
    EXPECT_STREQ("bottom", bottom->tag);
    release(copied);
}

}  // namespace
