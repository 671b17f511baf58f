// The XML namespaces of NETCONF, YANG and XML itself.
#pragma once

namespace tvk::netconf {

inline constexpr char kNetconfNamespace[] = "urn:ietf:params:xml:ns:netconf:base:1.0";
inline constexpr char kWithDefaultsNamespace[] = "urn:ietf:params:xml:ns:yang:ietf-netconf-with-defaults";
inline constexpr char kYangNamespace[] = "urn:ietf:params:xml:ns:yang:1";
inline constexpr char kXmlNamespace[] = "http://www.w3.org/XML/1998/namespace";

}  // namespace tvk::netconf
