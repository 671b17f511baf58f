// Writes standard output, and catches the listings that the library prints there.
#include "output.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <new>
#include <utility>
#include <vector>

#include "framework/diagnostics.h"
#include "framework/heap.h"
#include "tvk_map_print.h"

namespace tvk::tool {

namespace {

[[noreturn]] void fail() {
    throw framework::UsageError("standard output", 0, std::strerror(errno));
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

// Calls visit for each text of a tree that a document may choose freely, until visit returns true. Returns whether it
// did.
template <typename Visit>
bool visit_texts(Node &root, const Visit &visit) {
    std::vector<Node *> pending{&root};
    while (!pending.empty()) {
        Node &node = *pending.back();
        pending.pop_back();
        qidl_tvk_edit_insert &insert = node.edit_insert;
        bool found = visit(node.data) || visit(node.ns) || visit(insert.value) || visit(insert.keys_str);
        for (int32_t i = 0; i < node.attribute_count && node.attributes != nullptr; ++i) {
            found = found || visit(node.attributes[i].value);
        }
        for (int32_t i = 0; i < insert.key_count && insert.keys != nullptr; ++i) {
            found = found || visit(insert.keys[i].value);
        }
        if (found) {
            return true;
        }
        for (Node &child : children(node)) {
            pending.push_back(&child);
        }
    }
    return false;
}

bool is_printable(const char *text) {
    return text == nullptr || !framework::has_controls(text);
}

// Escapes the control characters of text. Returns false, so that a visit goes on.
bool make_printable(char *&text) {
    if (!is_printable(text)) {
        kel_named_free(std::exchange(text, framework::copy_text(framework::printable(text).c_str())));
    }
    return false;
}

std::string listing(const Node &root, bool namespaces) {
    const CapturedOutput captured;
    if (tvk_map_print_subtrees(&root, 0, namespaces ? 1 : 0) != TVK_OK) {
        throw std::bad_alloc();  // a listing fails for want of memory alone
    }
    return captured.text();
}

}  // namespace

void write_out(const std::string &text) {
    const bool written = std::fwrite(text.data(), 1, text.size(), stdout) == text.size();
    if (!written || std::fflush(stdout) != 0) {
        fail();
    }
}

std::string tree_listing(const Node &root, bool namespaces) {
    const auto needs_care = [](char *text) { return !is_printable(text); };
    if (!visit_texts(const_cast<Node &>(root), needs_care)) {
        return listing(root, namespaces);
    }
    framework::TreeHolder shown;
    framework::copy_tree(root, shown.root());
    visit_texts(shown.root(), make_printable);
    return listing(shown.root(), namespaces);
}

}  // namespace tvk::tool
