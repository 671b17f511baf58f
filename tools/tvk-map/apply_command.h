// The command tvk-map apply carries out an edit of native data, as the device would.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "framework/list_shapes.h"
#include "framework/tree_holder.h"
#include "netconf/rpc_attributes.h"
#include "reply.h"

namespace tvk::tool {

struct ApplyOptions {
    std::string native;  // file, or "-"
    std::string edit;    // file, or "-"
    std::vector<std::string> mappings;
    std::vector<std::string> lists;  // "PATH=KEY,KEY"
    bool changes = false;
    bool tree = false;
};

// Runs the command. Returns the exit status. Throws UsageError.
int run_apply(const ApplyOptions &options);

// The form of the answer.
struct ApplyOutput {
    netconf::RpcAttributes attributes;
    bool changes;  // only what is different
    bool tree;     // a listing instead of XML
};

// Carries out edit on data, and answers with the data or with what is different in it. shapes learns the lists of data
// and edit.
Reply answer_apply(framework::TreeHolder &data, const Node &edit, uint32_t default_operation, framework::Shapes &shapes,
                   const ApplyOutput &output);

}  // namespace tvk::tool
