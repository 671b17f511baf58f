#include "edit_command.h"

#include <algorithm>

#include "apply_command.h"
#include "data_file.h"
#include "framework/edit_run.h"

namespace tvk::tool {

Reply answer_edit(const Mappings &mappings, Framework &framework, RequestTrees &trees, const EditRequest &request,
                  bool tree) {
    const std::vector<RpcError> errors = make_edit(mappings, framework, trees, request.parameters);
    if (!errors.empty()) {
        return refusal(errors, request.attributes);
    }
    return config_reply(trees.native.root(), request.attributes, tree);
}

int run_edit(const EditOptions &options) {
    check_inputs(options.request, options.into, "only one of REQUEST and --into can be standard input");
    const Mappings mappings = Mappings::load(options.mappings);
    RequestTrees trees;
    const EditRequest request = read_edit(read_document(options.request, kEditLayout), trees.request);
    TreeHolder before;
    if (!options.into.empty()) {
        read_data(options.into, kNativeLayout, trees.native);
        if (options.apply) {
            copy_tree(trees.native.root(), before.root());
        }
    }
    Framework framework(options.trace);
    if (!options.apply) {
        return print(answer_edit(mappings, framework, trees, request, options.tree));
    }
    const std::vector<RpcError> errors = make_edit(mappings, framework, trees, request.parameters);
    if (!errors.empty()) {
        return print(refusal(errors, request.attributes));
    }
    Shapes shapes(mappings);
    return print(answer_apply(before, trees.native.root(), TVK_OPERATION_MERGE, shapes,
                              {request.attributes, options.changes, options.tree}));
}

}  // namespace tvk::tool
