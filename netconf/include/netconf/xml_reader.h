// One pass of libxml2's parser: the message around data becomes a document, the data itself records.
#pragma once

#include <libxml/tree.h>

#include <deque>
#include <memory>
#include <optional>
#include <string>

#include "framework/diagnostics.h"
#include "framework/tree_holder.h"
#include "netconf/document_bytes.h"
#include "netconf/xml_decode.h"

namespace tvk::netconf {

// Where data stands in a kind of file, and how its values are read.
struct Layout {
    // Asked for the root, and for each other element around which there is no data.
    bool (*is_data)(const xmlNode *element);
    Values values;
    Edits edits = Edits::kTaken;
};

// What was decoded of a data element, and why no more of it.
struct DataElement {
    framework::TreeHolder tree;
    std::optional<framework::UsageError> fault;
    bool has_inserts = false;  // places of entries
};

struct ReleaseDocument {
    void operator()(xmlDoc *document) const { xmlFreeDoc(document); }
};

struct ParsedXml {
    std::unique_ptr<xmlDoc, ReleaseDocument> document;
    std::deque<DataElement> data;  // the elements of the document point to theirs
};

// Lets libxml2 write nothing to standard error by itself.
void silence_xml();

/*
 * Data is decoded while it is read, so that the nodes of a large document need not be kept and gone through again: a
 * data element stands in the document with its own tag and without content. Comments and processing instructions are
 * passed over. Throws UsageError, with name for the file, where bytes are not well formed.
 */
ParsedXml parse_xml(const DocumentBytes &bytes, const std::string &name, const Layout &layout);

// The line where the start tag of an element of such a document ends.
long line_of(const xmlNode *element);

// What stands for an element of such a document that its layout calls data.
DataElement &data_of(const xmlNode *element);

}  // namespace tvk::netconf
