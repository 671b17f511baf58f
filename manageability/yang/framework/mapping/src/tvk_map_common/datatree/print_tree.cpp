// The listing on standard output.
#include <cstdio>

#include "tvk_map_common/datatree/listing.h"
#include "tvk_map_common/internal/log.h"

namespace tvk {

namespace {

class Printer {
public:
    static qerrno name(const Node &node, int indent) {
        std::printf("%*s%s", indent, "", shown(node.tag));
        return TVK_OK;
    }
    static qerrno name_with_ns(const Node &node, int indent) {
        std::printf("%*s%s (%s)", indent, "", shown(node.tag), shown(node.ns));
        return TVK_OK;
    }
    static void data(const char *data) { std::printf(" : %s", shown(data)); }
    static void operation(const char *label) { std::fputs(label, stdout); }
    static void position(const char *label) { std::fputs(label, stdout); }
    static void node_kind(const char *label) { std::fputs(label, stdout); }
    static void keys(const struct tvk_map_insert_info &info) {
        std::fputs("(key) ", stdout);
        for (int32_t i = 0; i < info.key_count; ++i) {
            std::printf("(%s=%s)", info.keys[i].name, info.keys[i].value);
        }
    }
    static void value(const char *value) { std::printf("(value=%s)", value); }
    static void attribute(const struct qidl_tvk_name_value &attribute) {
        std::printf(" %s=%s", shown(attribute.name), shown(attribute.value));
    }
    static void end_line() { std::fputc('\n', stdout); }
};

}  // namespace

}  // namespace tvk

using namespace tvk;

qerrno tvk_map_print_subtrees(const struct qidl_tvk_datatree *node, uint32_t depth, int namespace_mode) {
    if (node == nullptr) {
        return TVK_ERR_INVALID;
    }
    Printer printer;
    return list_descendants(*node, depth, namespace_mode != 0, printer);
}
