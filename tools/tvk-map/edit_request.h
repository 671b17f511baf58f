// Finding what an edit asks for.
#pragma once

#include <libxml/tree.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "rpc_attributes.h"
#include "xml_document.h"

namespace tvk::tool {

// The payload of an edit request.
struct EditPayload {
    std::vector<xmlNode *> tops;  // top containers, in document order
    bool is_whole = false;        // they replace the whole configuration: <copy-config>
    bool is_reply = false;        // they are what a get was answered with, which may hold state
    RpcAttributes attributes;
    std::optional<uint32_t> default_operation;  // of top containers without one of their own
};

// Data are the elements of a <config> or <data>, or a root that belongs to no message.
extern const Layout kEditLayout;

/*
 * Finds the top containers of an edit: an <rpc> with <edit-config> or <copy-config>, one of these alone, a <config>,
 * what a get was answered with, or a bare top container. Throws UsageError when the message asks for something else.
 */
EditPayload find_edit_payload(const XmlDocument &document);

}  // namespace tvk::tool
