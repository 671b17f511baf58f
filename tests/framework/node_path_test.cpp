// Tests the paths of nodes.
#include <gtest/gtest.h>

#include <string>

#include "framework/node_path.h"
#include "tree.h"

namespace {

using namespace tvk;
using namespace tvk::framework;
using tvk::test::leaf;

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
