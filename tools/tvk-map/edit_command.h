// tvk-map edit: an edit request through mappings, to the native tree that comes out.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "edit_request.h"
#include "mapping_run.h"
#include "rpc_attributes.h"
#include "xml_document.h"

namespace tvk::tool {

struct EditOptions {
    std::string request;  // file, or "-"
    std::vector<std::string> mappings;
    std::string into;      // file with the native data to start from; "" for none
    bool apply = false;    // print the data that results
    bool changes = false;  // print what is different in that data
    bool tree = false;
    bool trace = false;
};

// Returns the exit status. Throws UsageError.
int run_edit(const EditOptions &options);

// What a request says beside its data.
struct EditParameters {
    RpcAttributes attributes;
    std::optional<uint32_t> default_operation;
    bool is_whole = false;
    bool is_reply = false;
    bool has_inserts = false;  // places of entries
};

// The steps between the command's files and its output. The first moves the data of a document of kEditLayout
// into a tree without nodes; it throws UsageError.
EditParameters read_edit(XmlDocument document, TreeHolder &request);
std::vector<RpcError> make_edit(const Mappings &mappings, Framework &framework, RequestTrees &trees,
                                const EditParameters &parameters);
Reply answer_edit(const Mappings &mappings, Framework &framework, RequestTrees &trees, const EditParameters &parameters,
                  bool tree);

}  // namespace tvk::tool
