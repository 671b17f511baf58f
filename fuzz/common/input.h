// Reading decisions off the bytes of an input. Behind its end every byte is 0.
#ifndef TVK_FUZZ_INPUT_H
#define TVK_FUZZ_INPUT_H

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace tvk::fuzz {

class Input {
public:
    Input(const std::uint8_t *data, std::size_t size) : rest_(reinterpret_cast<const char *>(data), size) {}

    bool at_end() const { return rest_.empty(); }

    std::uint8_t byte() {
        if (rest_.empty()) {
            return 0;
        }
        const auto first = static_cast<std::uint8_t>(rest_.front());
        rest_.remove_prefix(1);
        return first;
    }

    // 0 to count - 1. A digit stands for its value, so that inputs can be written by hand.
    unsigned below(unsigned count) {
        const unsigned value = byte();
        return (value >= '0' && value <= '9' ? value - '0' : value) % count;
    }
    bool flag() { return below(2) == 1; }

    template <typename T, std::size_t kCount>
    T pick(const T (&from)[kCount]) {
        return from[below(static_cast<unsigned>(kCount))];
    }

    // The bytes up to end, which is passed over; no zero bytes.
    std::string text(char end) {
        std::string found(rest_.substr(0, rest_.find(end)));
        rest_.remove_prefix(std::min(found.size() + 1, rest_.size()));
        std::erase(found, '\0');
        return found;
    }

private:
    std::string_view rest_;
};

}  // namespace tvk::fuzz

#endif
