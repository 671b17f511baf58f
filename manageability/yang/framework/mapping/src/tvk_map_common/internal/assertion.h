// Assertions that are checked in every build: a null context is a programming error of the caller, and NDEBUG does not
// make it harmless.
#ifndef TVK_MAP_INTERNAL_ASSERTION_H
#define TVK_MAP_INTERNAL_ASSERTION_H

// The function of the C library that reports a failed assertion and stops the process. It is declared here because
// <assert.h> hides it under NDEBUG.
extern "C" void __assert_fail(const char *expression, const char *source, unsigned int line,
                              const char *function) noexcept __attribute__((noreturn));

namespace tvk {

// The source paths, without extension, that failed assertions print.
inline constexpr char kCommonSource[] = "manageability/yang/framework/mapping/src/tvk_map_common";
inline constexpr char kCallbacksSource[] = "manageability/yang/framework/mapping/src/tvk_map_callbacks";
inline constexpr char kProcessRequestSource[] = "manageability/yang/framework/mapping/src/tvk_map_process_request";

}  // namespace tvk

// Stops the process unless condition holds. prototype is the text of the operation's prototype.
#define TVK_ASSERT(condition, expression, source, prototype)                  \
    do {                                                                      \
        if (!(condition)) {                                                   \
            __assert_fail(expression, source, unsigned{__LINE__}, prototype); \
        }                                                                     \
    } while (false)

#define TVK_ASSERT_CONTEXT(ctx, source, prototype) TVK_ASSERT((ctx) != nullptr, "NULL != ctx", source, prototype)

#endif
