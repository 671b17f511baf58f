// Switches the debug log and the trace of the process.
#include "framework/framework.h"

#include "tvk_diagnostics.h"
#include "tvk_platform_control.h"

namespace tvk::framework {

Framework::Framework(bool trace, uint32_t index_children_from)
    : trace_(trace), index_children_from_(index_children_from) {
    context_.trace_enabled = trace_ ? 1 : 0;
    if (trace_) {
        tvk_platform_set_debug_log(1, TVK_LOG_LEVEL_TRC, nullptr, nullptr);
        tvk_platform_set_trace(nullptr, nullptr);
    }
}

Framework::~Framework() {
    if (trace_) {
        tvk_platform_set_debug_log(0, TVK_LOG_LEVEL_ERR, nullptr, nullptr);
    }
}

}  // namespace tvk::framework
