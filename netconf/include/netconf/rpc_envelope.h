// The elements that NETCONF puts around data. They stand in NETCONF's namespace or in none.
#pragma once

#include <libxml/tree.h>

#include <initializer_list>
#include <optional>
#include <string>
#include <vector>

#include "netconf/rpc_attributes.h"
#include "netconf/xml_document.h"

namespace tvk::netconf {

bool is_envelope(const xmlNode *element, const char *name);

// The first such element in parent, or null. Text in parent is an error.
xmlNode *find_envelope(const XmlDocument &document, const xmlNode *parent, const char *name);

// Throws UsageError for the first child of parent that is none of names, or that stands there a second time.
void check_children(const XmlDocument &document, const xmlNode *parent, std::initializer_list<const char *> names);

// Whether root is what a get is answered with, an <rpc-reply> or its <data>, and the elements of that data. The latter
// throws UsageError for a reply without data.
bool is_reply(const xmlNode *root);
std::vector<xmlNode *> open_reply(const XmlDocument &document, xmlNode *root);

// "<name>", for messages.
std::string named(const xmlNode *element);

// The text of a parameter without white space around it. Elements in it are an error.
std::string parameter_text(const XmlDocument &document, const xmlNode *parameter);

struct Rpc {
    xmlNode *operation;
    RpcAttributes attributes;
};

// Throws UsageError when the <rpc> element does not hold exactly one operation.
Rpc open_rpc(const XmlDocument &document, xmlNode *rpc);

}  // namespace tvk::netconf
