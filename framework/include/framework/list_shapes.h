// Says which nodes of native data are lists, and by which keys.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "framework/module_loader.h"
#include "framework/tree_holder.h"

namespace tvk::framework {

/*
 * The knowledge of the nodes of one name at one place of a model. Mappings and users declare lists. What they do not
 * declare is learned from data: a name that stands twice in one node is a list, and its keys are the fewest leaves at
 * the front of its entries that tell the entries apart.
 */
struct NodeShape {
    bool is_list = false;       // a list of entries, or, without keys, of values
    bool is_declared = false;   // a mapping or a user has said so
    bool is_described = false;  // all lists in it are declared
    bool is_unclear = false;    // its keys could not be learned
    std::vector<std::string> keys;
    std::map<std::string, NodeShape, std::less<>> below;  // by tag

    // Returns the shape of the children of that tag, or null when nothing is known of them.
    const NodeShape *find(std::string_view tag) const;
    bool is_key(const char *tag) const;
};

// The shapes of the nodes of a tree.
class Shapes {
public:
    Shapes() = default;
    // Declares the native lists that the mappings name.
    explicit Shapes(const Mappings &mappings);

    // Declares a list. The text is "PATH=KEY,KEY", as users give it. Throws UsageError.
    void add(const std::string &text);

    // Learns the lists that are not declared, from all trees together.
    void learn(const std::vector<const Node *> &roots);

    // The shape of the record that stands for no node.
    const NodeShape &top() const { return top_; }

private:
    NodeShape &at(std::string_view path);

    NodeShape top_;
};

}  // namespace tvk::framework
