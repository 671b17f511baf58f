// Finds the data in documents that hold no request.
#include "netconf/data_document.h"

#include "netconf/rpc_envelope.h"

namespace tvk::netconf {

namespace {

bool is_wrapper(const xmlNode *root) {
    return is_reply(root) || is_envelope(root, "config");
}

bool is_file_data(const xmlNode *element) {
    const xmlNode *parent = parent_element(element);
    if (parent == nullptr) {
        return !is_wrapper(element);
    }
    return !is_envelope(parent, "rpc-reply");
}

}  // namespace

const Layout kDataLayout{is_file_data, Values::kAsWritten};
const Layout kNativeLayout{is_file_data, Values::kAsWritten, Edits::kRefused};

void take_data(XmlDocument document, framework::TreeHolder &data) {
    xmlNode *root = document.root();
    const std::vector<xmlNode *> tops = is_reply(root)                ? open_reply(document, root)
                                        : is_envelope(root, "config") ? document.child_elements(root)
                                                                      : std::vector{root};
    move_data(tops, data.root());
}

}  // namespace tvk::netconf
