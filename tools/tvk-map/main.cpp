// The program tvk-map runs mappings on a desk. This is its command line.
#include <libxml/parser.h>

#include <CLI/CLI.hpp>
#include <exception>
#include <new>
#include <sstream>
#include <string>
#include <vector>

#include "apply_command.h"
#include "edit_command.h"
#include "framework/diagnostics.h"
#include "get_command.h"
#include "netconf/xml_reader.h"
#include "output.h"
#include "print_command.h"
#include "report.h"

namespace {

using tvk::tool::ApplyOptions;
using tvk::tool::EditOptions;
using tvk::tool::GetOptions;
using tvk::tool::PrintOptions;

constexpr char kDescription[] = "Runs a model mapping on a NETCONF request, as a device's management framework would.";

constexpr char kFooter[] = R"(Exit status: 0 success; 1 the request failed, with an rpc-error on standard output;
2 usage error or unreadable input, with a message on standard error.

Examples:
  tvk-map edit --mapping openconfig_interfaces request.xml
  tvk-map get --mapping openconfig_interfaces --native running.xml filter.xml
  tvk-map apply --mapping openconfig_interfaces running.xml edit.xml
  tvk-map print running.xml
"tvk-map COMMAND --help" says more of a command.)";

constexpr char kModuleLookup[] = R"(

Module names are looked up in the folders of TVK_MAP_MODULE_PATH, separated by colons,
and then in lib/tvk-map beside the folder of this program.)";

constexpr char kEditDescription[] =
    "Walks an edit request through mappings and prints the native tree that comes out, or rpc-errors.";

constexpr char kEditFooter[] =
    R"(REQUEST is an <rpc> with <edit-config> or <copy-config>, a <config>, what a get was answered with, or a
bare top container. What is printed is an edit of native data, with the operations that the device carries
out; --apply prints the data that results.

Examples:
  tvk-map edit --mapping openconfig_interfaces request.xml
  tvk-map edit --mapping openconfig_interfaces --into running.xml --tree request.xml
  tvk-map edit --mapping openconfig_interfaces --into running.xml --apply request.xml
  tvk-map edit --mapping ./my_mapping.so --trace - < request.xml)";

constexpr char kGetDescription[] =
    "Reads native data through mappings and prints what a subtree filter selects of it, or rpc-errors.";

constexpr char kGetFooter[] =
    R"(FILTER is an <rpc> with <get> or <get-config>, one of these alone, a <filter>, or one element that is
itself the filter. Without it, or when the request has no <filter>, everything is selected; an empty
<filter> selects nothing, and so does a top container that no mapping knows.

Examples:
  tvk-map get --mapping openconfig_interfaces --native running.xml
  tvk-map get --mapping openconfig_interfaces --native running.xml --with-defaults trim filter.xml
  tvk-map get --mapping ./my_mapping.so --native running.xml --phase container --tree - < get.xml)";

constexpr char kApplyDescription[] =
    "Carries out an edit of native data and prints the data that results, or an rpc-error.";

constexpr char kApplyFooter[] =
    R"(EDIT is what tvk-map edit prints, or any <edit-config>, <config> or bare top container of native data.
Keys of lists are those that the mapping names, or --list; else the leaves in front of entries that tell
them apart.

Examples:
  tvk-map apply --mapping openconfig_interfaces running.xml edit.xml
  tvk-map apply --changes --list hosts/host=name running.xml edit.xml)";

constexpr char kPrintDescription[] = "Prints a file of data as an indented listing.";

constexpr char kPrintFooter[] =
    R"(FILE is any XML document. Of a <data> or <config> the children are listed, else the element itself.

Examples:
  tvk-map print running.xml
  tvk-map print --namespaces - < request.xml)";

// Adds the option --mapping, and returns it.
CLI::Option *add_mappings(CLI::App &command, std::vector<std::string> &mappings) {
    return command
        .add_option("--mapping", mappings,
                    "Mapping module: its name, or a path with a \"/\" to its .so file; may be given several times")
        ->type_name("MODULE")
        ->allow_extra_args(false);
}

template <typename Options>
void add_tree(CLI::App &command, Options &options) {
    command.add_flag("--tree", options.tree, "Print an indented listing instead of XML");
}

// Adds the flags of each command that walks a request.
template <typename Options>
void add_flags(CLI::App &command, Options &options) {
    add_tree(command, options);
    command.add_flag("--trace", options.trace, "Show the debug log and the trace on standard error");
}

