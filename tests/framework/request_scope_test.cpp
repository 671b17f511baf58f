// Requests as modules meet them: when they begin and end, and where one has failed.
#include "framework/request_scope.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "framework/heap.h"
#include "framework/request_errors.h"
#include "netconf/data_document.h"
#include "tvk_map_walk.h"

namespace {

using namespace tvk;
using namespace tvk::framework;
using namespace tvk::netconf;

std::string calls;

template <char name, qerrno status>
constexpr tvk_map_module kModule = {
    .version = TVK_MAP_MODULE_VERSION,
    .name = "counted",
    .container_count = 0,
    .containers = nullptr,
    .begin_request =
        [](tvk_map_ctx) {
            calls += std::string("+") + name;
            return status;
        },
    .end_request = [](tvk_map_ctx) { calls += std::string("-") + name; },
    .release_data = nullptr,
    .identities = nullptr,
    .native_lists = nullptr,
    .flags = 0,
};

TEST(RequestScope, EndsOnceWhatHasBegun) {
    const tvk_map_module &a = kModule<'a', TVK_OK>, &b = kModule<'b', TVK_OK>, &bad = kModule<'x', TVK_ERR_INVALID>;
    tvk_map_module bare = a;
    bare.begin_request = nullptr;
    const struct {
        const char *why;
        std::vector<const tvk_map_module *> entered;
        const char *calls;
    } rows[] = {
        {"none", {}, ""},
        {"one at several containers", {&a, &a}, "+a-a"},
        {"two in turn", {&a, &b, &a}, "+a+b-a-b"},
        {"one that failed to begin", {&a, &bad}, "+a+x-a"},
        {"one that has nothing to begin", {&bare}, "-a"},
    };
    for (const auto &row : rows) {
        calls.clear();
        Framework framework(false);
        Node top{};
        {
            RequestScope scope(framework, TVK_REQUEST_EDIT_CONFIG);
            for (const tvk_map_module *module : row.entered) {
                EXPECT_EQ(module == &bad ? TVK_ERR_INVALID : TVK_OK, scope.enter(*module, top)) << row.why;
            }
        }
        EXPECT_EQ(row.calls, calls) << row.why;
    }
}

// The library records the path to the parent and the name of a child.
TEST(DescribeFailure, FindsTheNodeThatTheLibraryNames) {
    const Mappings mappings = Mappings::load({DEEP_MAPPING});
    const struct {
        const char *why;
        qerrno status;
        const char *request, *error_path, *name, *place, *tag;
    } rows[] = {
        {"the child of another namespace", TVK_ERR_NAMESPACE, "<top><a/><a xmlns='urn:f'/></top>", "ns1:top/", "a",
         "/ns1:top/ns2:a", "unknown-namespace"},
        {"the first of them", TVK_ERR_NAMESPACE, "<top><a xmlns='urn:f'/><a xmlns='urn:g'/></top>", "ns1:top/", "a",
         "/ns1:top/ns2:a", "unknown-namespace"},
        {"that of the name", TVK_ERR_NAMESPACE, "<top><b xmlns='urn:f'/><a/></top>", "ns1:top/", "a", "/ns1:top/ns1:a",
         "invalid-value"},
        {"no child of the name", TVK_ERR_NAMESPACE, "<top><a/></top>", "ns1:top/", "none", "/ns1:top", "invalid-value"},
        {"two levels", TVK_ERR_UNSUPPORTED, "<top><a/><b><a/></b></top>", "ns1:top/ns1:b/", "a", "/ns1:top/ns1:b/ns1:a",
         "operation-not-supported"},
        {"a path that ends early", TVK_ERR_UNSUPPORTED, "<top><b/></top>", "ns1:top/ns1:none/", "b", "/ns1:top/ns1:b",
         "operation-not-supported"},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.why);
        TreeHolder request;
        take_data(XmlDocument::parse("<n:data xmlns:n='urn:ietf:params:xml:ns:netconf:base:1.0' xmlns='urn:e'>" +
                                         std::string(row.request) + "</n:data>",
                                     "request", kDataLayout),
                  request);
        Framework framework(false);
        RequestScope scope(framework, TVK_REQUEST_EDIT_CONFIG);
        scope.state().error_xpath = copy_text(row.error_path);
        scope.state().error_node_tag = copy_text(row.name);
        const RpcError error =
            describe_failure(row.status, mappings.modules()[0], scope, request.root(), request.tops()[0]);
        EXPECT_EQ(row.place, error.path.text);
        EXPECT_EQ(row.tag, error.tag);
    }
}

}  // namespace
