// Makes data tree records of tags and texts while XML is read.
#pragma once

#include <libxml/tree.h>

#include <string>
#include <string_view>
#include <vector>

#include "framework/tree_holder.h"

namespace tvk::netconf {

// White space around a value is part of it in data, but not in a filter.
enum class Values { kAsWritten, kTrimmed };

// Operations and insert positions are part of an edit. They are refused in data that an edit starts from.
enum class Edits { kTaken, kRefused };

// A start tag as libxml2's parser hands it over. Its texts live as long as the parser, the values of its attributes
// until the parser goes on.
struct StartTag {
    const xmlChar *name;
    const xmlChar *ns;                   // null for none
    const xmlChar *const *declarations;  // two texts each: the prefix, null for none, and the namespace
    std::size_t declaration_count;
    const xmlChar *const *attributes;  // five each: name, prefix, namespace, value and end of the value
    std::size_t attribute_count;
    long line;
};

/*
 * Decodes one data element with all elements in it:
 *   - The name and namespace of an element become tag and ns. The text of an element without child elements becomes
 *     data, with the white space around it or without, as values says. White space that has a line break and nothing
 *     else is no value. White space beside child elements is formatting; other text there is an error.
 *   - A value "p:name" may be an identity when its prefix is declared. data is then the text as it stands, and data_ns
 *     the namespace.
 *   - A namespace has at most 1,000 characters.
 *   - nc:operation becomes the operation; yang:insert, yang:key and yang:value become the insert record. Other
 *     attributes go to attributes, by name, or as "{namespace}name" when they have a namespace.
 * start and end throw UsageError with file and line, and std::bad_alloc. Nothing but the destructor may be called then.
 */
class DataDecoder {
public:
    // file is named in messages. Prefixes may be declared on place, too, and on the elements around it. Both outlive
    // the decoder.
    DataDecoder(const std::string &file, const xmlNode *place, Values values, Edits edits)
        : file_(file), place_(place), values_(values), edits_(edits) {}
    DataDecoder(const DataDecoder &) = delete;
    DataDecoder &operator=(const DataDecoder &) = delete;
    ~DataDecoder();

    // Begins an element in the one that is open.
    void start(const StartTag &tag);
    // Takes a piece of text of the open element.
    void text(std::string_view piece) { text_ += piece; }
    // Ends the open element.
    void end();

    // Hands over the data element, after its end. The caller owns it.
    Node take();
    // Tells whether a node carries a place (yang:insert).
    bool met_insert() const { return met_insert_; }

private:
    struct Element {
        Node node;
        std::size_t child;        // the place of its first child in ended_
        std::size_t declaration;  // the place of its first declaration in declarations_
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
    std::vector<Node> ended_;  // nodes whose parents are still open
    std::vector<Declaration> declarations_;
    std::string text_;  // the text since the last tag
};

}  // namespace tvk::netconf
