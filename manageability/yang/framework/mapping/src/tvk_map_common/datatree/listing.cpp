#include "tvk_map_common/datatree/listing.h"

#include <array>

namespace tvk {

namespace {

// Operations, insert positions and verdicts, in this order. Two positions end in a blank and the others do not.
constexpr std::array<const char *, 13> kLabels = {
    " (merge)",          " (replace)",       " (create)", " (delete)", " (remove)", " (insert=last)", " (insert=first)",
    " (insert=before) ", " (insert=after) ", " (dn)",     " (kn)",     " (ka)",     " (da)"};
constexpr std::size_t kFirstPosition = 5;
constexpr std::size_t kFirstNodeKind = 9;
constexpr char kNoLabel[] = " (-)";

}  // namespace

const char *operation_label(std::uint32_t operation) {
    return operation < kFirstPosition ? kLabels[operation] : kNoLabel;
}

const char *position_label(std::uint32_t position) {
    return position < kFirstNodeKind - kFirstPosition ? kLabels[kFirstPosition + position] : kNoLabel;
}

const char *node_kind_label(std::uint32_t node_kind) {
    return node_kind >= TVK_NODE_KIND_DN && node_kind <= TVK_NODE_KIND_DA ? kLabels[kFirstNodeKind + node_kind - 1]
                                                                          : nullptr;
}

bool ListingStack::push(const Node *array, std::int32_t count) {
    if (array == nullptr || count < 1) {
        return true;
    }
    if (depth_ == capacity_) {
        constexpr std::uint32_t kFirstCapacity = 16;
        const std::uint32_t wanted = capacity_ == 0 ? kFirstCapacity : capacity_ * 2;
        auto *levels = static_cast<ListingLevel *>(kel_named_realloc(levels_, wanted * sizeof(ListingLevel)));
        if (levels == nullptr) {
            return false;
        }
        levels_ = levels;
        capacity_ = wanted;
    }
    levels_[depth_++] = {array, array + count};
    return true;
}

const Node *ListingStack::take() {
    ListingLevel &level = levels_[depth_ - 1];
    if (level.next == level.end) {
        --depth_;
        return nullptr;
    }
    return level.next++;
}

}  // namespace tvk
