// Drives the parser, and sends what it meets to the document or to the decoder.
#include "netconf/xml_reader.h"

#include <libxml/parser.h>
#include <libxml/parserInternals.h>
#include <libxml/xmlerror.h>

#include <cstdint>
#include <exception>
#include <new>
#include <string_view>
#include <utility>

#include "netconf/xml_text.h"

namespace tvk::netconf {

namespace {

constexpr int kMaxDeclarations = 1000;

// The first fault that the parser reports. Later ones are mostly consequences.
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

void say_nothing(void *, const char *, ...) {}

// Takes out the parser's advice, which names an option that no user of the tool has.
void take_out_advice(std::string &reason) {
    constexpr std::string_view kAdvice = " use XML_PARSE_HUGE option";
    if (const size_t at = reason.find(kAdvice); at != std::string::npos) {
        reason.erase(at, kAdvice.size());
    }
}

xmlParserCtxt *make_parser(const std::string &text) {
    silence_xml();
    return xmlCreateMemoryParserCtxt(text.data(), static_cast<int>(text.size()));
}

struct ReleaseParser {
    void operator()(xmlParserCtxt *parser) const {
        xmlFreeDoc(parser->myDoc);
        xmlFreeParserCtxt(parser);
    }
};

class Reader {
public:
    Reader(const DocumentBytes &bytes, const std::string &name, const Layout &layout)
        : name_(name), layout_(layout), parser_(make_parser(bytes.text)) {
        if (!parser_) {
            throw std::bad_alloc();
        }
        // Without NOENT an "&" of an attribute would come as "&#38;". NOENT lets in no more than that, as a document
        // without a document type has no entities of its own. xml:id does not concern data.
        xmlCtxtUseOptions(parser_.get(), XML_PARSE_NONET | XML_PARSE_NOCDATA | XML_PARSE_NOENT |
                                             (bytes.is_recoded ? XML_PARSE_IGNORE_ENC : 0));
        parser_->loadsubset |= XML_SKIP_IDS;
        parser_->_private = this;
        xmlSAXHandler &sax = *parser_->sax;
        sax.serror = on_error;
        sax.internalSubset = on_document_type;
        sax.startElementNs = on_start;
        sax.endElementNs = on_end;
        sax.characters = on_text;
        sax.ignorableWhitespace = on_text;
        sax.comment = nullptr;
        sax.processingInstruction = nullptr;
    }

    ParsedXml read() {
        const bool parsed = xmlParseDocument(parser_.get()) == 0 && parser_->wellFormed != 0;
        if (failure_) {
            std::rethrow_exception(failure_);
        }
        if (parsed && parser_->input->cur != parser_->input->end) {
            fault_.note(line(), "not well-formed XML: a zero character");
        }
        if (!parsed || !fault_.reason.empty()) {
            throw framework::UsageError(name_, fault_.line,
                                        fault_.reason.empty() ? "not well-formed XML" : fault_.reason);
        }
        parsed_.document.reset(std::exchange(parser_->myDoc, nullptr));
        return std::move(parsed_);
    }

private:
    // No exception may pass through the parser, so the first one is kept until the parser has returned. The parser is
    // not stopped: it would release the input, from which a step around this one may still read.
    template <typename Step>
    static void guard(void *user, Step step) {
        Reader &reader = *static_cast<Reader *>(static_cast<xmlParserCtxt *>(user)->_private);
        if (reader.failure_) {
            return;
        }
        try {
            step(reader);
        } catch (...) {
            reader.failure_ = std::current_exception();
        }
    }

    static void on_error(void *user, xmlError *error) {
        if (error->level >= XML_ERR_ERROR) {
            guard(user, [&](Reader &reader) {
                std::string reason = error->message != nullptr ? error->message : "unknown fault";
                reason.erase(reason.find_last_not_of(" \n") + 1);
                take_out_advice(reason);
                reader.fault_.note(error->line, "not well-formed XML: " + reason);
            });
        }
    }

    static void on_document_type(void *user, const xmlChar *, const xmlChar *, const xmlChar *) {
        guard(user,
              [](Reader &reader) { reader.fault_.note(reader.line(), "a document type declaration is not accepted"); });
        xmlStopParser(static_cast<xmlParserCtxt *>(user));  // before it reads an entity
    }

