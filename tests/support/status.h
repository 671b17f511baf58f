// Status codes by name: EXPECT_STATUS(TVK_ERR_INVALID, call) prints "TVK_ERR_INVALID".
#ifndef TVK_TEST_STATUS_H
#define TVK_TEST_STATUS_H

#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <utility>

#include "tvk_status.h"

namespace tvk::test {

struct Status {
    qerrno code;
    bool operator==(const Status &) const = default;
    std::string text() const;
};

#define TVK_NAMED(name) std::pair(TVK_##name, #name)
inline constexpr std::pair<qerrno, const char *> kStatusNames[] = {TVK_NAMED(OK),
                                                                   TVK_NAMED(ERR_NOT_FOUND),
                                                                   TVK_NAMED(ERR_INVALID),
                                                                   TVK_NAMED(ERR_NO_MEMORY),
                                                                   TVK_NAMED(ERR_NAMESPACE),
                                                                   TVK_NAMED(ERR_LIST_KEY),
                                                                   TVK_NAMED(SKIP_NODE),
                                                                   TVK_NAMED(ERR_KEY_OPERATION),
                                                                   TVK_NAMED(ERR_UNSUPPORTED),
                                                                   TVK_NAMED(ERR_NOT_PRESENT),
                                                                   TVK_NAMED(ERR_PRESENT)};
#undef TVK_NAMED

inline std::string Status::text() const {
    for (const auto &[known, name] : kStatusNames) {
        if (code == known) {
            return name;
        }
    }
    return std::to_string(code);
}

inline std::ostream &operator<<(std::ostream &stream, const Status &status) {
    return stream << status.text();
}

}  // namespace tvk::test

#define EXPECT_STATUS(expected, call) EXPECT_EQ(::tvk::test::Status{expected}, ::tvk::test::Status{call})
#define ASSERT_STATUS(expected, call) ASSERT_EQ(::tvk::test::Status{expected}, ::tvk::test::Status{call})

#endif
