// IPv4 addresses, and addresses with a prefix length.
#include <regex.h>

#include <cstring>

#include "tvk_map_util.h"

namespace tvk {

namespace {

#define OCTET "([0-9]|[1-9][0-9]|1([0-9][0-9])|2([0-4][0-9])|25[0-5])"
constexpr char kIpv4[] = "^(" OCTET "\\." OCTET "\\." OCTET "\\." OCTET ")(%[[:digit:][:alpha:]]+)?$";
#undef OCTET

// The expression is compiled once for the life of the process. After a failed attempt the next call tries again.
regex_t ipv4_expression;
bool ipv4_compiled = false;

}  // namespace

}  // namespace tvk

using namespace tvk;

int tvk_map_is_valid_ipv4_addr(const char *addr) {
    if (addr == nullptr) {
        return 0;
    }
    if (!ipv4_compiled) {
        ipv4_compiled = regcomp(&ipv4_expression, kIpv4, REG_EXTENDED | REG_NOSUB) == 0;
    }
    return ipv4_compiled && regexec(&ipv4_expression, addr, 0, nullptr, 0) == 0 ? 1 : 0;
}

char *tvk_map_get_ip_address_info(char *prefix) {
    char *rest = nullptr;
    return prefix != nullptr ? strtok_r(prefix, "/", &rest) : nullptr;
}

char *tvk_map_get_ip_address_len_info(char *prefix) {
    char *separator = prefix != nullptr ? std::strchr(prefix, '/') : nullptr;
    return separator != nullptr ? separator + 1 : nullptr;
}
