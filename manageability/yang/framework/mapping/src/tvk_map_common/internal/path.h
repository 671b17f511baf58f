// Components of slash-separated paths.
#ifndef TVK_MAP_INTERNAL_PATH_H
#define TVK_MAP_INTERNAL_PATH_H

#include <cstring>

namespace tvk {

// Cuts a writable path at "/" as it goes, one component ahead. Empty components vanish.
class Components {
public:
    explicit Components(char *path) : current_(strtok_r(path, "/", &rest_)) { look_ahead(); }

    // Null at the end.
    char *current() const { return current_; }
    char *next() const { return next_; }
    bool is_last() const { return next_ == nullptr; }

    void advance() {
        current_ = next_;
        look_ahead();
    }

private:
    void look_ahead() { next_ = current_ != nullptr ? strtok_r(nullptr, "/", &rest_) : nullptr; }

    char *rest_ = nullptr;
    char *current_;
    char *next_ = nullptr;
};

}  // namespace tvk

#endif
