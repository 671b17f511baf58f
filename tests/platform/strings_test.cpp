#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <string>

#include "tvk_string.h"

namespace {

enum class Operation { kCopy, kAppend, kCopyAtMost, kAppendAnnexK };

struct Case {
    const char *why;
    Operation operation;
    std::string before;  // all of the destination; its length is the size
    const char *source;
    std::size_t count;  // of strncpy_s
    bool succeeds;
    std::string after;  // as text
};

int call(const Case &row, char *destination) {
    const std::size_t size = row.before.size();
    switch (row.operation) {
        case Operation::kCopy:
            return tvk_strcpy_s("test", destination, size, row.source);
        case Operation::kAppend:
            return tvk_strcat_s("test", destination, size, row.source);
        case Operation::kCopyAtMost:
            return strncpy_s(destination, size, row.source, row.count);
        default:
            return strcat_s(destination, size, row.source);
    }
}

std::string buffer(const char *text, std::size_t size) {
    std::string whole(text);
    whole.resize(size, '\0');
    return whole;
}

TEST(Strings, NeverWriteBehindTheDestinationNorTruncate) {
    const Case cases[] = {
        {"fits exactly", Operation::kCopy, "12345", "abcd", 0, true, "abcd"},
        {"one too long", Operation::kCopy, "12345", "abcde", 0, false, ""},
        {"no source", Operation::kCopy, "12345", nullptr, 0, false, ""},
        {"fits exactly", Operation::kAppend, buffer("ab", 5), "cd", 0, true, "abcd"},
        {"one too long", Operation::kAppend, buffer("ab", 5), "cde", 0, false, "ab"},
        {"no source", Operation::kAppend, buffer("ab", 5), nullptr, 0, false, "ab"},
        {"no terminator to append at", Operation::kAppend, "12345", "", 0, false, "12345"},
        {"whole source", Operation::kCopyAtMost, "12345", "abcd", 9, true, "abcd"},
        {"part of a longer source", Operation::kCopyAtMost, "12345", "abcdefgh", 4, true, "abcd"},
        {"nothing", Operation::kCopyAtMost, "12345", "abcd", 0, true, ""},
        {"part that is too long", Operation::kCopyAtMost, "12345", "abcdefgh", 5, false, ""},
        {"absurd count", Operation::kCopyAtMost, "12345", "abcd", SIZE_MAX, false, ""},
        {"no source", Operation::kCopyAtMost, "12345", nullptr, 2, false, ""},
        {"fits exactly", Operation::kAppendAnnexK, buffer("ab", 5), "cd", 0, true, "abcd"},
        {"one too long", Operation::kAppendAnnexK, buffer("ab", 5), "cde", 0, false, ""},
        {"no source", Operation::kAppendAnnexK, buffer("ab", 5), nullptr, 0, false, ""},
        {"no terminator to append at", Operation::kAppendAnnexK, "12345", "x", 0, false, ""},
    };
    for (const Case &row : cases) {
        SCOPED_TRACE(std::to_string(static_cast<int>(row.operation)) + ": " + row.why);
        const std::string guard = "guard";
        std::string whole = row.before + guard;
        EXPECT_EQ(row.succeeds, call(row, whole.data()) == 0);
        EXPECT_EQ(row.after, whole.substr(0, strnlen(whole.c_str(), row.before.size())));
        EXPECT_EQ(guard, whole.substr(row.before.size()));
    }
}

TEST(Strings, RefuseAnUnusableDestination) {
    char untouched[] = "x";
    EXPECT_NE(0, tvk_strcpy_s("test", untouched, 0, "a"));
    EXPECT_NE(0, tvk_strcat_s("test", untouched, 0, "a"));
    EXPECT_NE(0, strncpy_s(untouched, 0, "a", 1));
    EXPECT_NE(0, strcat_s(untouched, 0, "a"));
    EXPECT_STREQ("x", untouched);
    EXPECT_NE(0, tvk_strcpy_s("test", nullptr, 5, "a"));
    EXPECT_NE(0, tvk_strcat_s("test", nullptr, 5, "a"));
    EXPECT_NE(0, strncpy_s(nullptr, 5, "a", 1));
    EXPECT_NE(0, strcat_s(nullptr, 5, "a"));
}

}  // namespace
