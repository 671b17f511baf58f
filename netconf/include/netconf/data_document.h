// Documents of data.
#pragma once

#include <string>

#include "framework/tree_holder.h"
#include "netconf/xml_document.h"

namespace tvk::netconf {

// Data are the children of a <config>, of a <data>, also of one in an <rpc-reply>, or else the root itself. Operations
// and the places of entries are refused in native data, which edits and reads start from.
extern const Layout kDataLayout;
extern const Layout kNativeLayout;

// Moves the top nodes out of a document of either layout. Throws UsageError.
void take_data(XmlDocument document, framework::TreeHolder &data);

}  // namespace tvk::netconf
