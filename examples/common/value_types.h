// The types of leaves in the published models. A value that its type does not have is refused.
#ifndef EXAMPLES_COMMON_VALUE_TYPES_H
#define EXAMPLES_COMMON_VALUE_TYPES_H

#include <cstdint>

#include "tvk_map_xpath.h"

namespace mapping {

// Holds a value in another form.
using Scratch = char[TVK_MAP_XPATH_MAX_VALUE];

// A type of values.
struct ValueType {
    const char *name;  // stands in messages: "'banana' is no uint16"
    bool (*accepts)(const char *value);
    // Returns the canonical form of a value that has several, in scratch. It is null when values have one form.
    const char *(*canonical)(const char *value, Scratch &scratch) = nullptr;
};

// Reads a number up to max: digits, and perhaps a sign before them. Returns false when value is none.
bool read_number(const char *value, uint64_t max, uint64_t &number);

// Tells whether value is an address of the default zone.
bool is_ipv4_address(const char *value);
bool is_ipv6_address(const char *value);
bool is_mac_address(const char *value);
bool is_boolean(const char *value);

// Tells whether value has at least and at most so many characters of UTF-8.
bool is_text(const char *value, std::size_t least, std::size_t most);

// Returns a number without sign and leading zeros, in scratch.
const char *canonical_number(const char *value, Scratch &scratch);

template <uint64_t kMax>
bool is_number(const char *value) {
    uint64_t number = 0;
    return read_number(value, kMax, number);
}

template <std::size_t kLeast, std::size_t kMost>
bool is_text_of(const char *value) {
    return is_text(value, kLeast, kMost);
}

inline constexpr ValueType kUint16 = {"uint16", is_number<UINT16_MAX>, canonical_number};
inline constexpr ValueType kUint32 = {"uint32", is_number<UINT32_MAX>, canonical_number};
inline constexpr ValueType kUint64 = {"uint64", is_number<UINT64_MAX>, canonical_number};
inline constexpr ValueType kIpv4PrefixLength = {"prefix length from 0 to 32", is_number<32>, canonical_number};
inline constexpr ValueType kIpv6PrefixLength = {"prefix length from 0 to 128", is_number<128>, canonical_number};
inline constexpr ValueType kBoolean = {"boolean", is_boolean};
inline constexpr ValueType kIpv4Address = {"IPv4 address", is_ipv4_address};
inline constexpr ValueType kIpv6Address = {"IPv6 address", is_ipv6_address};
inline constexpr ValueType kMacAddress = {"MAC address", is_mac_address};
inline constexpr ValueType kString = {"string", is_text_of<0, SIZE_MAX>};

}  // namespace mapping

#endif
