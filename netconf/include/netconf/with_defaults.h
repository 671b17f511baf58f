// The with-defaults modes as RFC 6243 writes them.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "netconf/operation.h"
#include "tvk_map_session.h"

namespace tvk::netconf {

// The first one is TVK_WITH_DEFAULTS_REPORT_ALL.
inline constexpr std::array<const char *, 4> kWithDefaultsNames{"report-all", "report-all-tagged", "trim", "explicit"};

inline std::optional<uint8_t> with_defaults_mode(std::string_view name) {
    const std::optional<uint32_t> index = index_of_name(kWithDefaultsNames, name);
    return index ? std::optional(static_cast<uint8_t>(TVK_WITH_DEFAULTS_REPORT_ALL + *index)) : std::nullopt;
}

inline std::string unknown_with_defaults(const std::string &name) {
    return "with-defaults mode \"" + name + "\" is none of report-all, report-all-tagged, trim, explicit";
}

}  // namespace tvk::netconf
