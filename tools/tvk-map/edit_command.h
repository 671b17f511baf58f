// tvk-map edit: an edit request through a mapping, to the native tree that comes out.
#pragma once

#include <optional>
#include <string>

#include "mapping_run.h"
#include "xml_document.h"

namespace tvk::tool {

struct EditOptions {
    std::string request;  // file, or "-"
    std::string mapping;
    std::string into;  // file with the native data to start from; "" for none
    bool tree = false;
    bool trace = false;
};

// Returns the exit status. Throws UsageError.
int run_edit(const EditOptions &options);

// The steps between the command's files and its output. The first moves the data of a document of kEditLayout
// into a tree without nodes, and returns the message id; it throws UsageError.
std::optional<std::string> read_edit(XmlDocument document, TreeHolder &request);
Reply answer_edit(const MappingModule &module, Framework &framework, RequestTrees &trees,
                  const std::optional<std::string> &message_id, bool tree);

}  // namespace tvk::tool
