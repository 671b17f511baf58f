// Status codes by name: EXPECT_STATUS(TVK_ERR_INVALID, call) prints "TVK_ERR_INVALID (0xaaf2a000)".
#ifndef TVK_TEST_STATUS_H
#define TVK_TEST_STATUS_H

#include <gtest/gtest.h>

#include <cstdio>
#include <ostream>
#include <utility>

#include "tvk_status.h"

namespace tvk::test {

struct Status {
    qerrno code;
    bool operator==(const Status &) const = default;
};

#define TVK_NAMED(code) std::pair(code, #code)
inline constexpr std::pair<qerrno, const char *> kStatusNames[] = {TVK_NAMED(TVK_OK),
                                                                   TVK_NAMED(TVK_ERR_NOT_FOUND),
                                                                   TVK_NAMED(TVK_ERR_INVALID),
                                                                   TVK_NAMED(TVK_ERR_NO_MEMORY),
                                                                   TVK_NAMED(TVK_ERR_NAMESPACE),
                                                                   TVK_NAMED(TVK_ERR_LIST_KEY),
                                                                   TVK_NAMED(TVK_SKIP_NODE),
                                                                   TVK_NAMED(TVK_ERR_KEY_OPERATION),
                                                                   TVK_NAMED(TVK_ERR_UNSUPPORTED),
                                                                   TVK_NAMED(TVK_ERR_NOT_PRESENT),
                                                                   TVK_NAMED(TVK_ERR_PRESENT)};
#undef TVK_NAMED

inline std::ostream &operator<<(std::ostream &stream, const Status &status) {
    for (const auto &[code, name] : kStatusNames) {
        stream << (code == status.code ? name : "");
    }
    char hex[16];
    std::snprintf(hex, sizeof hex, " (0x%08x)", status.code);
    return stream << hex;
}

}  // namespace tvk::test

#define EXPECT_STATUS(expected, call) EXPECT_EQ(::tvk::test::Status{expected}, ::tvk::test::Status{call})
#define ASSERT_STATUS(expected, call) ASSERT_EQ(::tvk::test::Status{expected}, ::tvk::test::Status{call})

#endif
