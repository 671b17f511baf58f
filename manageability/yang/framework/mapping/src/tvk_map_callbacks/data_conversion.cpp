// Conversions of leaf values between native units and those of YANG.
#include <cinttypes>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "kel_memory.h"
#include "tvk_map_util.h"

namespace tvk {

namespace {

// An output of this size holds any unsigned 32-bit number, and the 20 digits of a 64-bit one without its terminator.
constexpr std::size_t kOutputSize = 20;

char *allocate_output() {
    return static_cast<char *>(kel_named_calloc_(1, kOutputSize, "TVK_CONV", 0));
}

}  // namespace

}  // namespace tvk

using namespace tvk;

const struct tvk_map_data_conv_cb tvk_map_data_conv_cb_tab[TVK_MAP_DATA_CONVERSIONS] = {
    {0, tvk_map_data_kbs_uint32_yang_bps_uint64},
    {1, tvk_map_data_intf_secs_uint32_to_yang_date_and_time},
};

qerrno tvk_map_data_conv(int32_t index, const char *value, char **out) {
    if (index < 0 || index >= TVK_MAP_DATA_CONVERSIONS || value == nullptr || out == nullptr) {
        return TVK_ERR_INVALID;
    }
    const auto length = static_cast<uint32_t>(std::strlen(value));
    return tvk_map_data_conv_cb_tab[index].convert(value, length, out);
}

qerrno tvk_map_data_kbs_uint32_yang_bps_uint64(const char *value, uint32_t, char **out) {
    constexpr int kDecimal = 10;
    constexpr std::uint32_t kBitsPerKilobit = 1000;
    *out = allocate_output();
    if (*out == nullptr) {
        return TVK_ERR_NO_MEMORY;
    }
    // The product has 32 bits and wraps beyond 4294967 kbit/s, which is the range of this conversion.
    const auto kilobits = static_cast<std::uint32_t>(std::strtol(value, nullptr, kDecimal));
    std::snprintf(*out, kOutputSize, "%" PRIu32, kilobits * kBitsPerKilobit);
    return TVK_OK;
}

qerrno tvk_map_data_intf_secs_uint32_to_yang_date_and_time(const char *, uint32_t, char **out) {
    *out = allocate_output();
    return *out != nullptr ? TVK_OK : TVK_ERR_NO_MEMORY;
}
