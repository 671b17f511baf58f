// Reads documents that hold data and no request.
#pragma once

#include <string>

#include "framework/tree_holder.h"
#include "netconf/xml_document.h"

namespace tvk::netconf {

// The data of a document are the children of its <config>, <data>, or <data> in an <rpc-reply>, or else the root
// itself. Native data, which edits and reads start from, must not carry operations or places of entries.
extern const Layout kDataLayout;
extern const Layout kNativeLayout;

// Moves the top nodes of a document of either layout into data, which has no nodes yet. Throws UsageError.
void take_data(XmlDocument document, framework::TreeHolder &data);

}  // namespace tvk::netconf
