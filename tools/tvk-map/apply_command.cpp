// Runs tvk-map apply.
#include "apply_command.h"

#include "data_file.h"
#include "framework/data_edit.h"
#include "framework/edit_defaults.h"
#include "framework/request_values.h"
#include "netconf/edit_request.h"

namespace tvk::tool {

namespace {

framework::TopNames tops_of(framework::TreeHolder &data) {
    framework::TopNames names;
    for (const Node &top : data.tops()) {
        names.emplace_back(tag_of(top), namespace_of(top));
    }
    return names;
}

}  // namespace

Reply answer_apply(framework::TreeHolder &data, const Node &edit, uint32_t default_operation, framework::Shapes &shapes,
                   const ApplyOutput &output) {
    shapes.learn({&data.root(), &edit});
    framework::TreeHolder changes;
    if (const std::optional<framework::RpcError> error =
            framework::apply_edit(data, edit, default_operation, shapes, changes)) {
        return refusal({*error}, output.attributes);
    }
    return config_reply(output.changes ? changes.root() : data.root(), output.attributes, output.tree);
}

int run_apply(const ApplyOptions &options) {
    check_inputs(options.native, options.edit, "only one of NATIVE and EDIT can be standard input");
    const framework::Mappings mappings = framework::Mappings::load(options.mappings);
    framework::Shapes shapes(mappings);
    for (const std::string &list : options.lists) {
        shapes.add(list);
    }
    framework::TreeHolder data;
    read_data(options.native, netconf::kNativeLayout, data);
    framework::TreeHolder edit;
    const netconf::EditRequest request = netconf::read_edit(read_document(options.edit, netconf::kEditLayout), edit);
    if (const std::vector<framework::RpcError> errors = framework::refuse_operations(edit.root());
        request.parameters.is_whole && !errors.empty()) {
        return print(refusal(errors, request.attributes));
    }
    uint32_t default_operation = request.parameters.default_operation.value_or(TVK_OPERATION_MERGE);
    if (request.parameters.is_whole || default_operation == TVK_OPERATION_REPLACE) {
        framework::replace_all(edit, tops_of(data));
        default_operation = TVK_OPERATION_MERGE;
    }
    return print(answer_apply(data, edit.root(), default_operation, shapes,
                              {request.attributes, options.changes, options.tree}));
}

}  // namespace tvk::tool
