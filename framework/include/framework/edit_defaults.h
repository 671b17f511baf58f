// What an edit does where its nodes say nothing.
#pragma once

#include <utility>
#include <vector>

#include "framework/mapping_run.h"

namespace tvk::framework {

/*
 * <copy-config>, or default-operation replace: each top container of request without an operation replaces what is
 * there, and those of a name in others that request does not hold are removed.
 */
using TopNames = std::vector<std::pair<const char *, const char *>>;  // tag and namespace
void replace_all(TreeHolder &request, const TopNames &others);

/*
 * default-operation none: leaves of the request the nodes that carry an operation, with all below them, and what they
 * stand in, with the keys of its list entries. Which leaves are keys the walk knows, so the whole request is walked
 * first, onto nothing; what that fails with is returned, and the request is left as it was. Where native data is given,
 * the list entries that those nodes stand in must be in it.
 */
std::vector<RpcError> drop_what_does_nothing(const Mappings &mappings, Framework &framework, RequestTrees &trees);

}  // namespace tvk::framework
