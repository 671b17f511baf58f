// Finds the filter and the parameters of a read request.
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

// The parameters of a read request, and the attributes that its reply repeats.
struct GetRequest {
    framework::GetParameters parameters;
    RpcAttributes attributes;
};

// The parameters and the elements of the filter, in document order. Without a filter everything is asked for.
struct GetPayload {
    GetRequest request;
    std::optional<std::vector<xmlNode *>> filter;
};

// The data of a read are the elements in a <filter>, or a root that is no part of a message.
extern const Layout kGetLayout;

/*
 * Finds the subtree filter of a read. The document is an <rpc> with <get> or <get-config>, one of these alone, a
 * <filter>, or one element that is itself the filter. Throws UsageError when the message asks for something else.
 */
GetPayload find_get_payload(const XmlDocument &document);

// Moves the filter of a document of kGetLayout into asked, which has no nodes yet. Without a filter asked selects all
// that the mappings know. Throws UsageError.
GetRequest read_get(XmlDocument document, const framework::Mappings &mappings, framework::TreeHolder &asked);

}  // namespace tvk::netconf
