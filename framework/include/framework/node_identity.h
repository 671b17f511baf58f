// What tells nodes of data apart, and what makes them the same.
#pragma once

#include <string>

#include "framework/list_shapes.h"
#include "tvk_datatree.hpp"

namespace tvk::framework {

/*
 * A value as it is written, or, where its prefix is declared, as the name and namespace that it may stand for. Without
 * a model nothing tells an identity from a text with a colon in it: two values are the same if either form is.
 */
enum class ValueForm { kWritten, kResolved };
std::string text_of_value(const Node &node, ValueForm form);
bool is_same_value(const Node &a, const Node &b);

// What tells a node from the others of its name in the same parent: "" for a container or leaf, of which there is one.
std::string identity_of(const Node &node, const NodeShape &shape, ValueForm form = ValueForm::kWritten);

// Returns a text that is the same for two trees of the same data. The order counts among nodes of one name alone.
std::string content_of(const Node &node);

}  // namespace tvk::framework
