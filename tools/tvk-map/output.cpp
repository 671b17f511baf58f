#include "output.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <new>

#include "diagnostics.h"
#include "tvk_map_print.h"

namespace tvk::tool {

namespace {

[[noreturn]] void fail() {
    throw UsageError("standard output", 0, std::strerror(errno));
}

// Turns standard output into a file in memory while it lives.
class CapturedOutput {
public:
    CapturedOutput() : saved_(dup(STDOUT_FILENO)), file_(memfd_create("tvk-map listing", 0)) {
        if (std::fflush(stdout) != 0 || saved_ < 0 || file_ < 0 || dup2(file_, STDOUT_FILENO) < 0) {
            const int error = errno;
            release();
            errno = error;
            fail();
        }
    }
    ~CapturedOutput() {
        std::fflush(stdout);
        dup2(saved_, STDOUT_FILENO);
        release();
    }
    CapturedOutput(const CapturedOutput &) = delete;
    CapturedOutput &operator=(const CapturedOutput &) = delete;

    std::string text() const {
        if (std::fflush(stdout) != 0 || lseek(file_, 0, SEEK_SET) < 0) {
            fail();
        }
        std::string text;
        char buffer[65536];
        ssize_t got = 0;
        while ((got = read(file_, buffer, sizeof buffer)) > 0) {
            text.append(buffer, static_cast<size_t>(got));
        }
        if (got < 0) {
            fail();
        }
        return text;
    }

private:
    void release() const {
        close(file_);
        close(saved_);
    }

    int saved_;
    int file_;
};

}  // namespace

void write_out(const std::string &text) {
    const bool written = std::fwrite(text.data(), 1, text.size(), stdout) == text.size();
    if (!written || std::fflush(stdout) != 0) {
        fail();
    }
}

std::string tree_listing(const Node &root, bool namespaces) {
    const CapturedOutput captured;
    const qerrno status = tvk_map_print_subtrees(&root, 0, namespaces ? 1 : 0);
    if (status != TVK_OK) {
        throw std::bad_alloc();  // the one failure of a listing of a tree that is there
    }
    return captured.text();
}

}  // namespace tvk::tool
