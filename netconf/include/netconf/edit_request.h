// Finds the data and the parameters of an edit request.
#pragma once

#include <libxml/tree.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "framework/edit_run.h"
#include "netconf/rpc_attributes.h"
#include "netconf/xml_document.h"

namespace tvk::netconf {

// The parameters of an edit request, and the attributes that its reply repeats.
struct EditRequest {
    framework::EditParameters parameters;
    RpcAttributes attributes;
};

// The elements of the top containers, in document order, and the parameters.
struct EditPayload {
    std::vector<xmlNode *> tops;
    EditRequest request;
};

// The data of an edit are the elements in a <config> or <data>, or a root that is no part of a message.
extern const Layout kEditLayout;

/*
 * Finds the top containers of an edit. The document is an <rpc> with <edit-config> or <copy-config>, one of these
 * alone, a <config>, the answer to a get, or a bare top container. Throws UsageError when the message asks for
 * something else.
 */
EditPayload find_edit_payload(const XmlDocument &document);

// Moves the data of a document of kEditLayout into request, which has no nodes yet. Throws UsageError.
EditRequest read_edit(XmlDocument document, framework::TreeHolder &request);

}  // namespace tvk::netconf
