#include "data_file.h"

#include <vector>

#include "rpc_envelope.h"
#include "xml_decode.h"

namespace tvk::tool {

namespace {

std::vector<xmlNode *> find_data(const XmlDocument &document) {
    xmlNode *root = document.root();
    if (is_envelope(root, "data") || is_envelope(root, "config")) {
        return document.child_elements(root);
    }
    return {root};
}

}  // namespace

void decode_data(const XmlDocument &document, TreeHolder &data) {
    decode_elements(document, find_data(document), Values::kAsWritten, data.root());
}

void read_data(const std::string &path, TreeHolder &data) {
    decode_data(XmlDocument::read(path), data);
}

}  // namespace tvk::tool
