#ifndef TVK_TEST_CONTEXT_H
#define TVK_TEST_CONTEXT_H

#include <memory>
#include <string>
#include <vector>

#include "heap_test.h"
#include "tvk_diagnostics.h"
#include "tvk_map_types.h"

namespace tvk::test {

using Lines = std::vector<std::string>;

// The lines as one text, "|" between them.
std::string joined(const Lines &lines);

// " name=value", and nothing for null, none or 0.
std::string field(const char *name, const char *value);
std::string field(const char *name, const qidl_tvk_datatree *record);
std::string field(const char *name, std::size_t value);

// Captures the debug log, up to a level, and the trace while it lives.
class LogCapture {
public:
    explicit LogCapture(std::uint32_t level = TVK_LOG_LEVEL_TRC);
    ~LogCapture();
    LogCapture(const LogCapture &) = delete;
    LogCapture &operator=(const LogCapture &) = delete;

    // Debug-log lines in order; "ERR: TVK: ctx=0x55d0,Start" reads "ERR: Start".
    Lines logs() const;
    Lines raw_logs() const { return logs_; }
    Lines errors() const;
    Lines traces() const { return traces_; }
    void clear();

private:
    Lines logs_;
    Lines traces_;
};

// A mapping context with its request, as a framework would make it. What the library left in the request state is
// released with it, but for the instance-tree stack: a walk empties that.
class MappingContext {
public:
    explicit MappingContext(std::uint32_t request_type = TVK_REQUEST_EDIT_CONFIG);
    ~MappingContext();
    MappingContext(const MappingContext &) = delete;
    MappingContext &operator=(const MappingContext &) = delete;

    // Returns the contents of the state beside tree on one line: " trim=top/l outputs=1". Shows the levels of the walk
    // from first_level on.
    std::string text(const qidl_tvk_datatree &tree, int first_level = 2) const;

    tvk_framework_context framework{};
    tvk_request request{};
    tvk_request_context req_ctx{};
    const std::unique_ptr<tvk_map_request_state> state;
    tvk_map_context context{};
    const tvk_map_ctx ctx = &context;
};

// For tests of the library. A test makes its trees before, or beside, the one context; a scenario that needs a fresh
// one makes a MappingContext of its own.
class MappingTest : public HeapTest {
protected:
    MappingTest();

    Lines logs() const { return log.logs(); }
    Lines errors() const { return log.errors(); }
    Lines traces() const { return log.traces(); }
    void clear_logs() { log.clear(); }

    LogCapture log;
    MappingContext mapping;
    tvk_request &request = mapping.request;
    tvk_map_request_state *const state = mapping.state.get();
    const tvk_map_ctx ctx = mapping.ctx;
};

}  // namespace tvk::test

#endif
