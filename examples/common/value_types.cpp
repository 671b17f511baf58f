// Checks the forms of values.
#include "value_types.h"

#include <arpa/inet.h>

#include <charconv>
#include <cstdio>
#include <cstring>

namespace mapping {

bool read_number(const char *value, uint64_t max, uint64_t &number) {
    const bool is_negative = *value == '-';
    const char *digits = value + (is_negative || *value == '+' ? 1 : 0);
    const char *end = digits + std::strlen(digits);
    const auto [stop, error] = std::from_chars(digits, end, number);
    return error == std::errc{} && stop == end && number <= max && !(is_negative && number != 0);
}

bool is_ipv4_address(const char *value) {
    unsigned char bytes[4];
    return inet_pton(AF_INET, value, bytes) == 1;
}

bool is_ipv6_address(const char *value) {
    unsigned char bytes[16];
    return std::strchr(value, '.') == nullptr && inet_pton(AF_INET6, value, bytes) == 1;
}

bool is_mac_address(const char *value) {
    constexpr std::size_t kLength = 17;
    for (std::size_t i = 0; i < kLength; ++i) {
        const bool is_fine = i % 3 == 2
                                 ? value[i] == ':'
                                 : value[i] != '\0' && std::strchr("0123456789abcdefABCDEF", value[i]) != nullptr;
        if (!is_fine) {
            return false;
        }
    }
    return value[kLength] == '\0';
}

bool is_boolean(const char *value) {
    return std::strcmp(value, "true") == 0 || std::strcmp(value, "false") == 0;
}

bool is_text(const char *value, std::size_t least, std::size_t most) {
    std::size_t length = 0;
    for (; *value != '\0'; ++value) {
        length +=
            (static_cast<unsigned char>(*value) & 0xc0) != 0x80 ? 1 : 0;  // counts the first byte of each character
    }
    return least <= length && length <= most;
}

const char *canonical_number(const char *value, Scratch &scratch) {
    uint64_t number = 0;
    read_number(value, UINT64_MAX, number);
    std::snprintf(scratch, sizeof scratch, "%llu", static_cast<unsigned long long>(number));
    return scratch;
}

}  // namespace mapping
