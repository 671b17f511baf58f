// Tests the records around a request, and the paths of its nodes.
#include <gtest/gtest.h>

#include <string>

#include "framework/node_path.h"
#include "framework/request_scope.h"
#include "tree.h"

namespace {

using namespace tvk;
using namespace tvk::framework;
using tvk::test::leaf;

int calls_of_end;

void end_request(tvk_map_ctx) {
    ++calls_of_end;
}

// A module that could not begin has nothing to end. One that has begun is asked once, and ends once.
TEST(RequestScope, EndsWhatHasBegun) {
    qidl_tvk_datatree container{};
    const struct {
        qerrno (*begin)(tvk_map_ctx ctx);
        qerrno status;
        int ends;
    } rows[] = {{[](tvk_map_ctx) -> qerrno { return TVK_ERR_INVALID; }, TVK_ERR_INVALID, 0},
                {[](tvk_map_ctx) -> qerrno { return TVK_OK; }, TVK_OK, 1},
                {nullptr, TVK_OK, 1}};
    for (const auto &row : rows) {
        calls_of_end = 0;
        tvk_map_module module{};
        module.begin_request = row.begin;
        module.end_request = end_request;
        Framework framework(false);
        {
            RequestScope scope(framework, TVK_REQUEST_EDIT_CONFIG);
            EXPECT_EQ(row.status, scope.enter(module, container));
            EXPECT_EQ(TVK_OK, row.ends == 0 ? TVK_OK : scope.enter(module, container));
            EXPECT_EQ(0, calls_of_end);
        }
        EXPECT_EQ(row.ends, calls_of_end);
    }
}

// A client finds the node by the path: an identity bears the prefix of its module, once.
TEST(NodePath, NamesKeysThatAreIdentities) {
    const struct {
        test::Node key;
        const char *xpath, *readable;
    } rows[] = {
        {leaf("k", "x").data_ns("urn:i"), "/ns1:l[ns1:k='ns2:x']", "/l[k='x']"},
        {leaf("k", "i:x").data_ns("urn:i"), "/ns1:l[ns1:k='i:x']", "/l[k='i:x']"},
        {leaf("k", "it's"), "/ns1:l[ns1:k=\"it's\"]", "/l[k=\"it's\"]"},
    };
    for (const auto &row : rows) {
        const test::Tree tree = test::node("l", "urn:l")(row.key);
        const auto is_key = [](const NodePath &, const Node &) { return true; };
        EXPECT_EQ(row.xpath, xpath_of({tree.get()}, is_key).text);
        EXPECT_EQ(row.readable, readable_path({tree.get()}, is_key));
    }
}

}  // namespace
