// The debug log and the trace, to a sink or to standard error.
#include <atomic>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "tvk_diagnostics.h"
#include "tvk_platform_control.h"

namespace {

// The length of the special character that text begins with, 0 for none: a control character of C0, DEL, a control
// character of C1 in UTF-8, or a backslash.
std::size_t special_length(const char *text) {
    const auto first = static_cast<unsigned char>(text[0]);
    const auto second = static_cast<unsigned char>(first != '\0' ? text[1] : 0);
    if (first == 0xC2 && second >= 0x80 && second < 0xA0) {
        return 2;
    }
    return (first != '\0' && first < 0x20) || first == 0x7F || first == '\\' ? 1 : 0;
}

std::size_t plain_length(const char *text) {
    std::size_t length = 0;
    while (text[length] != '\0' && special_length(text + length) == 0) {
        ++length;
    }
    return length;
}

void print_special(const char *text, std::size_t length) {
    constexpr char kNamed[] = "\n\r\t\\";
    constexpr char kNames[] = "nrt\\";
    if (const char *named = std::strchr(kNamed, *text); named != nullptr) {
        std::fprintf(stderr, "\\%c", kNames[named - kNamed]);
        return;
    }
    for (std::size_t i = 0; i < length; ++i) {
        std::fprintf(stderr, "\\x%02x", static_cast<unsigned>(static_cast<unsigned char>(text[i])));
    }
}

// A message is one line, whatever text of a client it quotes. The few line breaks of the library's own are escaped as
// well: nobody can tell them from the others in a finished text.
void print_line(const char *line) {
    if (line[plain_length(line)] == '\0') {
        std::fprintf(stderr, "%s\n", line);
        return;
    }
    flockfile(stderr);
    while (*line != '\0') {
        const std::size_t plain = plain_length(line);
        std::fwrite(line, 1, plain, stderr);
        const std::size_t special = special_length(line + plain);
        if (special > 0) {
            print_special(line + plain, special);
        }
        line += plain + special;
    }
    std::fputc('\n', stderr);
    funlockfile(stderr);
}

struct Sink {
    tvk_platform_sink_fp receive = nullptr;
    void *user = nullptr;

    void write(const char *line) const {
        if (receive != nullptr) {
            receive(user, line);
        } else {
            print_line(line);
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

// Without memory for a long line, as much of it is written as fits.
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
