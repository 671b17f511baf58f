// Writing one line to the trace.
#include "tvk_map_common/internal/log.h"

#include <cstdarg>
#include <cstdio>

namespace tvk {

void trace_line(void *trace_handle, const char *format, ...) {
    constexpr std::uint64_t kTraceAttributes = 0x10101000000;
    constexpr std::size_t kTraceLineSize = 250;

    char line[kTraceLineSize];
    std::va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(line, sizeof line, format, arguments);
    va_end(arguments);
    _lstrace(trace_handle, kTraceAttributes, line);
}

}  // namespace tvk
