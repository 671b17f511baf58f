// The bounded string operations. None of them truncates.
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "tvk_string.h"

namespace {

// Copies length characters and a terminator when they fit; else leaves the destination as it is.
bool copy_if_fits(char *destination, std::size_t size, const char *source, std::size_t length) {
    if (length >= size) {
        return false;
    }
    std::memcpy(destination, source, length);
    destination[length] = '\0';
    return true;
}

bool append_if_fits(char *destination, std::size_t size, const char *source) {
    const std::size_t used = strnlen(destination, size);
    return copy_if_fits(destination + used, size - used, source, strnlen(source, size - used));
}

bool is_usable(const char *destination, std::size_t size) {
    return destination != nullptr && size != 0 && size <= SIZE_MAX / 2;
}

int fail_empty(char *destination, int error) {
    destination[0] = '\0';
    return error;
}

}  // namespace

int tvk_strcpy_s(const char *, char *destination, size_t size, const char *source) {
    return strncpy_s(destination, size, source, SIZE_MAX / 2);
}

int tvk_strcat_s(const char *, char *destination, size_t size, const char *source) {
    if (!is_usable(destination, size) || source == nullptr) {
        return EINVAL;
    }
    return append_if_fits(destination, size, source) ? 0 : ERANGE;
}

int strncpy_s(char *destination, size_t size, const char *source, size_t count) {
    if (!is_usable(destination, size)) {
        return EINVAL;
    }
    if (source == nullptr || count > SIZE_MAX / 2) {
        return fail_empty(destination, EINVAL);
    }
    const std::size_t length = strnlen(source, count < size ? count : size);
    return copy_if_fits(destination, size, source, length) ? 0 : fail_empty(destination, ERANGE);
}

int strcat_s(char *destination, size_t size, const char *source) {
    if (!is_usable(destination, size)) {
        return EINVAL;
    }
    if (source == nullptr) {
        return fail_empty(destination, EINVAL);
    }
    return append_if_fits(destination, size, source) ? 0 : fail_empty(destination, ERANGE);
}
