// The minimal platform as it is, without the switches that the rooms of the library put in front of it.
#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <cstdint>
#include <cstring>
#include <random>
#include <thread>
#include <vector>

#include "kel_memory.h"
#include "minimal_platform.h"
#include "qidl_tvk_datatree.h"
#include "tvk_diagnostics.h"

namespace {

// The largest block that there is room for, to the kilobyte.
std::size_t largest_block() {
    std::size_t fits = 0, fails = std::size_t{1} << 32;
    while (fails - fits > 1024) {
        const std::size_t size = fits + (fails - fits) / 2;
        void *block = tvk_gpb_alloc(size, nullptr);
        (block != nullptr ? fits : fails) = size;
        tvk_gpb_free(block, nullptr);
    }
    return fits;
}

// A block filled with a pattern of its own, which it must keep whatever happens to the others.
class Filled {
public:
    explicit Filled(unsigned char pattern) : pattern_(pattern) {}
    Filled(Filled &&other) noexcept : block_(other.block_), size_(other.size_), pattern_(other.pattern_) {
        other.block_ = nullptr;
    }
    Filled &operator=(Filled &&other) noexcept {
        std::swap(block_, other.block_);
        std::swap(size_, other.size_);
        std::swap(pattern_, other.pattern_);
        return *this;
    }
    ~Filled() { kel_named_free(block_); }

    bool resize(std::size_t size) {
        auto *resized = static_cast<unsigned char *>(kel_named_realloc(block_, size));
        if (resized == nullptr) {
            return false;
        }
        EXPECT_EQ(0u, reinterpret_cast<std::uintptr_t>(resized) % alignof(std::max_align_t));
        block_ = resized;
        EXPECT_TRUE(is_whole(std::min(size_, size)));
        size_ = size;
        std::memset(block_, pattern_, size_);
        return true;
    }
    bool is_whole() const { return is_whole(size_); }

private:
    bool is_whole(std::size_t size) const {
        return std::all_of(block_, block_ + size, [this](unsigned char byte) { return byte == pattern_; });
    }

    unsigned char *block_ = nullptr;
    std::size_t size_ = 0;
    unsigned char pattern_;
};

// Blocks come, change their size and go at random. Returns how often there was no room.
int churn(unsigned seed) {
    std::mt19937 random(seed);
    std::vector<Filled> blocks;
    int refused = 0;
    for (int step = 0; step < 2000; ++step) {
        const std::size_t size = random() % (random() % 20 == 0 ? 2'000'000 : 500);
        const std::size_t action = blocks.empty() ? 0 : random() % 10;
        const std::size_t place = blocks.empty() ? 0 : random() % blocks.size();
        if (action < 4) {
            blocks.emplace_back(static_cast<unsigned char>(step));
            refused += blocks.back().resize(size) ? 0 : 1;
        } else if (action < 7) {
            refused += blocks[place].resize(size) ? 0 : 1;
        } else {
            EXPECT_TRUE(blocks[place].is_whole());
            std::swap(blocks[place], blocks.back());
            blocks.pop_back();
        }
    }
    EXPECT_TRUE(std::all_of(blocks.begin(), blocks.end(), [](const Filled &block) { return block.is_whole(); }));
    return refused;
}

TEST(MinimalPlatform, KeepsBlocksApartAndMergesWhatIsReleased) {
    const std::size_t before = largest_block();
    void *most = tvk_gpb_alloc(before - 10'000'000, nullptr);  // so that what is left is full at times
    ASSERT_NE(nullptr, most);
    int refused = 0;
    for (unsigned seed = 0; seed < 5; ++seed) {
        refused += churn(seed);
    }
    EXPECT_LT(0, refused);
    std::thread other([] { churn(100); });
    churn(101);
    other.join();
    tvk_gpb_free(most, nullptr);
    EXPECT_EQ(before, largest_block());
}

TEST(MinimalPlatform, AnswersNullWhenTheArenaIsFullAndKeepsWhatThereIs) {
    const std::size_t before = largest_block();
    Filled half('h');
    ASSERT_TRUE(half.resize(before / 2));
    std::vector<Filled> blocks;
    do {
        blocks.emplace_back(static_cast<unsigned char>('b'));
    } while (blocks.back().resize(4000));
    EXPECT_FALSE(half.resize(before));
    EXPECT_FALSE(half.resize(SIZE_MAX - 8));
    EXPECT_EQ(nullptr, kel_named_calloc_(1, 5000, "tag", 0));
    EXPECT_EQ(nullptr, kel_named_calloc_(SIZE_MAX / 8 + 2, 8, "tag", 0)) << "never a wrapped size";
    EXPECT_EQ(nullptr, tvk_gpb_alloc(SIZE_MAX, nullptr));
    EXPECT_TRUE(half.is_whole());
    EXPECT_TRUE(half.resize(10)) << "what is shrunk makes room";
    EXPECT_LT(before / 4, largest_block());
    const auto *zeroed = static_cast<const unsigned char *>(kel_named_calloc_(before / 4, 1, "tag", 0));
    ASSERT_NE(nullptr, zeroed);
    EXPECT_TRUE(std::all_of(zeroed, zeroed + before / 4, [](unsigned char byte) { return byte == 0; }));
    kel_named_free(const_cast<unsigned char *>(zeroed));
}

TEST(MinimalPlatformDeathTest, RefusesAddressesOfAnotherHeap) {
    char text[32] = "not of the arena";
    EXPECT_EXIT(kel_named_free(text), testing::KilledBySignal(SIGABRT), "");
    EXPECT_EXIT(kel_named_realloc(text, 5), testing::KilledBySignal(SIGABRT), "");
}

TEST(MinimalPlatform, HasATraceIndexAndSixteenSessions) {
    EXPECT_EQ(1u, ret_nc_tvk_trace_index_incr());
    tvk_framework_context one{}, other{};
    std::vector<tvk_session> sessions(MINIMAL_PLATFORM_SESSIONS);
    for (std::uint32_t id = 0; id < MINIMAL_PLATFORM_SESSIONS; ++id) {
        EXPECT_EQ(1, minimal_platform_set_session(&one, id, &sessions[id]));
    }
    EXPECT_EQ(0, minimal_platform_set_session(&other, 3, &sessions[0])) << "full";
    EXPECT_EQ(1, minimal_platform_set_session(&one, 4, nullptr));
    EXPECT_EQ(1, minimal_platform_set_session(&other, 3, &sessions[1]));
    EXPECT_EQ(&sessions[3], tvk_session_find(&one, 3));
    EXPECT_EQ(&sessions[1], tvk_session_find(&other, 3));
    EXPECT_EQ(nullptr, tvk_session_find(&one, 4));
}

}  // namespace
