// Reads XML in one pass of libxml2's parser. The message around data becomes a document, the data itself records.
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

// The layout of a kind of document: where data stands, and how it is read.
struct Layout {
    // Tells whether an element is data. It is asked for the root, and for each other element that is not inside of
    // data.
    bool (*is_data)(const xmlNode *element);
    Values values;
    Edits edits = Edits::kTaken;
};

// The decoded part of a data element. The fault is the reason why nothing more was decoded.
struct DataElement {
    framework::TreeHolder tree;
    std::optional<framework::UsageError> fault;
    bool has_inserts = false;  // an entry has a place (yang:insert)
};

struct ReleaseDocument {
    void operator()(xmlDoc *document) const { xmlFreeDoc(document); }
};

// A document, and the data that its data elements point to.
struct ParsedXml {
    std::unique_ptr<xmlDoc, ReleaseDocument> document;
    std::deque<DataElement> data;
};

// Keeps libxml2 from writing to standard error.
void silence_xml();

/*
 * Parses a document, and decodes its data while it is read, so that the nodes of a large document need not be kept and
 * gone through again. A data element stands in the document with its own tag and without content. Comments and
 * processing instructions are passed over. Throws UsageError, which names the file, when bytes are not well formed.
 */
ParsedXml parse_xml(const DocumentBytes &bytes, const std::string &name, const Layout &layout);

// Returns the line where the start tag of an element of such a document ends.
long line_of(const xmlNode *element);

// Returns the data of an element of such a document. Its layout calls the element data.
DataElement &data_of(const xmlNode *element);

}  // namespace tvk::netconf
