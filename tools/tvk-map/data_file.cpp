#include "data_file.h"

#include "rpc_envelope.h"

namespace tvk::tool {

namespace {

bool is_wrapper(const xmlNode *root) {
    return is_envelope(root, "data") || is_envelope(root, "config");
}

bool is_file_data(const xmlNode *element) {
    return parent_element(element) != nullptr || !is_wrapper(element);
}

}  // namespace

const Layout kDataLayout{is_file_data, Values::kAsWritten};

void take_data(XmlDocument document, TreeHolder &data) {
    xmlNode *root = document.root();
    move_data(is_wrapper(root) ? document.child_elements(root) : std::vector{root}, data.root());
}

void read_data(const std::string &path, TreeHolder &data) {
    take_data(XmlDocument::read(path, kDataLayout), data);
}

}  // namespace tvk::tool
