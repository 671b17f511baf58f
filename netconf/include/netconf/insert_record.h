// Reads and writes the attributes by which YANG gives an entry its place: yang:insert, yang:key, yang:value.
#pragma once

#include <string>

#include "qidl_tvk_datatree.h"

namespace tvk::netconf {

// Reads the text of yang:insert into the record. Returns false when it is no position.
bool read_insert_position(const char *text, qidl_tvk_edit_insert &insert);

// Reads the text of yang:key, a list of [p:name='value'], into the record, which has no keys yet. Returns false when it
// is no such list. Throws std::bad_alloc.
bool read_insert_keys(const char *text, qidl_tvk_edit_insert &insert);

// Reads the text of yang:value into the record, which has no value yet. Throws std::bad_alloc.
void read_insert_value(const char *text, qidl_tvk_edit_insert &insert);

/*
 * Returns the text of yang:key: the predicates of the record's keys, each name behind prefix, which may be "". A record
 * with the raw text alone gives that text, one without keys gives "".
 */
std::string insert_key_text(const qidl_tvk_edit_insert &insert, const char *prefix);

}  // namespace tvk::netconf
