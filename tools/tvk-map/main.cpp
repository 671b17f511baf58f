// tvk-map: runs mappings on a desk.
#include <libxml/parser.h>

#include <CLI/CLI.hpp>
#include <exception>
#include <new>

#include "diagnostics.h"
#include "edit_command.h"

namespace {

using tvk::tool::EditOptions;

constexpr char kDescription[] = "Runs a model mapping on a NETCONF request, as a device's management framework would.";

constexpr char kFooter[] = R"(Exit status: 0 success; 1 the request failed, with an rpc-error on standard output;
2 usage error or unreadable input, with a message on standard error.

Example:
  tvk-map edit --mapping openconfig_interfaces request.xml
"tvk-map COMMAND --help" says more of a command.)";

constexpr char kEditDescription[] =
    "Walks an edit request through a mapping and prints the native tree that comes out, or an rpc-error.";

constexpr char kEditFooter[] =
    R"(REQUEST is an <rpc> with <edit-config> or <copy-config>, a <config>, or a bare top container.

Examples:
  tvk-map edit --mapping openconfig_interfaces request.xml
  tvk-map edit --mapping openconfig_interfaces --into running.xml --tree request.xml
  tvk-map edit --mapping ./my_mapping.so --trace - < request.xml

Module names are looked up in the folders of TVK_MAP_MODULE_PATH, separated by colons,
and then in lib/tvk-map beside the folder of this program.)";

CLI::App *add_edit(CLI::App &app, EditOptions &options) {
    CLI::App *edit = app.add_subcommand("edit", kEditDescription);
    edit->add_option("--mapping", options.mapping, "Mapping module: its name, or a path with a \"/\" to its .so file")
        ->required()
        ->type_name("MODULE");
    edit->add_option("--into", options.into, "Native data to start from; without it the native tree starts empty")
        ->type_name("NATIVE.xml");
    edit->add_flag("--tree", options.tree, "Print an indented listing instead of XML");
    edit->add_flag("--trace", options.trace, "Show the debug log and the trace on standard error");
    edit->add_option("REQUEST.xml", options.request, "The request; \"-\" is standard input")->required()->type_name("");
    edit->footer(kEditFooter);
    return edit;
}

int run(int argc, char **argv) {
    CLI::App app{kDescription, "tvk-map"};
    app.set_version_flag("--version", "tvk-map " TVK_TOOL_VERSION);
    app.footer(kFooter);
    app.require_subcommand(1);
    EditOptions edit_options;
    const CLI::App *edit = add_edit(app, edit_options);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError &error) {
        if (error.get_exit_code() == static_cast<int>(CLI::ExitCodes::Success)) {
            return app.exit(error);  // help or version
        }
        throw tvk::tool::UsageError(std::string(error.what()) + " (see tvk-map --help)");
    }
    return edit->parsed() ? tvk::tool::run_edit(edit_options) : tvk::tool::kExitUsage;
}

}  // namespace

int main(int argc, char **argv) {
    int status = tvk::tool::kExitUsage;
    try {
        status = run(argc, argv);
    } catch (const std::bad_alloc &) {
        tvk::tool::report("out of memory");
    } catch (const std::exception &error) {
        tvk::tool::report(error.what());
    }
    xmlCleanupParser();
    return status;
}
