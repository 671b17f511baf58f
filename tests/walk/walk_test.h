// Handlers that write down how they were called, so that a whole walk reads as a list of lines:
//
//     "config(interface <remove>) at /interfaces/interface keys=1 propagating"
//
// is the handler named config, called with the node interface, whose operation is remove, inside that level of the
// hierarchy, while list_key_state is 1 and a propagation is under way.
#ifndef TVK_TEST_WALK_TEST_H
#define TVK_TEST_WALK_TEST_H

#include <algorithm>
#include <functional>
#include <map>

#include "context.h"
#include "status.h"
#include "tree.h"
#include "tvk_map_datatree.h"
#include "tvk_map_walk.h"

namespace tvk::test {

inline constexpr char kForeign[] = "urn:foreign";

inline Lines operator+(Lines a, const Lines &b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}
inline Lines each(Lines lines, const std::string &suffix) {
    std::for_each(lines.begin(), lines.end(), [&suffix](std::string &line) { line += suffix; });
    return lines;
}

class WalkTest : public MappingTest {
public:
    using Action = std::function<qerrno(tvk_map_ctx, qidl_tvk_datatree &)>;

    static qerrno record(const char *handler, tvk_map_ctx ctx, const qidl_tvk_datatree *node, const std::string &more,
                         const qidl_tvk_datatree *target) {
        const auto &s = *ctx->state;
        const char *const operations[] = {" <merge>", " <replace>", " <create>", " <delete>", " <remove>"};
        EXPECT_EQ(running->target.get(), target);
        running->calls.push_back(
            std::string(handler) + "(" + node->tag +
            ((node->presence & TVK_HAS_DATA) != 0 ? std::string(" = ") + node->data : "") +
            ((node->presence & TVK_HAS_OPERATION) != 0 ? operations[node->operation] : "") + more + ")" +
            (s.hierarchy_depth > 0 ? std::string(" at ") + text(s.hierarchy[s.hierarchy_depth - 1].path) : "") +
            (s.list_key_state != 0 ? " keys=" + std::to_string(s.list_key_state) : "") +
            (s.delete_walk_active == 1 ? " propagating" : "") +
            ((s.build_flags & TVK_BUILD_REPLACE_REMOVING) != 0 ? " removing" : "") +
            ((s.build_flags & TVK_BUILD_REPLACE_MERGING) != 0 ? " merging" : "") +
            (s.replace_converted == 1 ? " converted" : ""));
        const auto action = running->actions.find(handler);
        return action != running->actions.end() ? action->second(ctx, const_cast<qidl_tvk_datatree &>(*node)) : TVK_OK;
    }

protected:
    WalkTest() { running = this; }
    ~WalkTest() override { running = nullptr; }

    // Gives the handler of that name an action, taken once its call is noted. Without one it returns 0.
    void on(const std::string &handler, Action action) { actions[handler] = std::move(action); }
    void answer(const std::string &handler, qerrno status) {
        on(handler, [status](tvk_map_ctx, qidl_tvk_datatree &) { return status; });
    }

    // Walks tree; calls and logs are then those of this walk alone.
    template <class Info>
    qerrno parse(tvk_map_ctx own, Tree &tree, const Info &info) {
        calls.clear();
        clear_logs();
        if constexpr (std::is_same_v<Info, tmap_node_list_info>) {
            return tmap_high_list_parse(own, tree.get(), target.get(), &info);
        } else {
            return tmap_high_container_parse(own, tree.get(), target.get(), &info);
        }
    }

    // Adds children until their array must have moved.
    static qerrno grow(tvk_map_ctx own, qidl_tvk_datatree &parent) {
        for (int i = 0; i < 8; ++i) {
            tvk_map_datatree_add_subtree(own, &parent, "new", "urn:top", nullptr, nullptr, nullptr, 1);
        }
        return TVK_OK;
    }

    // Errors without the line that every comparison of a tag writes.
    Lines complaints() const {
        Lines lines = errors();
        std::erase_if(lines, [](const std::string &line) { return line.starts_with("ERR: FOOBAR: "); });
        return lines;
    }
    static void expect_walk_is_over(const tvk_map_request_state &own) {
        EXPECT_EQ(0, own.hierarchy_depth);
        EXPECT_EQ(nullptr, own.itree_stack);
        EXPECT_EQ(0u, own.list_key_state + own.delete_walk_active + own.build_flags + own.replace_converted);
    }

    Lines calls;
    const Tree target{root()};

private:
    static const char *text(const char *text) { return text != nullptr ? text : "(null)"; }

    inline static WalkTest *running = nullptr;
    std::map<std::string, Action> actions;
};

template <std::size_t kSize>
struct HandlerName {
    constexpr HandlerName(const char (&name)[kSize]) { std::copy_n(name, kSize, text); }
    char text[kSize]{};
};

template <HandlerName kName>
qerrno handler(tvk_map_ctx ctx, const qidl_tvk_datatree *node, qidl_tvk_datatree *target) {
    return WalkTest::record(kName.text, ctx, node, "", target);
}
template <HandlerName kName>
qerrno container_handler(tvk_map_ctx ctx, const qidl_tvk_datatree *node, std::uint32_t count,
                         qidl_tvk_datatree *target) {
    return WalkTest::record(kName.text, ctx, node, " N=" + std::to_string(count), target);
}

}  // namespace tvk::test

#endif
