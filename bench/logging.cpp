// The cost of log and trace while they are switched off: the library as it is, beside a build of the same sources with
// empty log sites.
#include <dlfcn.h>

#include <stdexcept>

#include "relative_paths.h"

namespace tvk::bench {

namespace {

class Library {
public:
    // A library that is loaded so calls its own operations, although others of the same names are loaded.
    explicit Library(const char *path) : handle_(dlopen(path, RTLD_NOW | RTLD_LOCAL | RTLD_DEEPBIND)) {
        if (handle_ == nullptr) {
            throw std::runtime_error(dlerror());
        }
        find("tvk_map_search_or_add_list", operations_.search_or_add_list);
        find("tvk_map_free_trim_path_list_ctx", operations_.free_trim_path);
        find("tvk_map_datatree_add_path_flagged", operations_.add_path);
    }
    ~Library() { dlclose(handle_); }
    Library(const Library &) = delete;
    Library &operator=(const Library &) = delete;

    const Operations &operations() const { return operations_; }

private:
    template <class Function>
    void find(const char *name, Function &function) const {
        void *symbol = dlsym(handle_, name);
        if (symbol == nullptr) {
            throw std::runtime_error(dlerror());
        }
        function = reinterpret_cast<Function>(symbol);
    }

    void *handle_;
    Operations operations_;
};

void measure_logging(benchmark::State &state, std::size_t n, const char *path) {
    plain_paths(n);
    const Library library(path);
    measure(
        state, nodes_of(n), [] { return Build(); },
        [&](Build &build) { build_by_relative_paths(library.operations(), build, n); },
        [](Build &build) { return count_nodes(build.root()); });
}

const Benchmark compiled_in("logging", "tvk_map", [](benchmark::State &state, std::size_t n) {
    measure_logging(state, n, TVK_BENCH_LIBRARY);
});
const Benchmark compiled_out("logging", "compiled_out", [](benchmark::State &state, std::size_t n) {
    measure_logging(state, n, TVK_BENCH_LIBRARY_WITHOUT_LOG);
});

}  // namespace

}  // namespace tvk::bench
