// Which nodes of native data are lists, and what tells their entries apart.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "framework/module_loader.h"
#include "framework/tree_holder.h"

namespace tvk::framework {

/*
 * What is known of the nodes of one name at one place of a model. Without a model that is what mappings and users
 * say, and else what data shows: what stands twice in one node is a list, and the keys of a list are the fewest leaves
 * at the front of its entries that tell them apart.
 */
struct NodeShape {
    bool is_list = false;  // of entries, or, when there are no keys, of values
    bool is_declared = false;
    bool is_described = false;  // all lists in it are known, so that what is not declared is none
    bool is_unclear = false;    // entries that nothing at their front tells apart
    std::vector<std::string> keys;
    std::map<std::string, NodeShape, std::less<>> below;  // by tag

    const NodeShape *find(std::string_view tag) const;
    bool is_key(const char *tag) const;
};

class Shapes {
public:
    Shapes() = default;
    explicit Shapes(const Mappings &mappings);

    // Text is "PATH=KEY,KEY", as users give it. Throws UsageError.
    void add(const std::string &text);

    // Finds out about what is not declared. What trees show together counts.
    void learn(const std::vector<const Node *> &roots);

    const NodeShape &top() const { return top_; }

private:
    NodeShape &at(std::string_view path);

    NodeShape top_;
};

}  // namespace tvk::framework
