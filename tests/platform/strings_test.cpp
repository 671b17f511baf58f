#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <string>

#include "tvk_string.h"

namespace {

using Call = int (*)(char *destination, std::size_t size, const char *source, std::size_t count);

int copy(char *to, std::size_t size, const char *source, std::size_t) {
    return tvk_strcpy_s("test", to, size, source);
}
int append(char *to, std::size_t size, const char *source, std::size_t) {
    return tvk_strcat_s("test", to, size, source);
}
int append_annex_k(char *to, std::size_t size, const char *source, std::size_t) {
    return strcat_s(to, size, source);
}

TEST(Strings, NeverWriteBehindTheDestinationNorTruncate) {
    const std::string full = "12345", ab("ab\0\0", 5);  // all of the destination: the length is the size
    const struct {
        Call call;
        std::string before;
        const char *source;
        std::size_t count;  // of strncpy_s
        bool succeeds;
        const char *after;
    } cases[] = {
        {copy, full, "abcd", 0, true, "abcd"},
        {copy, full, "abcde", 0, false, ""},
        {copy, full, nullptr, 0, false, ""},
        {append, ab, "cd", 0, true, "abcd"},
        {append, ab, "cde", 0, false, "ab"},
        {append, ab, nullptr, 0, false, "ab"},
        {append, full, "", 0, false, "12345"},
        {strncpy_s, full, "abcd", 9, true, "abcd"},
        {strncpy_s, full, "abcdefgh", 4, true, "abcd"},
        {strncpy_s, full, "abcd", 0, true, ""},
        {strncpy_s, full, "abcdefgh", 5, false, ""},
        {strncpy_s, full, "abcd", SIZE_MAX, false, ""},
        {strncpy_s, full, nullptr, 2, false, ""},
        {append_annex_k, ab, "cd", 0, true, "abcd"},
        {append_annex_k, ab, "cde", 0, false, ""},
        {append_annex_k, ab, nullptr, 0, false, ""},
        {append_annex_k, full, "x", 0, false, ""},
    };
    for (const auto &row : cases) {
        SCOPED_TRACE(&row - cases);
        std::string whole = row.before + "guard";
        EXPECT_EQ(row.succeeds, row.call(whole.data(), row.before.size(), row.source, row.count) == 0);
        EXPECT_EQ(row.after, whole.substr(0, strnlen(whole.c_str(), row.before.size())));
        EXPECT_EQ("guard", whole.substr(row.before.size()));
    }
    for (const Call call : {&copy, &append, &append_annex_k, Call{strncpy_s}}) {
        char untouched[] = "x";
        EXPECT_NE(0, call(untouched, 0, "a", 1));
        EXPECT_STREQ("x", untouched);
        EXPECT_NE(0, call(nullptr, 5, "a", 1));
    }
}

}  // namespace
