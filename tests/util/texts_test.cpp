// Addresses, paths and values as texts. Each stands in a block of its own size, so that a read behind it is noticed.
#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <vector>

#include "heap_test.h"
#include "kel_memory.h"
#include "tvk_map_datatree.h"
#include "tvk_map_util.h"

namespace {

class Texts : public tvk::test::HeapTest {};

class Exact {
public:
    explicit Exact(const std::string &text) : bytes_(text.c_str(), text.c_str() + text.size() + 1) {}
    char *get() { return bytes_.data(); }

private:
    std::vector<char> bytes_;
};

std::string or_none(const char *text) {
    return text != nullptr ? text : "none";
}

TEST_F(Texts, Ipv4AddressesMayHaveAZone) {
    for (const char *address : {"0.0.0.0", "255.255.255.255", "192.168.109.10", "10.0.0.1%eth0", "249.99.100.199"}) {
        EXPECT_EQ(1, tvk_map_is_valid_ipv4_addr(Exact(address).get())) << address;
    }
    for (const char *text : {"", "1.2.3", "1.2.3.4.5", "256.1.1.1", "1.1.1.259", "01.1.1.1", "1.1.1.1%", "1.1.1.1%a b",
                             "1.1.1.1/8", " 1.1.1.1", "::1"}) {
        EXPECT_EQ(0, tvk_map_is_valid_ipv4_addr(Exact(text).get())) << text;
    }
    EXPECT_EQ(0, tvk_map_is_valid_ipv4_addr(nullptr));
}

TEST_F(Texts, TimestampsAreMicrosecondsSinceTheEpoch) {
    const auto now = [] {
        const auto since = std::chrono::system_clock::now().time_since_epoch();
        return static_cast<std::uint64_t>(std::chrono::duration_cast<std::chrono::microseconds>(since).count());
    };
    constexpr std::uint64_t kHour = 3600000000;  // the clock may be set meanwhile
    EXPECT_LT(now() - kHour, tvk_map_get_timestamp());
    EXPECT_GT(now() + kHour, tvk_map_get_timestamp());
}

TEST_F(Texts, AreCutAtSlashes) {
    const struct {
        const char *path, *last, *address, *length;
        std::vector<std::string> tokens;
    } rows[] = {
        {"", "none", "none", "none", {}},
        {"//", "none", "none", "/", {}},
        {"a", "a", "a", "none", {"a"}},
        {"/a//b/", "b", "a", "a//b/", {"a", "b"}},
        {"10.0.0.1/8/9", "9", "10.0.0.1", "8/9", {"10.0.0.1", "8", "9"}},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.path);
        Exact path(row.path), prefix(row.path);
        char *last = nullptr;
        tvk_map_get_last_token_from_path(nullptr, path.get(), &last);
        EXPECT_EQ(row.last, or_none(last));
        EXPECT_EQ(row.length, or_none(tvk_map_get_ip_address_len_info(prefix.get())));
        EXPECT_EQ(row.address, or_none(tvk_map_get_ip_address_info(prefix.get())));
        for (const std::int32_t max_index : {-1, 0, 1, 5}) {
            Exact cut(row.path);
            char *tokens[8] = {};
            std::uint32_t count = 1;
            const std::size_t room = static_cast<std::size_t>(std::max(max_index, 0)) + 1;
            const int ends = tvk_map_str_to_array(cut.get(), tokens, static_cast<std::uint32_t>(max_index), &count);
            EXPECT_EQ(row.tokens.size() >= room ? 0 : 1, ends);
            ASSERT_EQ(1 + std::min(row.tokens.size(), room), count);
            for (std::uint32_t i = 1; i < count; ++i) {
                EXPECT_EQ(row.tokens[i - 1], tokens[i]);
            }
        }
    }
    EXPECT_EQ(1, tvk_map_str_to_array(nullptr, nullptr, 1, nullptr));
}

TEST_F(Texts, AreConverted) {
    for (const auto &[kilobits, bits] :
         {std::pair("192", "192000"), {"4294967", "4294967000"}, {"4294968", "704"}, {"x", "0"}}) {
        char *converted = nullptr;
        EXPECT_EQ(TVK_OK, tvk_map_data_conv(0, Exact(kilobits).get(), &converted));
        EXPECT_STREQ(bits, converted) << "32 bits wide";
        kel_named_free(converted);
    }
    char *nothing = nullptr;
    for (const std::int32_t unknown : {-1, 2}) {
        EXPECT_EQ(TVK_ERR_INVALID, tvk_map_data_conv(unknown, "1", &nothing));
    }
    EXPECT_EQ(0x80000001U, tvk_map_set_bitmap(1, 31));
    EXPECT_EQ(3U, tvk_map_set_bitmap(1, 33));
}

TEST_F(Texts, AreCompared) {
    EXPECT_EQ(1, tvk_map_trim_strcmpbeg(Exact(" \tabc").get(), Exact("\n ab").get()));
    EXPECT_EQ(0, tvk_map_trim_strcmpbeg(Exact("ab").get(), Exact("abc").get()));
    EXPECT_EQ(0, tvk_map_trim_strcmpbeg(nullptr, "a"));
    EXPECT_EQ(1, tvk_map_does_it_have(Exact("xaby").get(), Exact("ab").get()));
    EXPECT_EQ(0, tvk_map_does_it_have(Exact("ab").get(), Exact("abc").get()));
    EXPECT_EQ(1, tvk_map_is_private_model(Exact("xPRIVATE").get()));
    EXPECT_EQ(0, tvk_map_is_private_model(Exact("private").get()));
}

}  // namespace
