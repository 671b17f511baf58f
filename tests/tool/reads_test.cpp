// A filter selects the same data however it is walked: both phases of the engine, and a walk of everything, give the
// same reply. The tests draw filters from the reply that holds everything.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <random>
#include <set>
#include <string>

#include "data_file.h"
#include "get_command.h"
#include "netconf/get_request.h"
#include "tvk_map_filter.h"

namespace {

using namespace tvk;
using namespace tvk::framework;
using namespace tvk::netconf;
using namespace tvk::tool;

// A tree without the order of its nodes: leaves are answered in the order in which a filter asks for them.
std::string content(
    const Node &node, const std::function<bool(const Node &)> &is_kept = [](const Node &) { return true; }) {
    std::set<std::string> children;
    for (const Node &child : tvk::children(node)) {
        if (is_kept(child)) {
            children.insert(content(child, is_kept));
        }
    }
    std::string text = std::string("<") + tag_of(node) + " " + namespace_of(node) + ">" + value_of(node);
    for (const std::string &child : children) {
        text += child;
    }
    return text + "</>\n";
}

// The rules of RFC 6241, section 6, word by word; keys are the leaves in front of an entry.
class Selection {
public:
    bool select(const Node &filter, const Node &node) {
        if (std::ranges::any_of(tvk::children(filter),
                                [&](const Node &f) { return has_value(f) && !matches(f, node); })) {
            return false;
        }
        if (std::ranges::all_of(tvk::children(filter), has_value)) {
            keep_all(node);
            return true;
        }
        bool any = false;
        for (const Node &f : tvk::children(filter)) {
            for (const Node &child : tvk::children(node)) {
                if (is_named(f, child) && (has_value(f) ? is_equal(f, child) : select(f, child))) {
                    kept_.insert(&child);
                    any = true;
                }
            }
        }
        const auto children = tvk::children(node);
        const auto inner =
            std::ranges::find_if(children, [](const Node &child) { return !tvk::children(child).empty(); });
        for (auto key = children.begin(); any && inner != children.end() && key != inner; ++key) {
            kept_.insert(&*key);
        }
        return any;
    }
    std::string content(const Node &node) const {
        return ::content(node, [&](const Node &child) { return kept_.count(&child) != 0; });
    }

private:
    static bool has_value(const Node &node) { return tvk::children(node).empty() && *value_of(node) != '\0'; }
    static bool is_named(const Node &filter, const Node &node) {
        const std::string ns = namespace_of(filter);
        return std::string(tag_of(filter)) == tag_of(node) && (ns.empty() || ns == namespace_of(node));
    }
    static bool is_equal(const Node &filter, const Node &node) {
        const std::string value = value_of(filter);
        return value.substr(value.find(':') == std::string::npos || value.find("id:") != 0 ? 0 : 3) == value_of(node);
    }
    static bool matches(const Node &filter, const Node &node) {
        return std::ranges::any_of(tvk::children(node),
                                   [&](const Node &c) { return is_named(filter, c) && is_equal(filter, c); });
    }
    void keep_all(const Node &node) {
        kept_.insert(&node);
        for (const Node &child : tvk::children(node)) {
            keep_all(child);
        }
    }

    std::set<const Node *> kept_;
};

class Drawing {
public:
    Drawing(unsigned seed) : random_(seed) {}

    // Filter nodes for some of the children of node.
    std::string children(const Node &node, int levels) {
        std::string text;
        for (const Node &child : tvk::children(node)) {
            for (int copies = one_in(3) ? (one_in(4) ? 2 : 1) : 0; copies > 0; --copies) {
                text += element(child, levels);
            }
        }
        return text;
    }

private:
    bool one_in(unsigned n) { return random_() % n == 0; }

    std::string element(const Node &node, int levels) {
        const std::string tag = tag_of(node);
        const std::string any = one_in(12) ? "" : namespace_of(node);
        std::string start = "<" + tag + " xmlns='" + (one_in(40) ? "urn:other" : any) + "'";
        std::string content;
        if (!tvk::children(node).empty()) {
            content = levels > 0 && !one_in(6) ? children(node, levels - 1) : "";
        } else if (one_in(2)) {
            const bool is_identity = (node.presence & TVK_HAS_DATA_NS) != 0;
            start += is_identity ? " xmlns:id='" + std::string(node.data_ns) + "'" : "";
            content = one_in(5) ? "other" : (is_identity ? "id:" : "") + std::string(value_of(node));
        }
        return start + ">" + content + "</" + tag + ">";
    }

