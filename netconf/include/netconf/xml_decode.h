// From the tags and texts of XML, as they are read, to data tree records.
#pragma once

#include <libxml/tree.h>

#include <string>
#include <string_view>
#include <vector>

#include "framework/tree_holder.h"

namespace tvk::netconf {

// White space around a value: part of it in data, but not in a filter.
enum class Values { kAsWritten, kTrimmed };

// Operations and insert positions: part of an edit, but not of data that an edit is made of.
enum class Edits { kTaken, kRefused };

// A start tag as libxml2's parser tells it. Texts live as long as the parser, values of attributes until it goes on.
struct StartTag {
    const xmlChar *name;
    const xmlChar *ns;                   // null for none
    const xmlChar *const *declarations;  // of each the prefix, null for none, and the namespace
    std::size_t declaration_count;
    const xmlChar *const *attributes;  // of each the name, prefix, namespace, value and the value's end
    std::size_t attribute_count;
    long line;
};

/*
 * Decodes one data element. Of it and, down to the leaves, of its child elements:
 *   - name and namespace become tag and ns; text becomes data when there are no child elements. White space beside
 *     child elements is formatting; white space with a line break and nothing else is no value. Other text is kept
 *     as values says, text beside child elements is an error.
 *   - A value "p:name" whose prefix is declared where it stands may be an identity: data is the text as it stands,
 *     data_ns the namespace.
 *   - A namespace has at most 1,000 characters.
 *   - nc:operation becomes the operation; yang:insert, yang:key and yang:value the insert record. Other attributes go
 *     to attributes, by name, or as "{namespace}name" when they have a namespace.
 * start and end throw UsageError with file and line; then nothing but the destructor may be called.
 */
class DataDecoder {
public:
    // The file is for messages. Prefixes may be declared on place, too, and on the elements around it.
    DataDecoder(const std::string &file, const xmlNode *place, Values values, Edits edits)
        : file_(file), place_(place), values_(values), edits_(edits) {}
    DataDecoder(const DataDecoder &) = delete;
    DataDecoder &operator=(const DataDecoder &) = delete;
    ~DataDecoder();

    void start(const StartTag &tag);
    void text(std::string_view piece) { text_ += piece; }
    void end();  // of the element that started last and has not ended

    // The data element, after its end; the caller owns it.
    Node take();
    // Whether a node says where its entry has its place.
    bool met_insert() const { return met_insert_; }

private:
    struct Element {
        Node node;
        std::size_t child;        // its first one in ended_
        std::size_t declaration;  // its first one in declarations_
        long line;
    };
    struct Declaration {
        const char *prefix;
        const char *ns;
    };

    void declare(const StartTag &tag);
    void decode_attributes(const StartTag &tag);
    void check_insert() const;
    void decode_operation(const std::string &text);
    void add_attribute(const char *name, const char *ns, const std::string &text, std::size_t room);
    void take_children();
    void set_value();
    void refuse_text_beside_elements() const;
    const char *identity_namespace(const std::string &prefix, const char *name) const;
    const char *checked_namespace(const char *ns) const;
    [[noreturn]] void refuse(const char *what, const std::string &text, const std::string &why) const;
    [[noreturn]] void fail(const std::string &reason) const;

    const std::string &file_;
    const xmlNode *place_;
    Values values_;
    Edits edits_;
    bool met_insert_ = false;
    std::vector<Element> open_;
    std::vector<Node> ended_;  // those whose parents have not
    std::vector<Declaration> declarations_;
    std::string text_;  // since the last tag; or in all, while the element has no child elements
};

}  // namespace tvk::netconf
