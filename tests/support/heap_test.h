#ifndef TVK_TEST_HEAP_TEST_H
#define TVK_TEST_HEAP_TEST_H

#include <gtest/gtest.h>

#include <string>

namespace tvk::test {

// The blocks that are live on the named heap, counted by tag, as text; empty when there are none.
std::string live_blocks();

// Fails a test that leaves a block live on the named heap. Looked at when the fixture goes, so that what a derived
// fixture owns is gone before.
class HeapTest : public ::testing::Test {
protected:
    HeapTest();
    ~HeapTest() override;
};

}  // namespace tvk::test

#endif
