#include <atomic>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include "tvk_diagnostics.h"
#include "tvk_platform_control.h"

namespace {

struct Sink {
    tvk_platform_sink_fp receive = nullptr;
    void *user = nullptr;

    void write(const char *line) const {
        if (receive != nullptr) {
            receive(user, line);
        } else {
            std::fprintf(stderr, "%s\n", line);
        }
    }
};

struct FreeDeleter {
    void operator()(void *block) const { std::free(block); }
};

constexpr std::int64_t kLogOff = -1;

constinit std::atomic<std::int64_t> highest_logged_level{kLogOff};
constinit std::atomic<std::uint32_t> next_trace_index{1};
constinit Sink debug_log;
constinit Sink trace;

// A line that has no memory to be long in is written as far as it fits.
__attribute__((format(printf, 2, 0))) void write_formatted(const Sink &sink, const char *format, va_list arguments) {
    char line[512];
    va_list again;
    va_copy(again, arguments);
    const int length = std::vsnprintf(line, sizeof line, format, arguments);
    std::unique_ptr<char, FreeDeleter> long_line;
    if (length >= static_cast<int>(sizeof line)) {
        const std::size_t size = static_cast<std::size_t>(length) + 1;
        long_line.reset(static_cast<char *>(std::malloc(size)));
        if (long_line) {
            std::vsnprintf(long_line.get(), size, format, again);
        }
    }
    va_end(again);
    if (length >= 0) {
        sink.write(long_line ? long_line.get() : line);
    }
}

}  // namespace

int tvk_debug_should_log(void *const *, uint32_t level) {
    return level <= highest_logged_level.load(std::memory_order_relaxed) ? 1 : 0;
}

void _kel_dt_log_filter_adv(void *, uint32_t, uint32_t, uint32_t, uint32_t, uint32_t, uint32_t *, const char *format,
                            ...) {
    if (highest_logged_level.load(std::memory_order_relaxed) == kLogOff) {
        return;
    }
    va_list arguments;
    va_start(arguments, format);
    write_formatted(debug_log, format, arguments);
    va_end(arguments);
}

uint32_t ret_nc_tvk_trace_index_incr(void) {
    return next_trace_index.fetch_add(1, std::memory_order_relaxed);
}

void _lstrace(void *, uint64_t, const char *line) {
    trace.write(line);
}

void tvk_platform_set_debug_log(int enabled, uint32_t level, tvk_platform_sink_fp sink, void *user) {
    highest_logged_level = enabled != 0 ? std::int64_t{level} : kLogOff;
    debug_log = {sink, user};
}

void tvk_platform_set_trace(tvk_platform_sink_fp sink, void *user) {
    trace = {sink, user};
}

void tvk_platform_set_trace_index(uint32_t index) {
    next_trace_index = index;
}
