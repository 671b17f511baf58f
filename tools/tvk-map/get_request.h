// Finding what a read asks for.
#pragma once

#include <libxml/tree.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "rpc_attributes.h"
#include "tvk_map_session.h"
#include "xml_document.h"

namespace tvk::tool {

// What a read says beside its filter.
struct GetParameters {
    uint32_t type = TVK_REQUEST_GET;
    uint8_t with_defaults = TVK_WITH_DEFAULTS_NONE;
    RpcAttributes attributes;
    bool walk_all = false;  // ask mappings for everything, whatever the filter selects: the reply is the same
};

struct GetPayload {
    GetParameters parameters;
    std::optional<std::vector<xmlNode *>> filter;  // its elements, in document order; none: everything is asked for
};

// Data are the elements of a <filter>, or a root that belongs to no message.
extern const Layout kGetLayout;

/*
 * Finds the subtree filter of a read: an <rpc> with <get> or <get-config>, one of these alone, a <filter>, or one
 * element that is itself the filter. Throws UsageError when the message asks for something else.
 */
GetPayload find_get_payload(const XmlDocument &document);

}  // namespace tvk::tool
