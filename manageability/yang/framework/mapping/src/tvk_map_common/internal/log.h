// Messages to the debug log and to the trace. Each sink is asked on its own, and a message is formatted only for a sink
// that is on.
//
// The context at a log site is never null: an operation asserts it before it logs.
#ifndef TVK_MAP_INTERNAL_LOG_H
#define TVK_MAP_INTERNAL_LOG_H

#include <cstdint>

#include "tvk_diagnostics.h"
#include "tvk_map_types.h"

namespace tvk {

// Appends one line to the trace and cuts it to the size of a trace line.
__attribute__((cold, format(printf, 2, 3))) void trace_line(void *trace_handle, const char *format, ...);

// Returns a text as messages show it; null becomes "(null)".
inline const char *shown(const char *text) {
    return text != nullptr ? text : "(null)";
}

// The compiler takes code that reaches a cold function for seldom run, and moves it out of the way of the rest. The
// call stays out of line for that.
[[gnu::cold, gnu::noinline]] inline bool should_log_error(void *const *log_filter) {
    return tvk_debug_should_log(log_filter, TVK_LOG_LEVEL_ERR) != 0;
}

inline bool should_log_trace(void *const *log_filter) {
    return tvk_debug_should_log(log_filter, TVK_LOG_LEVEL_TRC) != 0;
}

// Returns whether a TRC message would reach a sink; false for a null context.
inline bool is_tracing(tvk_map_ctx ctx) {
    return ctx != nullptr && (ctx->trace_enabled != 0 || should_log_trace(&ctx->log_filter));
}

}  // namespace tvk

// Messages are a third of the code and are hardly ever written, so the compiler is told to keep them apart from the
// code that runs.
#define TVK_SELDOM_(condition) __builtin_expect_with_probability((condition), 0, 1.0)

// Each message site has a site word of its own, in which the debug log may keep its filtering decision.
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

// Operators read traces. A step whose own name tells them nothing logs under the name of the exported operation.
#define TVK_ERR_AS(operation, ctx, body, ...) \
    TVK_LOG_(ctx, should_log_error, err_log_handle, "ERR", operation, body __VA_OPT__(, ) __VA_ARGS__)
#define TVK_TRC_AS(operation, ctx, body, ...) \
    TVK_LOG_(ctx, should_log_trace, trc_log_handle, "TRC", operation, body __VA_OPT__(, ) __VA_ARGS__)

#define TVK_ERR(ctx, body, ...) TVK_ERR_AS(__func__, ctx, body __VA_OPT__(, ) __VA_ARGS__)
#define TVK_TRC(ctx, body, ...) TVK_TRC_AS(__func__, ctx, body __VA_OPT__(, ) __VA_ARGS__)

#endif
