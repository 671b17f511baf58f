// The labels of a listing, and the stack of its levels.
#include "tvk_map_common/datatree/listing.h"

#include <array>

namespace tvk {

namespace {

// The index is the value of the operation.
#define TVK_LABEL_(value, name) " (" name ")",
constexpr std::array kOperationLabels{TVK_FOR_EACH_OPERATION(TVK_LABEL_)};
#undef TVK_LABEL_
// The index is the value of the position. Two labels end in a blank and the others do not.
constexpr std::array kPositionLabels{" (insert=last)", " (insert=first)", " (insert=before) ", " (insert=after) "};
// The labels of the verdicts from TVK_NODE_KIND_DN on.
constexpr std::array kNodeKindLabels{" (dn)", " (kn)", " (ka)", " (da)"};
static_assert(kPositionLabels.size() == TVK_INSERT_AFTER + 1);
static_assert(kNodeKindLabels.size() == TVK_NODE_KIND_DA - TVK_NODE_KIND_DN + 1);

constexpr char kNoLabel[] = " (-)";

}  // namespace

const char *operation_label(std::uint32_t operation) {
    return operation < kOperationLabels.size() ? kOperationLabels[operation] : kNoLabel;
}

const char *position_label(std::uint32_t position) {
    return position < kPositionLabels.size() ? kPositionLabels[position] : kNoLabel;
}

const char *node_kind_label(std::uint32_t node_kind) {
    return node_kind >= TVK_NODE_KIND_DN && node_kind <= TVK_NODE_KIND_DA
               ? kNodeKindLabels[node_kind - TVK_NODE_KIND_DN]
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
