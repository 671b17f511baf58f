// Converts addresses, rates and numbers.
#include "conversions.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "kel_memory.h"
#include "tvk_string.h"

namespace bgp {

namespace {

const char *write_number(uint64_t number, Scratch &scratch) {
    std::snprintf(scratch, sizeof scratch, "%llu", static_cast<unsigned long long>(number));
    return scratch;
}

constexpr uint64_t kMaxAddress = UINT32_MAX;
constexpr uint64_t kMaxAs = UINT32_MAX;
constexpr uint64_t kBitsInKilobit = 1000;
constexpr uint64_t kMaxKilobits = UINT32_MAX / kBitsInKilobit;  // the library's conversion wraps above

}  // namespace

const char *number_of_address(const char *address, Scratch &scratch) {
    if (!is_ipv4_address(address)) {
        return nullptr;
    }
    uint64_t number = 0;
    for (const char *byte = address; byte != nullptr;) {
        char *end = nullptr;
        number = number << 8 | std::strtoul(byte, &end, 10);
        byte = *end == '.' ? end + 1 : nullptr;
    }
    return write_number(number, scratch);
}

const char *address_of_number(const char *number, Scratch &scratch) {
    uint64_t value = 0;
    if (!read_number(number, kMaxAddress, value)) {
        return nullptr;
    }
    const auto byte = [value](int shift) { return static_cast<unsigned>(value >> shift & 0xff); };
    std::snprintf(scratch, sizeof scratch, "%u.%u.%u.%u", byte(24), byte(16), byte(8), byte(0));
    return scratch;
}

const char *prefix_of_address(const char *address, Scratch &scratch) {
    if (!is_ipv4_address(address)) {
        return nullptr;
    }
    std::snprintf(scratch, sizeof scratch, "%s/32", address);
    return scratch;
}

const char *address_of_prefix(const char *prefix, Scratch &scratch) {
    if (tvk_strcpy_s(__func__, scratch, sizeof scratch, prefix) != 0) {
        return nullptr;
    }
    const char *address = tvk_map_get_ip_address_info(scratch);
    return address != nullptr && is_ipv4_address(address) ? address : nullptr;
}

const char *kilobits_of_bits(const char *bits, Scratch &scratch) {
    uint64_t rate = 0;
    const bool is_whole = read_number(bits, kMaxKilobits * kBitsInKilobit, rate) && rate % kBitsInKilobit == 0;
    return is_whole ? write_number(rate / kBitsInKilobit, scratch) : nullptr;
}

const char *bits_of_kilobits(const char *kilobits, Scratch &scratch) {
    constexpr int32_t kKilobitsToBits = 0;
    uint64_t rate = 0;
    char *bits = nullptr;
    if (!read_number(kilobits, kMaxKilobits, rate) || tvk_map_data_conv(kKilobitsToBits, kilobits, &bits) != TVK_OK) {
        return nullptr;
    }
    const int failed = tvk_strcpy_s(__func__, scratch, sizeof scratch, bits);
    kel_named_free(bits);
    return failed == 0 ? scratch : nullptr;
}

const char *as_number(const char *number, Scratch &scratch) {
    uint64_t value = 0;
    // The number 0 is reserved.
    return read_number(number, kMaxAs, value) && value != 0 ? write_number(value, scratch) : nullptr;
}

}  // namespace bgp
