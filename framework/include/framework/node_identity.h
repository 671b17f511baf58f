// Compares nodes of data: their values, the keys that tell them apart, and all that they hold.
#pragma once

#include <string>

#include "framework/list_shapes.h"
#include "tvk_datatree.hpp"

namespace tvk::framework {

/*
 * The written form of a value is its text. The resolved form is the name and namespace that the value may stand for,
 * when its prefix is declared. Without a model nothing tells an identity from a text with a colon in it, so two values
 * are the same when one of the two forms is the same.
 */
enum class ValueForm { kWritten, kResolved };

// Returns the value of a node in that form.
std::string text_of_value(const Node &node, ValueForm form);
// Tells whether two nodes have the same value.
bool is_same_value(const Node &a, const Node &b);

// Returns a text that tells a node from the others of its name in the same parent: its keys, or its value in a list of
// values. It is "" for a container or leaf, of which a parent has one.
std::string identity_of(const Node &node, const NodeShape &shape, ValueForm form = ValueForm::kWritten);

// Returns a text that is the same for two trees of the same data. The order counts among nodes of one name alone.
std::string content_of(const Node &node);

}  // namespace tvk::framework
