#include "tvk_map_util.h"

#include <string>
#include <vector>

#include "allocation_failures.h"
#include "heap_test.h"
#include "kel_memory.h"
#include "status.h"

namespace tvk::test {
namespace {

class UtilTest : public HeapTest {};

TEST_F(UtilTest, ConvertsValuesByTheTable) {
    const struct {
        int index;
        const char *value, *converted, *reason;
    } kCases[] = {
        {0, "4294967", "4294967000", "the largest rate that does not wrap"},
        {0, "4294968", "704", "the next one does"},
        {0, "-1", "4294966296", "a sign is read, in 32 bits"},
        {0, " 12kb", "12000", "around the number all is ignored"},
        {0, "", "0", "no number"},
        {1, "86400", "", "the slot is empty"},
    };
    for (const auto &test : kCases) {
        char *out = nullptr;
        EXPECT_STATUS(TVK_OK, tvk_map_data_conv(test.index, test.value, &out));
        EXPECT_STREQ(test.converted, out) << test.reason;
        kel_named_free(out);
        EXPECT_EQ(test.index, tvk_map_data_conv_cb_tab[test.index].id);
    }
    char *out = nullptr;
    EXPECT_STATUS(TVK_ERR_INVALID, tvk_map_data_conv(2, "1", &out));
    EXPECT_STATUS(TVK_ERR_INVALID, tvk_map_data_conv(-1, "1", &out));
    for (const int index : {0, 1}) {
        for_each_allocation_failure([&](AllocationFailure &failure) {
            const qerrno status = failure.during([&] { return tvk_map_data_conv(index, "1", &out); });
            EXPECT_STATUS(failure.is_injected() ? TVK_ERR_NO_MEMORY : TVK_OK, status);
            EXPECT_EQ(failure.is_injected(), out == nullptr);
            kel_named_free(out);
        });
    }
}

TEST_F(UtilTest, KnowsIpv4Addresses) {
    for (const char *valid : {"192.168.1.1", "10.0.0.1%eth0", "0.0.0.0", "255.255.255.255", "1.20.199.249"}) {
        EXPECT_EQ(1, tvk_map_is_valid_ipv4_addr(valid)) << valid;
    }
    for (const char *invalid : {"192.168.01.1", "256.1.1.1", "1.2.3", "1.2.3.4.5", "", "1.2.3.4 ", "1.2.3.4%",
                                "a.b.c.d", "1.2.3.4%eth0/1", "1,2,3,4"}) {
        EXPECT_EQ(0, tvk_map_is_valid_ipv4_addr(invalid)) << invalid;
    }
    EXPECT_EQ(0, tvk_map_is_valid_ipv4_addr(nullptr));
}

TEST_F(UtilTest, SplitsPrefixes) {
    const struct {
        const char *prefix, *address, *length;
    } kCases[] = {{"10.1.0.0/16", "10.1.0.0", "16"},
                  {"10.1.0.0", "10.1.0.0", nullptr},
                  {"//a/b", "a", "/a/b"},
                  {"/", nullptr, ""}};
    for (const auto &test : kCases) {
        std::string text = test.prefix;
        EXPECT_STREQ(test.length, tvk_map_get_ip_address_len_info(text.data())) << test.prefix;
        EXPECT_STREQ(test.address, tvk_map_get_ip_address_info(text.data())) << test.prefix;
    }
    EXPECT_EQ(nullptr, tvk_map_get_ip_address_info(nullptr));
}

TEST_F(UtilTest, CutsPathsIntoArrays) {
    const struct {
        const char *path;
        std::uint32_t max_index;
        int result;
        std::vector<std::string> tokens;
    } kCases[] = {
        {"a/b/c", 1, 0, {"a", "b"}},   {"a/b/c", 5, 1, {"a", "b", "c"}},   {"a/b", 1, 0, {"a", "b"}}, {"//", 5, 1, {}},
        {"a/b", 0xffffffff, 0, {"a"}}, {"a/b", 0x7fffffff, 1, {"a", "b"}},
    };
    for (const auto &test : kCases) {
        std::string path = test.path;
        char *tokens[4] = {};
        std::uint32_t count = 1;  // behind what is there already
        EXPECT_EQ(test.result, tvk_map_str_to_array(path.data(), tokens, test.max_index, &count)) << test.path;
        EXPECT_EQ(test.tokens, std::vector<std::string>(tokens + 1, tokens + count)) << test.path;
    }
    EXPECT_EQ(1, tvk_map_str_to_array(nullptr, nullptr, 1, nullptr));
}

TEST_F(UtilTest, AnswersSmallQuestions) {
    EXPECT_EQ(0x2u, tvk_map_set_bitmap(0, 33));
    EXPECT_EQ(0x80000001u, tvk_map_set_bitmap(1, -1));
    std::string name = "a-PRIVATE-model";
    EXPECT_EQ(1, tvk_map_is_private_model(name.data()));
    name = "a-private-model";
    EXPECT_EQ(0, tvk_map_is_private_model(name.data()));
}

}  // namespace
}  // namespace tvk::test
