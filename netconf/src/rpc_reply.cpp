// Writes data replies and error replies.
#include "netconf/rpc_reply.h"

#include "netconf/namespaces.h"
#include "netconf/xml_encode.h"
#include "netconf/xml_output.h"

namespace tvk::netconf {

namespace {

void start_reply(XmlOutput &output, const RpcAttributes &attributes) {
    output.start("rpc-reply");
    output.attribute("xmlns", kNetconfNamespace);
    size_t number = 0;
    for (const RpcAttribute &attribute : attributes) {
        if (attribute.ns.empty()) {
            output.attribute(attribute.name.c_str(), attribute.value);
        } else if (attribute.ns == kXmlNamespace) {
            output.attribute(("xml:" + attribute.name).c_str(), attribute.value);
        } else {
            const std::string prefix = "r" + std::to_string(++number);
            output.attribute(prefix.c_str(), attribute.name.c_str(), attribute.ns.c_str(), attribute.value);
        }
    }
}

void write_path(XmlOutput &output, const framework::XPath &path) {
    output.start("error-path");
    for (size_t i = 0; i < path.namespaces.size(); ++i) {
        output.attribute(("xmlns:ns" + std::to_string(i + 1)).c_str(), writable(path.namespaces[i]));
    }
    output.text(writable(path.text));
    output.end();
}

void write_message(XmlOutput &output, const std::string &message) {
    output.start("error-message");
    output.attribute("xml:lang", "en");
    output.text(writable(message).c_str());
    output.end();
}

void write_info(XmlOutput &output, const framework::RpcError &error) {
    output.start("error-info");
    if (!error.bad_attribute.empty()) {
        output.leaf("bad-attribute", writable(error.bad_attribute));
    }
    if (!error.bad_element.empty()) {
        output.leaf("bad-element", writable(error.bad_element).c_str());
    }
    if (error.bad_namespace) {
        output.leaf("bad-namespace", writable(*error.bad_namespace).c_str());
    }
    output.end();
}

void write_error(XmlOutput &output, const framework::RpcError &error) {
    output.start("rpc-error");
    output.leaf("error-type", "application");
    output.leaf("error-tag", error.tag);
    output.leaf("error-severity", "error");
    if (!error.path.text.empty()) {
        write_path(output, error.path);
    }
    write_message(output, error.message);
    if (!error.bad_attribute.empty() || !error.bad_element.empty() || error.bad_namespace) {
        write_info(output, error);
    }
    output.end();
}

}  // namespace

std::string encode_data_reply(const Node &root, const RpcAttributes &attributes) {
    XmlOutput output;
    start_reply(output, attributes);
    output.start("data");
    write_data(output, root);
    return output.finish();
}

std::string encode_rpc_errors(const std::vector<framework::RpcError> &errors, const RpcAttributes &attributes) {
    XmlOutput output;
    start_reply(output, attributes);
    for (const framework::RpcError &error : errors) {
        write_error(output, error);
    }
    return output.finish();
}

}  // namespace tvk::netconf
