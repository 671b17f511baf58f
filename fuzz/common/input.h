// Reading decisions off the bytes of an input. Behind its end every byte is 0.
#ifndef TVK_FUZZ_INPUT_H
#define TVK_FUZZ_INPUT_H

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

namespace tvk::fuzz {

class Input {
public:
    explicit Input(std::string_view bytes) : rest_(bytes) {}
    Input(const std::uint8_t *data, std::size_t size) : rest_(reinterpret_cast<const char *>(data), size) {}

    bool at_end() const { return rest_.empty(); }

    // 0 to count - 1. A digit stands for its value, so that inputs can be written by hand.
    unsigned below(unsigned count) {
        const unsigned value = take();
        return read((value >= '0' && value <= '9' ? value - '0' : value) % count);
    }
    unsigned byte() { return read(take()); }
    bool flag() { return below(2) == 1; }

    template <typename T, std::size_t kCount>
    T pick(const T (&from)[kCount]) {
        const T picked = from[below(static_cast<unsigned>(kCount))];
        if constexpr (std::is_same_v<T, const char *>) {
            read_ += picked != nullptr ? std::string("=") + picked : "";
        }
        return picked;
    }

    // The bytes up to end, which is passed over; no zero bytes.
    std::string text(char end) {
        std::string found(rest_.substr(0, rest_.find(end)));
        rest_.remove_prefix(std::min(found.size() + 1, rest_.size()));
        std::erase(found, '\0');
        read_ += " \"" + found + "\"";
        return found;
    }

    // Returns what was read since the last call, as text.
    std::string all_read() { return std::exchange(read_, {}); }

private:
    std::uint8_t take() {
        const std::uint8_t first = rest_.empty() ? 0 : static_cast<std::uint8_t>(rest_.front());
        rest_.remove_prefix(rest_.empty() ? 0 : 1);
        return first;
    }
    unsigned read(unsigned value) {
        read_ += " " + std::to_string(value);
        return value;
    }

    std::string_view rest_;
    std::string read_;
};

}  // namespace tvk::fuzz

#endif
