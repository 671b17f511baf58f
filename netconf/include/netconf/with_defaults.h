// Names the with-defaults modes as RFC 6243 writes them.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "netconf/operation.h"
#include "tvk_map_session.h"

namespace tvk::netconf {

// The names in the order of the modes. The first one is TVK_WITH_DEFAULTS_REPORT_ALL.
inline constexpr std::array<const char *, 4> kWithDefaultsNames{"report-all", "report-all-tagged", "trim", "explicit"};

// Returns the mode of that name, enum tvk_with_defaults_mode, or nothing.
inline std::optional<uint8_t> with_defaults_mode(std::string_view name) {
    const std::optional<uint32_t> index = index_of_name(kWithDefaultsNames, name);
    return index ? std::optional(static_cast<uint8_t>(TVK_WITH_DEFAULTS_REPORT_ALL + *index)) : std::nullopt;
}

// Returns the message for a name that is none of a mode.
inline std::string unknown_with_defaults(const std::string &name) {
    return "with-defaults mode \"" + name + "\" is none of report-all, report-all-tagged, trim, explicit";
}

}  // namespace tvk::netconf
