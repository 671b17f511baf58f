// The insert record of an entry ordered by the user, from and to the attributes that YANG defines for it.
#pragma once

#include <string>

#include "qidl_tvk_datatree.h"

namespace tvk::netconf {

// Each reads the text of one attribute into the record. False when the text is not what the attribute may hold.
bool read_insert_position(const char *text, qidl_tvk_edit_insert &insert);  // yang:insert
bool read_insert_keys(const char *text, qidl_tvk_edit_insert &insert);      // yang:key, a list of [p:name='value']
void read_insert_value(const char *text, qidl_tvk_edit_insert &insert);     // yang:value

/*
 * The predicates of the record's keys, each name behind prefix ("key:", say, or ""); the raw text of a record that
 * has nothing else. "" without keys.
 */
std::string insert_key_text(const qidl_tvk_edit_insert &insert, const char *prefix);

}  // namespace tvk::netconf
