// Addresses, paths and numbers as texts: the library's utilities, and the conversions of the BGP example.
#include <arpa/inet.h>

#include <cstring>
#include <vector>

#include "common/input.h"
#include "common/target.h"
#include "conversions.h"
#include "kel_memory.h"
#include "tvk_map_datatree.h"
#include "tvk_map_util.h"

namespace {

using namespace tvk::fuzz;

constexpr char kAlphanumeric[] = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";

// A text in a block of its own and exactly of its size, so that a read behind it is noticed.
class ExactText {
public:
    explicit ExactText(const std::string &text) : bytes_(text.c_str(), text.c_str() + text.size() + 1) {}
    char *get() { return bytes_.data(); }

private:
    std::vector<char> bytes_;
};

// Asks the C library, which knows addresses without a zone.
bool is_address(const std::string &text) {
    const std::size_t percent = text.find('%');
    const std::string zone = percent == std::string::npos ? "z" : text.substr(percent + 1);
    in_addr address{};
    return !zone.empty() && zone.find_first_not_of(kAlphanumeric) == std::string::npos &&
           inet_pton(AF_INET, text.substr(0, percent).c_str(), &address) == 1;
}

void check_address(const std::string &text) {
    require(is_address(text) == (tvk_map_is_valid_ipv4_addr(ExactText(text).get()) == 1), "address: " + text);
    require(tvk_map_is_valid_ipv4_addr(nullptr) == 0 && tvk_map_get_ip_address_info(nullptr) == nullptr, "null");
    ExactText prefix(text);
    const char *length = tvk_map_get_ip_address_len_info(prefix.get());
    require((length != nullptr) == (text.find('/') != std::string::npos), "prefix length: " + text);
    require(length == nullptr || text.substr(text.find('/') + 1) == length, "prefix length: " + text);
    const char *address = tvk_map_get_ip_address_info(prefix.get());
    require((address != nullptr) == (text.find_first_not_of('/') != std::string::npos), "prefix address: " + text);
    require(address == nullptr || (*address != '\0' && std::strchr(address, '/') == nullptr),
            "prefix address: " + text);
}

std::vector<std::string> components_of(const std::string &text) {
    std::vector<std::string> components;
    for (Input rest(text); !rest.at_end();) {
        components.push_back(rest.text('/'));
    }
    std::erase(components, "");
    return components;
}

void check_tokens(const std::string &text, int max_index) {
    const std::vector<std::string> components = components_of(text);
    ExactText path(text);
    std::vector<char *> tokens(text.size() + 2);
    std::uint32_t count = 1;
    const int is_rest = tvk_map_str_to_array(path.get(), tokens.data(), static_cast<std::uint32_t>(max_index), &count);
    const auto room = static_cast<std::size_t>(std::max(max_index, 0)) + 1;
    require((is_rest == 0) == (components.size() >= room), "end of tokens: " + text);
    require(count - 1 == std::min(components.size(), room), "number of tokens: " + text);
    for (std::uint32_t i = 1; i < count; ++i) {
        require_equal(components[i - 1], tokens[i], "token of " + text);
    }
    require(tvk_map_str_to_array(nullptr, nullptr, 1, nullptr) == 1, "null");
    ExactText again(text);
    char *last = nullptr;
    tvk_map_get_last_token_from_path(nullptr, again.get(), &last);
    require_equal(components.empty() ? "none" : components.back(), last != nullptr ? last : "none", "last of " + text);
}

// Rates are 32 bits wide, times are not converted.
void check_conversions(const std::string &text, int index) {
    char *converted = nullptr;
    const qerrno status = tvk_map_data_conv(index, ExactText(text).get(), &converted);
    require((status == TVK_OK) == (index == 0 || index == 1), "conversion by number " + std::to_string(index));
    const auto rate = static_cast<std::uint32_t>(std::strtol(text.c_str(), nullptr, 10)) * 1000U;
    require_equal(index == 0 ? std::to_string(rate) : "", converted != nullptr ? converted : "", "rate of " + text);
    kel_named_free(converted);
}

void check_number_of_address(const std::string &text) {
    bgp::Scratch scratch;
    in_addr address{};
    const bool is_plain = inet_pton(AF_INET, text.c_str(), &address) == 1;
    const char *number = bgp::number_of_address(ExactText(text).get(), scratch);
    require_equal(is_plain ? std::to_string(ntohl(address.s_addr)) : "none", number != nullptr ? number : "none",
                  "number of " + text);
}

// What one side can hold comes back from the other as it was.
void check_round_trip(const std::string &text, bgp::Convert there, bgp::Convert back) {
    bgp::Scratch first;
    bgp::Scratch second;
    const char *converted = there(ExactText(text).get(), first);
    if (converted == nullptr) {
        return;
    }
    const char *returned = back(converted, second);
    require(returned != nullptr, "no way back for " + text);
    bgp::Scratch third;
    require_equal(converted, there(returned, third), "round trip of " + text);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const Surroundings surroundings;
    Input input(data, size);
    const int index = static_cast<int>(input.below(7)) - 2;
    const std::string text = input.text('\n');
    const std::string other = input.text('\n');
    check_address(text);
    check_tokens(text, index);
    check_conversions(text, index);
    check_number_of_address(text);
    check_round_trip(text, bgp::number_of_address, bgp::address_of_number);
    check_round_trip(text, bgp::address_of_number, bgp::number_of_address);
    check_round_trip(text, bgp::prefix_of_address, bgp::address_of_prefix);
    check_round_trip(text, bgp::address_of_prefix, bgp::prefix_of_address);
    check_round_trip(text, bgp::kilobits_of_bits, bgp::bits_of_kilobits);
    check_round_trip(text, bgp::bits_of_kilobits, bgp::kilobits_of_bits);
    check_round_trip(text, bgp::as_number, bgp::as_number);
    require(tvk_map_trim_strcmpbeg(ExactText(text + other).get(), ExactText(text).get()) == 1, "prefix: " + text);
    require(tvk_map_does_it_have(ExactText(other + text).get(), ExactText(text).get()) == 1, "part: " + text);
    require((text.find("PRIVATE") != std::string::npos) == (tvk_map_is_private_model(ExactText(text).get()) == 1),
            "private: " + text);
    require(tvk_map_set_bitmap(1, index * 33) == (1U | 1U << (index & 31)), "bitmap");
    return 0;
}
