// Finding what an edit asks for.
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

// What an edit request says beside its data.
struct EditRequest {
    framework::EditParameters parameters;
    RpcAttributes attributes;
};

struct EditPayload {
    std::vector<xmlNode *> tops;  // top containers, in document order
    EditRequest request;
};

// Data are the elements of a <config> or <data>, or a root that belongs to no message.
extern const Layout kEditLayout;

/*
 * Finds the top containers of an edit: an <rpc> with <edit-config> or <copy-config>, one of these alone, a <config>,
 * what a get was answered with, or a bare top container. Throws UsageError when the message asks for something else.
 */
EditPayload find_edit_payload(const XmlDocument &document);

// Moves the data of a document of kEditLayout into a tree without nodes. Throws UsageError.
EditRequest read_edit(XmlDocument document, framework::TreeHolder &request);

}  // namespace tvk::netconf
