// Makes texts fit for people.
#include "framework/diagnostics.h"

#include <cstdio>

namespace tvk::framework {

namespace {

// Returns the beginning of a reason, which may quote texts of any length. It is cut between characters of UTF-8.
std::string shortened(const std::string &reason) {
    constexpr size_t kMaxReason = 1000;
    if (reason.size() <= kMaxReason) {
        return reason;
    }
    size_t end = kMaxReason;
    while (end > 0 && (static_cast<unsigned char>(reason[end]) & 0xc0) == 0x80) {
        --end;
    }
    return reason.substr(0, end) + "...";
}

std::string located(const std::string &file, long line, const std::string &reason) {
    return (line > 0 ? file + ":" + std::to_string(line) : file) + ": " + shortened(printable(reason));
}

// Returns the bytes of the control character that begins at a place of text, or 0 when none does. Those from U+0080 on
// have two bytes in UTF-8.
size_t length_of_control(std::string_view text, size_t at) {
    const auto byte = static_cast<unsigned char>(text[at]);
    const auto next = static_cast<unsigned char>(at + 1 < text.size() ? text[at + 1] : 0);
    if (byte < ' ' || byte == 0x7f) {
        return 1;
    }
    return byte == 0xc2 && next >= 0x80 && next < 0xa0 ? 2 : 0;
}

}  // namespace

std::string printable(const std::string &text) {
    std::string shown;
    shown.reserve(text.size());
    for (size_t i = 0; i < text.size(); ++i) {
        const size_t length = length_of_control(text, i);
        if (length == 0) {
            shown += text[i];
            continue;
        }
        i += length - 1;
        char escaped[8];
        std::snprintf(escaped, sizeof escaped, "\\x%02x", static_cast<unsigned>(static_cast<unsigned char>(text[i])));
        shown += text[i] == '\n' ? "\\n" : text[i] == '\r' ? "\\r" : text[i] == '\t' ? "\\t" : escaped;
    }
    return shown;
}

bool has_controls(std::string_view text) {
    for (size_t i = 0; i < text.size(); ++i) {
        if (length_of_control(text, i) != 0) {
            return true;
        }
    }
    return false;
}

std::string quoted(const std::string &text) {
    return "'" + text + "'";
}

UsageError::UsageError(const std::string &file, long line, const std::string &reason)
    : std::runtime_error(located(file, line, reason)) {}

}  // namespace tvk::framework