    static void on_start(void *user, const xmlChar *name, const xmlChar *prefix, const xmlChar *ns,
                         int declaration_count, const xmlChar **declarations, int attribute_count, int defaulted_count,
                         const xmlChar **attributes) {
        guard(user, [&](Reader &reader) {
            if (reader.has_many_declarations()) {
                reader.fault_.note(reader.line(), "more than " + std::to_string(kMaxDeclarations) +
                                                      " namespace declarations are in force");
                xmlStopParser(reader.parser_.get());
                return;
            }
            bool is_data = reader.data_depth_ > 0;
            if (!is_data) {
                const xmlNode *around = reader.parser_->node;
                xmlSAX2StartElementNs(user, name, prefix, ns, declaration_count, declarations, attribute_count,
                                      defaulted_count, attributes);
                is_data = reader.parser_->node != around && reader.enter(*reader.parser_->node);
            }
            if (is_data) {
                const StartTag tag{name,         ns,
                                   declarations, static_cast<size_t>(declaration_count),
                                   attributes,   static_cast<size_t>(attribute_count),
                                   reader.line()};
                ++reader.data_depth_;
                reader.decode([&](DataDecoder &decoder) { decoder.start(tag); });
            }
        });
    }

    static void on_text(void *user, const xmlChar *text, int length) {
        guard(user, [&](Reader &reader) {
            if (reader.data_depth_ == 0) {
                xmlSAX2Characters(user, text, length);
                return;
            }
            reader.decode([&](DataDecoder &decoder) {
                decoder.text(std::string_view(as_text(text), static_cast<size_t>(length)));
            });
        });
    }

    static void on_end(void *user, const xmlChar *name, const xmlChar *prefix, const xmlChar *ns) {
        guard(user, [&](Reader &reader) {
            if (reader.data_depth_ > 0) {
                reader.decode([](DataDecoder &decoder) { decoder.end(); });
                if (--reader.data_depth_ > 0) {
                    return;
                }
                reader.leave_data();
            }
            xmlSAX2EndElementNs(user, name, prefix, ns);
        });
    }

    // Tells whether more declarations are in force than are let in. The parser looks through all of them for each
    // prefix.
    bool has_many_declarations() const { return parser_->nsNr > 2 * kMaxDeclarations; }

    long line() { return xmlSAX2GetLineNumber(parser_.get()); }

    // Notes a new element of the document, and returns whether it is data. Its line is kept apart, as the element
    // itself counts to 65,535.
    bool enter(xmlNode &element) {
        element.psvi = reinterpret_cast<void *>(static_cast<intptr_t>(line()));
        if (!layout_.is_data(&element)) {
            return false;
        }
        element._private = &parsed_.data.emplace_back();
        decoder_.emplace(name_, &element, layout_.values, layout_.edits);
        return true;
    }

    // Keeps the first fault of a data element until its data is asked for, since the message around it may be refused
    // before. Nothing of the rest of the element is decoded.
    template <typename Step>
    void decode(Step step) {
        if (!decoder_) {
            return;
        }
        try {
            step(*decoder_);
        } catch (const framework::UsageError &fault) {
            parsed_.data.back().fault = fault;
            decoder_.reset();
        }
    }

    void leave_data() {
        if (decoder_) {
            parsed_.data.back().has_inserts = decoder_->met_insert();
            parsed_.data.back().tree.root() = decoder_->take();
            decoder_.reset();
        }
    }

    const std::string &name_;
    const Layout &layout_;
    std::unique_ptr<xmlParserCtxt, ReleaseParser> parser_;
    FirstFault fault_;
    std::exception_ptr failure_;
    ParsedXml parsed_;
    std::optional<DataDecoder> decoder_;  // for the last data element, until its end or a fault
    size_t data_depth_ = 0;               // open tags of that element
};

}  // namespace

void silence_xml() {
    xmlSetGenericErrorFunc(nullptr, say_nothing);
}

ParsedXml parse_xml(const DocumentBytes &bytes, const std::string &name, const Layout &layout) {
    return Reader(bytes, name, layout).read();
}

long line_of(const xmlNode *element) {
    return static_cast<long>(reinterpret_cast<intptr_t>(element->psvi));
}

DataElement &data_of(const xmlNode *element) {
    return *static_cast<DataElement *>(element->_private);
}

}  // namespace tvk::netconf
