// Converts values to the form of the other side. A result may stand in scratch. Null says that the other side has no
// such value.
#ifndef OPENCONFIG_BGP_CONVERSIONS_H
#define OPENCONFIG_BGP_CONVERSIONS_H

#include "leaf_rules.h"

namespace bgp {

using namespace mapping;

// These convert between an IPv4 address and its number, with the first byte as the highest.
const char *number_of_address(const char *address, Scratch &scratch);
const char *address_of_number(const char *number, Scratch &scratch);

// These convert between an IPv4 address and the prefix of the interface that has it.
const char *prefix_of_address(const char *address, Scratch &scratch);
const char *address_of_prefix(const char *prefix, Scratch &scratch);

// These convert between bits and kilobits per second. Only whole kilobits have a native form.
const char *kilobits_of_bits(const char *bits, Scratch &scratch);
const char *bits_of_kilobits(const char *kilobits, Scratch &scratch);

// Returns an AS number, which is the same on both sides, or null for 0, which is reserved.
const char *as_number(const char *number, Scratch &scratch);

// The identities of address families, with their native names.
inline constexpr ValuePair kFamilies[] = {{"IPV4_UNICAST", "inet"},
                                          {"IPV6_UNICAST", "inet6"},
                                          {"L3VPN_IPV4_UNICAST", "vpn-inet"},
                                          {"L3VPN_IPV6_UNICAST", "vpn-inet6"},
                                          {nullptr, nullptr}};

}  // namespace bgp

#endif
