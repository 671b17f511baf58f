// Included before everything else: the library's messages are then empty, and no sink wants one. What a message
// mentions is still compiled, and never run.
#include "tvk_diagnostics.h"

#define tvk_debug_should_log(log_filter, level) (static_cast<void>(log_filter), 0)
#include "tvk_map_common/internal/log.h"

#undef TVK_LOG_
#define TVK_LOG_(ctx, should_log, handle, name, operation, body, ...)                     \
    do {                                                                                  \
        if (false) {                                                                      \
            ::tvk::trace_line((ctx)->trace_handle, name body __VA_OPT__(, ) __VA_ARGS__); \
            static_cast<void>(operation);                                                 \
        }                                                                                 \
    } while (false)
