// Reads the elements that NETCONF puts around data. They are in NETCONF's namespace or in none.
#pragma once

#include <libxml/tree.h>

#include <initializer_list>
#include <optional>
#include <string>
#include <vector>

#include "netconf/rpc_attributes.h"
#include "netconf/xml_document.h"

namespace tvk::netconf {

// Tells whether an element is the NETCONF element of that name.
bool is_envelope(const xmlNode *element, const char *name);

// Returns the first NETCONF element of that name in parent, or null. Throws UsageError when parent holds text.
xmlNode *find_envelope(const XmlDocument &document, const xmlNode *parent, const char *name);

// Throws UsageError for the first child of parent that is none of names, or that stands there a second time.
void check_children(const XmlDocument &document, const xmlNode *parent, std::initializer_list<const char *> names);

// Tells whether root is the answer to a get: an <rpc-reply>, or its <data>.
bool is_reply(const xmlNode *root);

// Returns the elements in the data of such a root. Throws UsageError when it has no data.
std::vector<xmlNode *> open_reply(const XmlDocument &document, xmlNode *root);

// Returns "<name>", for messages.
std::string named(const xmlNode *element);

// Returns the text of a parameter without white space around it. Throws UsageError when it holds elements.
std::string parameter_text(const XmlDocument &document, const xmlNode *parameter);

// The operation of an <rpc>, and the attributes of the <rpc>.
struct Rpc {
    xmlNode *operation;
    RpcAttributes attributes;
};

// Reads an <rpc>. Throws UsageError when it does not hold exactly one operation.
Rpc open_rpc(const XmlDocument &document, xmlNode *rpc);

}  // namespace tvk::netconf
