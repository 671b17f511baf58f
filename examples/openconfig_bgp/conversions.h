// Values in the form of the other side. Those that take a scratch buffer may answer with it; null says that the other
// side has no such value.
#ifndef OPENCONFIG_BGP_CONVERSIONS_H
#define OPENCONFIG_BGP_CONVERSIONS_H

#include "leaf_rules.h"

namespace bgp {

using namespace mapping;

// An IPv4 address, and its number with the first byte as the highest.
const char *number_of_address(const char *address, Scratch &scratch);
const char *address_of_number(const char *number, Scratch &scratch);

// An IPv4 address, and the prefix of the interface that has it.
const char *prefix_of_address(const char *address, Scratch &scratch);
const char *address_of_prefix(const char *prefix, Scratch &scratch);

// Bits per second, and kilobits per second. What is no whole number of kilobits has no native form.
const char *kilobits_of_bits(const char *bits, Scratch &scratch);
const char *bits_of_kilobits(const char *kilobits, Scratch &scratch);

// An AS number, alike on both sides but for 0, which is reserved.
const char *as_number(const char *number, Scratch &scratch);

// Identities of address families.
inline constexpr ValuePair kFamilies[] = {{"IPV4_UNICAST", "inet"},
                                          {"IPV6_UNICAST", "inet6"},
                                          {"L3VPN_IPV4_UNICAST", "vpn-inet"},
                                          {"L3VPN_IPV6_UNICAST", "vpn-inet6"},
                                          {nullptr, nullptr}};

}  // namespace bgp

#endif
