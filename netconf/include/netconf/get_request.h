// Finding what a read asks for.
#pragma once

#include <libxml/tree.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "framework/get_run.h"
#include "netconf/rpc_attributes.h"
#include "netconf/xml_document.h"

namespace tvk::netconf {

// What a read says beside its filter.
struct GetRequest {
    framework::GetParameters parameters;
    RpcAttributes attributes;
};

struct GetPayload {
    GetRequest request;
    std::optional<std::vector<xmlNode *>> filter;  // its elements, in document order; none: everything is asked for
};

// Data are the elements of a <filter>, or a root that belongs to no message.
extern const Layout kGetLayout;

/*
 * Finds the subtree filter of a read: an <rpc> with <get> or <get-config>, one of these alone, a <filter>, or one
 * element that is itself the filter. Throws UsageError when the message asks for something else.
 */
GetPayload find_get_payload(const XmlDocument &document);

// Moves what a document of kGetLayout asks for into a filter without nodes. Throws UsageError.
GetRequest read_get(XmlDocument document, const framework::Mappings &mappings, framework::TreeHolder &asked);

}  // namespace tvk::netconf
