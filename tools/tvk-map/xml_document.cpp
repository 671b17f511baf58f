#include "xml_document.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>

#include "diagnostics.h"
#include "document_bytes.h"
#include "heap.h"

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

}  // namespace

std::optional<std::string> attribute_of(const xmlNode *element, const char *name) {
    xmlChar *value = xmlGetProp(element, as_xml(name));
    if (value == nullptr) {
        return std::nullopt;
    }
    std::string text = as_text(value);
    xmlFree(value);
    return text;
}

XmlDocument XmlDocument::read(const std::string &path, const Layout &layout) {
    const std::string name = path == "-" ? kStandardInput : path;
    return parse(read_bytes(path, name), name, layout);
}

XmlDocument XmlDocument::parse(std::string bytes, const std::string &name, const Layout &layout) {
    const DocumentBytes document = prepare_bytes(std::move(bytes), name);
    return XmlDocument(name, parse_xml(document, name, layout));
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

void XmlDocument::fail(const xmlNode *element, const std::string &reason) const {
    throw UsageError(name_, line_of(element), reason);
}

void move_data(const std::vector<xmlNode *> &elements, Node &root) {
    if (elements.empty()) {
        return;
    }
    root.subtrees = zeroed_array<Node>(elements.size());
    set_present(root, TVK_HAS_SUBTREES);
    for (const xmlNode *element : elements) {
        DataElement &data = data_of(element);
        if (data.fault) {
            throw UsageError(*data.fault);
        }
        root.subtrees[root.subtree_count++] = std::exchange(data.tree.root(), Node{});
    }
}

}  // namespace tvk::tool
