// Messages. Each is offered to the debug log and to the trace, independently, and formatted only for a sink that is
// on.
//
// The context at a log site is never null: operations assert it before they come to one.
#ifndef TVK_MAP_INTERNAL_LOG_H
#define TVK_MAP_INTERNAL_LOG_H

#include <cstdint>

#include "tvk_diagnostics.h"
#include "tvk_map_types.h"

namespace tvk {

// Appends one line to the trace, cut to what a trace line holds.
__attribute__((cold, format(printf, 2, 3))) void trace_line(void *trace_handle, const char *format, ...);

// A text as messages show it: null has a spelling of its own.
inline const char *shown(const char *text) {
    return text != nullptr ? text : "(null)";
}

// Asked for out of line: the compiler takes what comes here for seldom run, and keeps it out of the way of the rest.
[[gnu::cold, gnu::noinline]] inline bool should_log_error(void *const *log_filter) {
    return tvk_debug_should_log(log_filter, TVK_LOG_LEVEL_ERR) != 0;
}

inline bool should_log_trace(void *const *log_filter) {
    return tvk_debug_should_log(log_filter, TVK_LOG_LEVEL_TRC) != 0;
}

// Whether a TRC message would reach a sink.
inline bool is_tracing(tvk_map_ctx ctx) {
    return ctx != nullptr && (ctx->trace_enabled != 0 || should_log_trace(&ctx->log_filter));
}

}  // namespace tvk

// Messages are a third of the code and hardly ever written: they stand apart from what runs.
#define TVK_SELDOM_(condition) __builtin_expect_with_probability((condition), 0, 1.0)

// The site word is one per message and place; the debug log may keep its filtering decision there.
#define TVK_LOG_(ctx, should_log, handle, name, operation, body, ...)                                                  \
    do {                                                                                                               \
        static std::uint32_t tvk_site_word = 0xffffffffU;                                                              \
        if (TVK_SELDOM_(::tvk::should_log(&(ctx)->log_filter))) {                                                      \
            _kel_dt_log_filter_adv((ctx)->handle, 0, 0, 0, 0, 0, &tvk_site_word, name ": TVK: ctx=%p," body,           \
                                   static_cast<void *>(ctx) __VA_OPT__(, ) __VA_ARGS__);                               \
        }                                                                                                              \
        if (TVK_SELDOM_((ctx)->trace_enabled != 0)) {                                                                  \
            ::tvk::trace_line((ctx)->trace_handle, "#%u: " name ": %s:%d ctx=%p," body, ret_nc_tvk_trace_index_incr(), \
                              operation, __LINE__, static_cast<void *>(ctx) __VA_OPT__(, ) __VA_ARGS__);               \
        }                                                                                                              \
    } while (false)

// Operators read traces: a message of a step whose name says nothing outside this code names the exported operation.
#define TVK_ERR_AS(operation, ctx, body, ...) \
    TVK_LOG_(ctx, should_log_error, err_log_handle, "ERR", operation, body __VA_OPT__(, ) __VA_ARGS__)
#define TVK_TRC_AS(operation, ctx, body, ...) \
    TVK_LOG_(ctx, should_log_trace, trc_log_handle, "TRC", operation, body __VA_OPT__(, ) __VA_ARGS__)

#define TVK_ERR(ctx, body, ...) TVK_ERR_AS(__func__, ctx, body __VA_OPT__(, ) __VA_ARGS__)
#define TVK_TRC(ctx, body, ...) TVK_TRC_AS(__func__, ctx, body __VA_OPT__(, ) __VA_ARGS__)

#endif
