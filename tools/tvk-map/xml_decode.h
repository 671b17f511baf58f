// From XML elements to data tree records.
#pragma once

#include <libxml/tree.h>

#include <vector>

#include "tree_holder.h"
#include "xml_document.h"

namespace tvk::tool {

// White space around a value: part of it in data, but not in a filter.
enum class Values { kAsWritten, kTrimmed };

/*
 * Makes elements the children of root, which has none yet. Of each element and, down to the leaves, of its child
 * elements:
 *   - name and namespace become tag and ns; text becomes data when there are no child elements. White space beside
 *     child elements is formatting; white space with a line break and nothing else is no value. Other text is kept
 *     as values says, text beside child elements is an error. Comments and processing instructions are passed over.
 *   - A value "p:name" whose prefix is declared where it stands is an identity: data is the name, data_ns the
 *     namespace.
 *   - A namespace has at most 1,000 characters.
 *   - nc:operation becomes the operation; yang:insert, yang:key and yang:value the insert record. Other attributes go
 *     to attributes, by name, or as "{namespace}name" when they have a namespace.
 * Child elements that are decoded may be gone from the document.
 *
 * Throws UsageError with file and line; root then holds what was decoded so far.
 */
void decode_elements(const XmlDocument &document, const std::vector<xmlNode *> &elements, Values values, Node &root);

}  // namespace tvk::tool
