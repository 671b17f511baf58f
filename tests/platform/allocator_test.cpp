#include <gtest/gtest.h>
#include <malloc.h>

#include <cstdint>
#include <cstring>
#include <string>

#include "heap_test.h"
#include "kel_memory.h"
#include "qidl_tvk_datatree.h"
#include "tvk_platform_control.h"
#include "tvk_string.h"

using namespace tvk::test;

namespace {

class Allocator : public HeapTest {};

TEST_F(Allocator, GrowsByOneRecordAtATimeInFewSteps) {
    constexpr std::size_t kRecord = sizeof(qidl_tvk_datatree), kRecords = 10'000;
    unsigned char *block = nullptr;
    std::size_t room = 0, steps = 0;
    for (std::size_t i = 0; i < kRecords; ++i) {
        block = static_cast<unsigned char *>(kel_named_realloc(block, (i + 1) * kRecord));
        ASSERT_NE(nullptr, block);
        block[i * kRecord] = static_cast<unsigned char>(i % 251);
        steps += malloc_usable_size(block) != room ? 1 : 0;
        room = malloc_usable_size(block);
    }
    EXPECT_LT(steps, kRecords / 20);
    for (std::size_t i = 0; i < kRecords; ++i) {
        ASSERT_EQ(i % 251, block[i * kRecord]);
    }
    EXPECT_EQ(kRecords * kRecord, tvk_platform_live_bytes(nullptr)) << "spare room is not asked for";
    void *shrunk = kel_named_realloc(block, kRecord);
    EXPECT_LT(malloc_usable_size(shrunk), room / 2) << "most of a large block goes back";
    kel_named_free(shrunk);
}

TEST_F(Allocator, FailedGrowthKeepsTheBlockWhateverRoomItHas) {
    auto *block = static_cast<char *>(kel_named_realloc(tvk_strdup("kept", "text"), 100'000));
    tvk_platform_fail_allocation(1, 0);
    EXPECT_EQ(nullptr, kel_named_realloc(block, 100'001));
    EXPECT_STREQ("kept", block);
    EXPECT_EQ(100'000u, tvk_platform_live_bytes("text")) << "growth keeps the tag, failed growth the size";
    tvk_platform_fail_allocation(1, 1);
    EXPECT_NE(nullptr, kel_named_realloc(block, 90'000)) << "shrinking is no allocation";
    EXPECT_EQ(0u, tvk_platform_allocation_count());
    kel_named_free(block);
}

TEST_F(Allocator, CopesWithOddRequests) {
    EXPECT_EQ(nullptr, kel_named_calloc_(SIZE_MAX / 8 + 2, 8, "product of 8", 0)) << "never a wrapped size";
    EXPECT_EQ(nullptr, tvk_strdup(nullptr, "none"));
    kel_named_free(nullptr);
    tvk_gpb_free(nullptr, nullptr);
    for (void *block : {kel_named_calloc_(0, 8, "empty", 0), kel_named_realloc(nullptr, 0), tvk_gpb_alloc(0, nullptr),
                        kel_named_realloc(tvk_gpb_alloc(8, nullptr), 0)}) {
        EXPECT_NE(nullptr, block);
        tvk_gpb_free(block, nullptr);
    }
    kel_named_free(strdup("from the C library"));
}

TEST_F(Allocator, AccountsByTag) {
    void *a = kel_named_calloc_(2, 10, "a", 0);
    char *b = tvk_strdup("four", "b");
    void *codec = tvk_gpb_alloc(100, nullptr);
    EXPECT_EQ("(no tag): 1 blocks, 100 bytes\na: 1 blocks, 20 bytes\nb: 1 blocks, 5 bytes\n", live_blocks());
    EXPECT_EQ(3u, tvk_platform_live_blocks(nullptr));
    EXPECT_EQ(125u, tvk_platform_live_bytes(nullptr));
    EXPECT_EQ(20u, tvk_platform_live_bytes(std::string("a").c_str()));
    tvk_gpb_free(b, nullptr);
    EXPECT_EQ(0u, tvk_platform_live_blocks("b"));
    tvk_platform_set_accounting(1);
    EXPECT_EQ(0u, tvk_platform_live_blocks(nullptr)) << "turning it on starts an empty record";
    kel_named_free(kel_named_realloc(a, 30));  // unknown blocks may be resized and released
    kel_named_free(codec);
}

TEST_F(Allocator, FailsTheNthAllocationOnceOrFromThereOn) {
    const auto outcome = [](std::uint64_t nth, int from_there_on) {
        std::string text;
        tvk_platform_fail_allocation(nth, from_there_on);
        for (int i = 0; i < 4; ++i) {
            char *block = tvk_strdup("x", i % 2 == 0 ? "even" : "odd");
            text += block != nullptr ? '+' : '-';
            kel_named_free(block);
        }
        EXPECT_EQ(4u, tvk_platform_allocation_count());
        return text;
    };
    EXPECT_EQ("+-++", outcome(2, 0));
    EXPECT_EQ("+---", outcome(2, 1));
    EXPECT_EQ("++++", outcome(0, 1));
    tvk_platform_fail_tag(std::string("odd").c_str());
    EXPECT_EQ("+-+-", outcome(0, 0));
    EXPECT_EQ("+---", outcome(3, 1)) << "beside the other switch";
    tvk_platform_set_accounting(0);
    tvk_platform_fail_allocation(0, 0);
    EXPECT_EQ(nullptr, tvk_strdup("x", "odd")) << "without accounting as well";
}

#ifndef __SANITIZE_ADDRESS__  // which ends the process instead
TEST_F(Allocator, WhatCannotGrowStays) {
    void *block = kel_named_calloc_(1, 8, "stays", 0);
    EXPECT_EQ(nullptr, kel_named_realloc(block, PTRDIFF_MAX));
    EXPECT_EQ(8u, tvk_platform_live_bytes("stays"));
    kel_named_free(block);
}
#endif

}  // namespace
