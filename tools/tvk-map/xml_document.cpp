#include "xml_document.h"

#include <libxml/parser.h>
#include <libxml/parserInternals.h>
#include <libxml/xmlerror.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <utility>

#include "diagnostics.h"
#include "document_bytes.h"

namespace tvk::tool {

namespace {

constexpr char kStandardInput[] = "standard input";

struct CloseFile {
    void operator()(std::FILE *file) const {
        if (file != stdin) {
            std::fclose(file);
        }
    }
};

std::string read_bytes(const std::string &path, const std::string &name) {
    const std::unique_ptr<std::FILE, CloseFile> file(path == "-" ? stdin : std::fopen(path.c_str(), "rb"));
    if (!file) {
        throw UsageError(name, 0, std::string("cannot be opened: ") + std::strerror(errno));
    }
    std::string bytes;
    char buffer[65536];
    size_t got = 0;
    while ((got = std::fread(buffer, 1, sizeof buffer, file.get())) > 0) {
        bytes.append(buffer, got);
    }
    if (std::ferror(file.get()) != 0) {
        throw UsageError(name, 0, std::string("cannot be read: ") + std::strerror(errno));
    }
    return bytes;
}

// What the parser stumbled over first; later messages are mostly consequences.
struct FirstFault {
    std::string reason;
    long line = 0;

    void note(long at, std::string what) {
        if (reason.empty()) {
            line = at;
            reason = std::move(what);
        }
    }
};

void note_parser_error(void *user, xmlError *error) {
    auto &parser = *static_cast<xmlParserCtxt *>(user);
    if (error->level < XML_ERR_ERROR) {
        return;
    }
    std::string reason = error->message != nullptr ? error->message : "unknown fault";
    reason.erase(reason.find_last_not_of(" \n") + 1);
    static_cast<FirstFault *>(parser._private)->note(error->line, "not well-formed XML: " + reason);
}

void refuse_document_type(void *user, const xmlChar *, const xmlChar *, const xmlChar *) {
    auto &parser = *static_cast<xmlParserCtxt *>(user);
    static_cast<FirstFault *>(parser._private)
        ->note(xmlSAX2GetLineNumber(&parser), "a document type declaration is not accepted");
    xmlStopParser(&parser);
}

}  // namespace

bool is_white(const char *text) {
    return text[std::strspn(text, kBlanks)] == '\0';
}

std::string_view without_blanks(std::string_view text) {
    const size_t start = text.find_first_not_of(kBlanks);
    return start == std::string_view::npos ? std::string_view()
                                           : text.substr(start, text.find_last_not_of(kBlanks) - start + 1);
}

std::optional<std::string> attribute_of(const xmlNode *element, const char *name) {
    xmlChar *value = xmlGetProp(element, as_xml(name));
    if (value == nullptr) {
        return std::nullopt;
    }
    std::string text = as_text(value);
    xmlFree(value);
    return text;
}

XmlDocument XmlDocument::read(const std::string &path) {
    const std::string name = path == "-" ? kStandardInput : path;
    return parse(read_bytes(path, name), name);
}

XmlDocument XmlDocument::parse(const std::string &bytes, const std::string &name) {
    check_bytes(bytes, name);

    struct ReleaseParser {
        void operator()(xmlParserCtxt *parser) const {
            xmlFreeDoc(parser->myDoc);
            xmlFreeParserCtxt(parser);
        }
    };
    const std::unique_ptr<xmlParserCtxt, ReleaseParser> parser(
        xmlCreateMemoryParserCtxt(bytes.data(), static_cast<int>(bytes.size())));
    if (!parser) {
        throw std::bad_alloc();
    }
    FirstFault fault;
    parser->_private = &fault;
    xmlCtxtUseOptions(parser.get(), XML_PARSE_NONET | XML_PARSE_NOCDATA | XML_PARSE_COMPACT | XML_PARSE_BIG_LINES);
    parser->sax->serror = note_parser_error;
    parser->sax->internalSubset = refuse_document_type;
    const bool parsed = xmlParseDocument(parser.get()) == 0 && parser->wellFormed != 0;
    if (parsed && parser->input->cur != parser->input->end) {
        fault.note(xmlSAX2GetLineNumber(parser.get()), "not well-formed XML: a zero character");
    }
    if (!parsed || !fault.reason.empty()) {
        throw UsageError(name, fault.line, fault.reason.empty() ? "not well-formed XML" : fault.reason);
    }
    return XmlDocument(name, DocumentPtr(std::exchange(parser->myDoc, nullptr)));
}

std::vector<xmlNode *> XmlDocument::child_elements(const xmlNode *parent) const {
    std::vector<xmlNode *> elements;
    for (xmlNode *child = parent->children; child != nullptr; child = child->next) {
        if (child->type == XML_ELEMENT_NODE) {
            elements.push_back(child);
        } else if (child->type == XML_TEXT_NODE && !is_white(as_text(child->content))) {
            fail(parent, std::string("<") + as_text(parent->name) + "> holds text where only elements may stand");
        }
    }
    return elements;
}

void XmlDocument::fail(const xmlNode *node, const std::string &reason) const {
    throw UsageError(name_, xmlGetLineNo(node), reason);
}

}  // namespace tvk::tool