    std::mt19937 random_;
};

const Layout kFilterLayout{[](const xmlNode *) { return true; }, Values::kTrimmed};

class Reads : public testing::TestWithParam<const char *> {
protected:
    std::string read(const std::string &filter, MarkPhase phase, bool walk_all, RequestTrees &trees) {
        read_data(std::string(TVK_EXAMPLES_FOLDER) + GetParam() + "/native-device.xml", kNativeLayout, trees.native);
        GetRequest request = read_get(XmlDocument::parse(filter, "the filter", kGetLayout), mappings_, trees.asked);
        request.parameters.walk_all = walk_all;
        request.parameters.with_defaults =
            TVK_WITH_DEFAULTS_REPORT_ALL;  // else those that a filter names are told, and no others
        Framework framework(false);
        Session session(framework, trees.native.root());
        const Reply reply = answer_get(mappings_, framework, session, trees, request, phase, false);
        return reply.status == 0 ? content(trees.response.root()) : reply.text;
    }
    std::string read(const std::string &filter, MarkPhase phase, bool walk_all = false) {
        RequestTrees trees;
        return read(filter, phase, walk_all, trees);
    }

    static std::string selected(const std::string &filter, const Node &everything) {
        TreeHolder asked;
        take_data(XmlDocument::parse(filter, "the filter", kFilterLayout), asked);
        Selection selection;
        for (Node &filter_top :
             std::span(asked.root().subtrees->subtrees, tvk::children(asked.root().subtrees[0]).size())) {
            Node one{};  // each by itself: none is a condition for the others
            one.subtrees = &filter_top;
            one.subtree_count = 1;
            one.presence = TVK_HAS_SUBTREES;
            selection.select(one, everything);
        }
        return selection.content(everything);
    }

    const Mappings mappings_ = Mappings::load({GetParam()});
};

TEST_P(Reads, AreTheSameHoweverTheFilterIsWalked) {
    RequestTrees everything;
    read("<get/>", tvk_map_dfs_filter_mark, false, everything);
    int selecting = 0;
    for (unsigned seed = 0; seed < 3000; ++seed) {
        const std::string filter = "<filter>" + Drawing(seed).children(everything.response.root(), 10) + "</filter>";
        const std::string reply = read(filter, tvk_map_dfs_filter_mark, true);
        ASSERT_EQ(selected(filter, everything.response.root()), reply) << seed << ": " << filter;
        ASSERT_EQ(reply, read(filter, tvk_map_dfs_filter_mark)) << seed << ": " << filter;
        ASSERT_EQ(reply, read(filter, tvk_map_dfs_filter_con)) << seed << ": " << filter;
        selecting += reply != content(Node{}) ? 1 : 0;
    }
    EXPECT_GT(selecting, 300);
}

// A mapping may show arrays of the database: the reply is pruned, and the data stays for the next read.
TEST(SharedArrays, AreCopiedForEachNodeThatShowsThem) {
    TreeHolder data;
    take_data(XmlDocument::parse("<data><a><b>1</b></a></data>", "the data", kNativeLayout), data);
    const std::string before = content(data.root());
    Framework framework(false);
    Session session(framework, data.root());
    for (int i = 0; i < 2; ++i) {
        TreeHolder response;
        copy_tree(data.root(), response.root());
        Node &shown = response.root().subtrees[0];
        TreeHolder own;
        std::swap(own.root().subtrees, shown.subtrees);
        own.root().subtree_count = 1;
        shown.subtrees = data.tops()[0].subtrees;
        own_arrays(response.root(), {&session.database_arrays()});
        EXPECT_NE(shown.subtrees, data.tops()[0].subtrees);
        EXPECT_EQ(content(response.root()), before);
    }
    EXPECT_EQ(content(data.root()), before);
}

// A tree may show one twice, as when two entries have the same part.
TEST(SharedArrays, AreCopiedWhereATreeShowsThemAgain) {
    TreeHolder data;
    take_data(XmlDocument::parse("<data><a><b>1</b></a><a/></data>", "the data", kNativeLayout), data);
    Node &again = data.tops()[1];
    again.subtrees = data.tops()[0].subtrees;
    again.subtree_count = 1;
    set_present(again, TVK_HAS_SUBTREES);
    own_arrays(data.root(), {});
    EXPECT_NE(data.tops()[0].subtrees, again.subtrees);
    EXPECT_EQ("1", std::string(value_of(again.subtrees[0])));
}

TEST(SharedArrays, GoOnceWithTheTreesOfARequest) {
    RequestTrees trees;
    take_data(XmlDocument::parse("<data><a><b>1</b></a></data>", "the data", kNativeLayout), trees.native);
    copy_tree(trees.native.root(), trees.response.root());
    Node &shown = trees.response.tops()[0];
    release(shown.subtrees[0]);
    tvk_gpb_free(std::exchange(shown.subtrees, trees.native.tops()[0].subtrees), nullptr);
}

INSTANTIATE_TEST_SUITE_P(Examples, Reads, testing::Values("openconfig_interfaces", "openconfig_bgp"));

}  // namespace
