// Splitting paths with quoted keys, for peers that have no such paths of their own.
#pragma once

#include <cstring>

namespace tvk::bench {

struct Step {
    const char *name;
    const char *key;  // null when the step has none
    const char *value;
};

inline constexpr int kMaxSteps = 16;

// Splits the path into steps, whose texts lie in the buffer. The buffer is as large as the path at least. Returns the
// number of steps.
inline int split_path(const char *path, char *buffer, Step *steps) {
    std::memcpy(buffer, path, std::strlen(path) + 1);
    char *at = buffer;
    int count = 0;
    while (*at == '/') {
        *at++ = '\0';
        Step &step = steps[count++];
        step = {at, nullptr, nullptr};
        for (; *at != '\0' && *at != '/' && *at != '['; ++at) {
            if (*at == ':') {
                step.name = at + 1;
            }
        }
        if (*at == '[') {
            *at++ = '\0';
            step.key = at;
            at = std::strchr(at, '=');
            *at = '\0';
            step.value = at += 2;  // behind the quote
            at = std::strchr(at, '\'');
            *at = '\0';
            at += 2;  // behind the bracket
        }
    }
    return count;
}

}  // namespace tvk::bench
