// Runs tvk-map edit.
#include "edit_command.h"

#include <algorithm>

#include "apply_command.h"
#include "data_file.h"
#include "framework/edit_run.h"

namespace tvk::tool {

Reply answer_edit(const framework::Mappings &mappings, framework::Framework &framework, framework::RequestTrees &trees,
                  const netconf::EditRequest &request, bool tree) {
    const std::vector<framework::RpcError> errors =
        framework::make_edit(mappings, framework, trees, request.parameters);
    if (!errors.empty()) {
        return refusal(errors, request.attributes);
    }
    return config_reply(trees.native.root(), request.attributes, tree);
}

int run_edit(const EditOptions &options) {
    check_inputs(options.request, options.into, "only one of REQUEST and --into can be standard input");
    const framework::Mappings mappings = framework::Mappings::load(options.mappings);
    framework::RequestTrees trees;
    const netconf::EditRequest request =
        netconf::read_edit(read_document(options.request, netconf::kEditLayout), trees.request);
    framework::TreeHolder before;
    if (!options.into.empty()) {
        read_data(options.into, netconf::kNativeLayout, trees.native);
        if (options.apply) {
            framework::copy_tree(trees.native.root(), before.root());
        }
    }
    framework::Framework framework(options.trace);
    if (!options.apply) {
        return print(answer_edit(mappings, framework, trees, request, options.tree));
    }
    const std::vector<framework::RpcError> errors =
        framework::make_edit(mappings, framework, trees, request.parameters);
    if (!errors.empty()) {
        return print(refusal(errors, request.attributes));
    }
    framework::Shapes shapes(mappings);
    return print(answer_apply(before, trees.native.root(), TVK_OPERATION_MERGE, shapes,
                              {request.attributes, options.changes, options.tree}));
}

}  // namespace tvk::tool