const CLI::App *add_edit(CLI::App &app, EditOptions &options) {
    CLI::App *edit = app.add_subcommand("edit", kEditDescription);
    add_mappings(*edit, options.mappings)->required();
    edit->add_option("--into", options.into, "Native data to start from; without it the native tree starts empty")
        ->type_name("NATIVE.xml");
    CLI::Option *apply = edit->add_flag("--apply", options.apply, "Print the native data that results");
    edit->add_flag("--changes", options.changes, "With --apply: print only what is different then")->needs(apply);
    add_flags(*edit, options);
    edit->add_option("REQUEST.xml", options.request, "The request; \"-\" is standard input")->required()->type_name("");
    edit->footer(std::string(kEditFooter) + kModuleLookup);
    return edit;
}

const CLI::App *add_get(CLI::App &app, GetOptions &options) {
    CLI::App *get = app.add_subcommand("get", kGetDescription);
    add_mappings(*get, options.mappings)->required();
    get->add_option("--native", options.native, "Native data to read from; \"-\" is standard input")
        ->required()
        ->type_name("NATIVE.xml");
    get->add_option("--phase", options.phase, "The phase that marks the response: mark, the default, or container")
        ->type_name("PHASE");
    get->add_option("--with-defaults", options.with_defaults,
                    "report-all, report-all-tagged, trim or explicit, whatever the request says")
        ->type_name("MODE");
    get->add_flag("--config", options.config, "Leave state out, as <get-config> does, whatever the request says");
    add_flags(*get, options);
    get->add_option("FILTER.xml", options.filter, "The filter; \"-\" is standard input")->type_name("");
    get->footer(std::string(kGetFooter) + kModuleLookup);
    return get;
}

const CLI::App *add_apply(CLI::App &app, ApplyOptions &options) {
    CLI::App *apply = app.add_subcommand("apply", kApplyDescription);
    add_mappings(*apply, options.mappings);
    apply->add_option("--list", options.lists, "A native list and its keys; may be given several times")
        ->type_name("PATH=KEY,KEY")
        ->allow_extra_args(false);
    apply->add_flag("--changes", options.changes, "Print only what is different then");
    add_tree(*apply, options);
    apply->add_option("NATIVE.xml", options.native, "The data; \"-\" is standard input")->required()->type_name("");
    apply->add_option("EDIT.xml", options.edit, "The edit; \"-\" is standard input")->required()->type_name("");
    apply->footer(std::string(kApplyFooter) + kModuleLookup);
    return apply;
}

const CLI::App *add_print(CLI::App &app, PrintOptions &options) {
    CLI::App *print = app.add_subcommand("print", kPrintDescription);
    print->add_flag("--namespaces", options.namespaces, "Show the namespace of each node");
    print->add_option("FILE.xml", options.file, "The file; \"-\" is standard input")->required()->type_name("");
    print->footer(kPrintFooter);
    return print;
}

int run(int argc, char **argv) {
    CLI::App app{kDescription, "tvk-map"};
    app.set_version_flag("--version", "tvk-map " TVK_TOOL_VERSION);
    app.footer(kFooter);
    app.require_subcommand(1);
    EditOptions edit_options;
    GetOptions get_options;
    ApplyOptions apply_options;
    PrintOptions print_options;
    const CLI::App *edit = add_edit(app, edit_options);
    const CLI::App *get = add_get(app, get_options);
    const CLI::App *apply = add_apply(app, apply_options);
    add_print(app, print_options);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError &error) {
        if (error.get_exit_code() == static_cast<int>(CLI::ExitCodes::Success)) {
            std::ostringstream text;
            app.exit(error, text);  // help or version
            tvk::tool::write_out(text.str());
            return tvk::tool::kExitSuccess;
        }
        throw tvk::framework::UsageError(std::string(error.what()) + " (see tvk-map --help)");
    }
    if (edit->parsed()) {
        return tvk::tool::run_edit(edit_options);
    }
    if (apply->parsed()) {
        return tvk::tool::run_apply(apply_options);
    }
    return get->parsed() ? tvk::tool::run_get(get_options) : tvk::tool::run_print(print_options);
}

}  // namespace

int main(int argc, char **argv) {
    int status = tvk::tool::kExitUsage;
    tvk::netconf::silence_xml();
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
