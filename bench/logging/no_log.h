// Included before everything else, this header makes the library's messages empty, and no sink wants one. The arguments
// of a message are still compiled, and never evaluated.
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
