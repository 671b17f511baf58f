// Turns the default operation of an edit into operations of its nodes.
#pragma once

#include <utility>
#include <vector>

#include "framework/mapping_run.h"

namespace tvk::framework {

// Names of top containers.
using TopNames = std::vector<std::pair<const char *, const char *>>;  // tag and namespace

/*
 * Carries out <copy-config>, or default-operation replace: gives each top container of request without an operation the
 * operation replace, and adds a removal for each name of others that request does not hold. Throws std::bad_alloc.
 */
void replace_all(TreeHolder &request, const TopNames &others);

/*
 * Carries out default-operation none: keeps of the request the nodes that carry an operation, all below them, and the
 * nodes around them with the keys of list entries. Only the walk knows which leaves are keys, so the whole request is
 * walked first, onto an empty tree. When that walk fails, its errors are returned and the request stays as it was.
 * When native data is given, the list entries around those nodes must be in it; an error is returned else.
 */
std::vector<RpcError> drop_what_does_nothing(const Mappings &mappings, Framework &framework, RequestTrees &trees);

}  // namespace tvk::framework
