// Components of slash-separated paths.
#ifndef TVK_MAP_INTERNAL_PATH_H
#define TVK_MAP_INTERNAL_PATH_H

#include <cstring>

namespace tvk {

// Splits a writable path by replacing each "/" with a terminator, one component ahead. Empty components are skipped.
class Components {
public:
    explicit Components(char *path) : rest_(path), current_(cut()), next_(cut()) {}

    // Both return null behind the last component.
    char *current() const { return current_; }
    char *next() const { return next_; }
    bool is_last() const { return next_ == nullptr; }

    void advance() {
        current_ = next_;
        next_ = cut();
    }

private:
    char *cut() {
        while (*rest_ == '/') {
            ++rest_;
        }
        char *const component = rest_;
        rest_ = strchrnul(rest_, '/');
        if (*rest_ == '/') {
            *rest_++ = '\0';
        }
        return *component != '\0' ? component : nullptr;
    }

    char *rest_;
    char *current_;
    char *next_;
};

// Returns the last component of a writable path, from which it cuts trailing slashes; null when there is none.
inline char *last_component(char *path) {
    std::size_t length = std::strlen(path);
    while (length > 0 && path[length - 1] == '/') {
        path[--length] = '\0';
    }
    char *separator = std::strrchr(path, '/');
    char *component = separator != nullptr ? separator + 1 : path;
    return *component != '\0' ? component : nullptr;
}

}  // namespace tvk

#endif
