// Filters on their way: as mappings walk them, and what of a response they select.
#include "framework/filter_tree.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "framework/subtree_filter.h"
#include "netconf/data_document.h"

namespace {

using namespace tvk;
using namespace tvk::framework;
using namespace tvk::netconf;

TreeHolder parsed(const std::string &elements) {
    TreeHolder tree;
    const Layout layout{kDataLayout.is_data, Values::kTrimmed};
    take_data(XmlDocument::parse("<n:data xmlns:n='urn:ietf:params:xml:ns:netconf:base:1.0' xmlns='urn:example:deep' "
                                 "xmlns:i='urn:i'>" +
                                     elements + "</n:data>",
                                 "filter", layout),
              tree);
    return tree;
}

// "top(a=1,b)", with other namespaces than that of most nodes named.
std::string sketched(const Node &node, const std::string &ns = "urn:example:deep") {
    std::string text;
    for (const Node &child : children(node)) {
        const std::string own_ns = namespace_of(child);
        text += (text.empty() ? "" : ",") + std::string(tag_of(child)) + (own_ns != ns ? ":" + own_ns : "");
        text += *value_of(child) != '\0' ? std::string("=") + value_of(child) : "";
        text += child.data_ns != nullptr ? std::string("@") + child.data_ns : "";
        const std::string below = sketched(child, own_ns);
        text += below.empty() ? "" : "(" + below + ")";
    }
    return text;
}

// The module maps <top> of two namespaces.
TEST(Widen, MakesOneNodeOfThoseOfOneName) {
    const Mappings mappings = Mappings::load({DEEP_MAPPING});
    const struct {
        const char *why, *asked, *walked;
    } rows[] = {
        {"a name has a namespace", "<top><a/></top><top xmlns='urn:example:deep-too'><b/></top>",
         "top(a),top:urn:example:deep-too(b)"},
        {"none is any", "<top xmlns=''><a xmlns='urn:a'/></top>", "top(a:urn:a),top:urn:example:deep-too(a:urn:a)"},
        {"what nothing maps", "<other/><top xmlns='urn:other'/>", ""},
        {"tops", "<top><a/></top><top><b/><a/></top>", "top(a,b)"},
        {"one asks for all", "<top/><top><a/></top>", "top"},
        {"wherever it stands", "<top><a/></top><top/>", "top"},
        {"also further down", "<top><c><a/></c><c/><d/></top>", "top(c,d)"},
        {"also beside values", "<top><l><k>1</k><a/></l><l><k>1</k></l></top>", "top(l(k=1))"},
        {"entries of other values", "<top><l><k>1</k><a/></l><l><k>2</k><b/></l></top>", "top(l(k=1,a),l(k=2,b))"},
        {"of the same values", "<top><l><a/><k>1</k><m>2</m></l><l><m>2</m><k>1</k><b/></l></top>",
         "top(l(k=1,m=2,a,b))"},
        {"of the same text in another module", "<top><l><k>i:x</k><a/></l><l><k xmlns:i='urn:j'>i:x</k><b/></l></top>",
         "top(l(k=i:x@urn:i,a),l(k=i:x@urn:j,b))"},
        {"of other leaves", "<top><l><k>1</k><a/></l><l><m>2</m><b/></l></top>", "top(l(a,b,k,m))"},
        {"of a leaf named twice", "<top><l><k>1</k><k>2</k><a/></l></top>", "top(l(a,k))"},
        {"of one that is selected, too", "<top><l><k>1</k><k/><a/></l></top>", "top(l(k,a))"},
        {"a namespace left out", "<top><c><a xmlns=''/><b/></c><d/></top>", "top(c,d)"},
        {"one name in two namespaces", "<top><c><a/><a xmlns='urn:a'/></c><d/></top>", "top(c,d)"},
    };
    for (const auto &row : rows) {
        TreeHolder walked;
        widen(mappings, parsed(row.asked).root(), {}, walked);
        EXPECT_EQ(row.walked, sketched(walked.root())) << row.why;
    }
    TreeHolder open;
    widen(mappings, parsed("<top><c><l><k>1</k></l></c><l><k>1</k></l></top>").root(), {"top/c/l"}, open);
    EXPECT_EQ("top(c(l),l(k=1))", sketched(open.root()));
}

// Takes away what has no verdict to be kept.
void drop_unkept(Node &node) {
    int32_t kept = 0;
    for (int32_t i = 0; i < node.subtree_count; ++i) {
        Node &child = node.subtrees[i];
        if (child.node_kind == TVK_NODE_KIND_KN) {
            drop_unkept(child);
        }
        if (child.node_kind == TVK_NODE_KIND_KN || child.node_kind == TVK_NODE_KIND_KA) {
            std::swap(node.subtrees[kept++], child);
        }
    }
    for (int32_t i = kept; i < node.subtree_count; ++i) {
        release(node.subtrees[i]);
    }
    node.subtree_count = kept;
}

TEST(MarkSelected, FollowsTheRulesOfSubtreeFilters) {
    const std::string entries = "<l><k>1</k><c><a>1</a><b>2</b></c></l><l><k>2</k><c><a>2</a></c></l>";
    const struct {
        const char *why;
        std::string filter, data;
        const char *selected;
    } rows[] = {
        {"an attribute selects", "<t u='1'><a/></t>", "<t u='1'><a>1</a></t><t u='2'><a>2</a></t><t><a/></t>",
         "t(a=1)"},
        {"nodes that differ in one", "<t><e u='1'/><e u='2'/></t>", "<t><e u='1'/><e u='2'/><e u='3'/></t>", "t(e,e)"},
        {"a value has it, too", "<t><a u='1'>x</a><b/></t>", "<t><a>x</a><b>1</b></t><t><a u='1'>x</a><b>2</b></t>",
         "t(a=x,b=2)"},
        {"a value of a module", "<t><a>i:x</a><b/></t>",
         "<t><a xmlns:i='urn:j'>i:x</a><b>1</b></t><t><a>i:x</a><b>2</b></t>", "t(a=i:x@urn:i,b=2)"},
        {"one that names none", "<t><a xmlns:q='urn:q'>q:x</a></t>", "<t><a>q:x</a></t><t><a>x</a></t>", "t(a=q:x)"},
        {"or is asked for so", "<t><a>q:x</a></t>", "<t><a xmlns:q='urn:q'>q:x</a></t>", "t(a=q:x@urn:q)"},
        {"all values must match", "<t><a>1</a><b>2</b><c/></t>", "<t><a>1</a><b>1</b><c/></t>", ""},
        {"values alone keep all", "<t><a>1</a></t>", "<t><a>1</a><b>2</b></t><t><a>2</a></t>", "t(a=1,b=2)"},
        {"the keys stand in front", "<t><l><c><b/></c></l></t>", "<t>" + entries + "</t>", "t(l(k=1,c(b=2)))"},
        {"a value below", "<t><l><c><a>2</a></c></l></t>", "<t>" + entries + "</t>", "t(l(k=2,c(a=2)))"},
        {"beside another node", "<t><l><c><a>2</a></c><k/></l></t>", "<t>" + entries + "</t>",
         "t(l(k=1),l(k=2,c(a=2)))"},
        {"of one of several", "<t><l><c><a>3</a></c></l></t>", "<t><l><k>1</k><c><a>1</a></c><c><a>3</a></c></l></t>",
         "t(l(k=1,c(a=3)))"},
        {"whole, and in part", "<t><l/></t><t><l><k/></l></t>", "<t>" + entries + "</t>",
         "t(l(k=1,c(a=1,b=2)),l(k=2,c(a=2)))"},
        {"in part, and whole", "<t><l><k/></l></t><t/>", "<t>" + entries + "</t>",
         "t(l(k=1,c(a=1,b=2)),l(k=2,c(a=2)))"},
        {"a namespace selects", "<t><a xmlns='urn:a'/><b xmlns=''/></t>", "<t><a>1</a><b>2</b></t>", "t(b=2)"},
        {"a value at the top selects no container", "<t>1</t>", "<t><a>1</a></t>", ""},
    };
    for (const auto &row : rows) {
        TreeHolder response = parsed(row.data);
        mark_selected(parsed(row.filter).root(), Node{}, response.root());
        drop_unkept(response.root());
        EXPECT_EQ(row.selected, sketched(response.root())) << row.why;
    }
    TreeHolder response = parsed("<t><l><a>1</a><k>1</k><c><b>2</b></c></l></t>"),
               walked = parsed("<t><m/><l><k/></l></t>");
    Node &key = walked.tops()[0].subtrees[1].subtrees[0];
    key.is_key = 1;
    set_present(key, TVK_HAS_IS_KEY);
    mark_selected(parsed("<t><l><c/></l></t>").root(), walked.root(), response.root());
    drop_unkept(response.root());
    EXPECT_EQ("t(l(k=1,c(b=2)))", sketched(response.root())) << "keys that the walk has met";
}

}  // namespace
