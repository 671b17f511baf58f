// Runs tvk-map print.
#include "print_command.h"

#include "data_file.h"
#include "output.h"
#include "report.h"

namespace tvk::tool {

int run_print(const PrintOptions &options) {
    framework::TreeHolder data;
    read_data(options.file, netconf::kDataLayout, data);
    write_out(tree_listing(data.root(), options.namespaces));
    return kExitSuccess;
}

}  // namespace tvk::tool
