#include "heap_test.h"

#include <map>
#include <utility>

#include "tvk_platform_control.h"

namespace tvk::test {

namespace {

void count_block(void *user, const void *, size_t size, const char *tag) {
    auto &[blocks, bytes] =
        (*static_cast<std::map<std::string, std::pair<size_t, size_t>> *>(user))[tag != nullptr ? tag : "(no tag)"];
    ++blocks;
    bytes += size;
}

void turn_failures_off() {
    tvk_platform_fail_allocation(0, 0);
    tvk_platform_fail_tag(nullptr);
}

}  // namespace

std::string live_blocks() {
    std::map<std::string, std::pair<size_t, size_t>> counts;
    tvk_platform_visit_live_blocks(count_block, &counts);
    std::string text;
    for (const auto &[tag, count] : counts) {
        text += tag + ": " + std::to_string(count.first) + " blocks, " + std::to_string(count.second) + " bytes\n";
    }
    return text;
}

HeapTest::HeapTest() {
    turn_failures_off();
    tvk_platform_set_accounting(1);
}

HeapTest::~HeapTest() {
    turn_failures_off();
    EXPECT_EQ("", live_blocks()) << "blocks are live at the end of the test";
    tvk_platform_set_accounting(0);
}

}  // namespace tvk::test
