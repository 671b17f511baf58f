// Adding the missing part of an xpath, step by step.
#include "tvk_map_common/xpath/add.h"

#include <cstring>

#include "tvk_map_common/internal/node.h"
#include "tvk_map_common/xpath/key_groups.h"
#include "tvk_map_datatree.h"

namespace tvk {

namespace {

constexpr int kWhereItStands = TVK_ADD_RELATIVE | TVK_ADD_UNFILTERED;

// A text cut from an xpath, with a terminator of its own.
class PathText {
public:
    const char *get() const { return text_; }
    bool is_empty() const { return length_ == 0; }
    void clear() { text_[length_ = 0] = '\0'; }

    // A part and its separator are no longer than they were in the path, so they fit.
    PathText &operator<<(std::string_view part) {
        std::memcpy(text_ + length_, part.data(), part.size());
        length_ += part.size();
        text_[length_] = '\0';
        return *this;
    }

private:
    char text_[TVK_MAP_MAX_PATH] = "";
    std::size_t length_ = 0;
};

class AddWalk {
public:
    AddWalk(tvk_map_ctx ctx, const tvk_map_node_operation &record)
        : ctx_(ctx), record_(record), attachment_(ctx->state != nullptr ? ctx->state->xpath_attachment : own_) {
        attachment_ = record.result;
    }
    ~AddWalk() { attachment_ = nullptr; }
    AddWalk(const AddWalk &) = delete;
    AddWalk &operator=(const AddWalk &) = delete;

    qerrno run(const char *remaining) {
        for (Steps steps{remaining}; !steps.at_end(); steps.advance()) {
            if (!steps.is_keyed()) {
                pending_ << (pending_.is_empty() ? "" : "/") << steps.text();
                has_plain_step_ = true;
                continue;
            }
            if (const qerrno status = add_containers(); status != TVK_OK) {
                return status;
            }
            if (const qerrno status = add_entry(steps.text()); status != TVK_OK) {
                return status;
            }
        }
        return pending_.is_empty() ? TVK_OK : add_last();
    }

    Node *attachment() const { return attachment_; }

private:
    // Adds the plain steps before a keyed one. Behind the first keyed step an empty path is added, too, because adding
    // a path has effects of its own.
    qerrno add_containers() {
        if (!has_plain_step_) {
            return TVK_OK;
        }
        Node *added = nullptr;
        const qerrno status = add_below_attachment(pending_.get(), nullptr, 0, &added);
        if (added != nullptr) {
            attachment_ = added;
        }
        pending_.clear();
        return status;
    }

    qerrno add_entry(std::string_view step) {
        KeyGroups keys;
        if (!tvk_map_get_key_value_info(step, keys)) {
            return TVK_ERR_INVALID;
        }
        PathText name;
        name << list_name(step);
        Node *entry = nullptr;
        tvk_map_datatree_add_path_common_flagged(ctx_, attachment_, name.get(), record_.ns, nullptr, nullptr, &entry, 1,
                                                 0);
        if (entry == nullptr) {
            return TVK_ERR_INVALID;
        }
        attachment_ = entry;
        qerrno status = TVK_OK;
        for (const KeyGroup &key : keys.all()) {
            status = add_below_attachment(key.name, key.value, 0, nullptr);
        }
        return status;
    }

    qerrno add_last() {
        const bool has_value = record_.kind == TVK_XPATH_LEAF || record_.kind == TVK_XPATH_LEAF_INSTANCE;
        const bool appended = record_.kind == TVK_XPATH_INSTANCE || record_.kind == TVK_XPATH_LEAF_INSTANCE;
        return add_below_attachment(pending_.get(), has_value ? record_.value : nullptr, appended ? 1 : 0, nullptr);
    }

    qerrno add_below_attachment(const char *path, const char *data, int append, Node **added) {
        return tvk_map_datatree_add_path_flagged(ctx_, attachment_, path, record_.ns, data, nullptr, added, append,
                                                 kWhereItStands);
    }

    tvk_map_ctx ctx_;
    const tvk_map_node_operation &record_;
    // Refers to the request state, if there is one, so that it follows a node that an addition moves.
    Node *&attachment_;
    Node *own_ = nullptr;
    PathText pending_;
    bool has_plain_step_ = false;
};

}  // namespace

qerrno add_remaining_path(tvk_map_ctx ctx, tvk_map_node_operation &record, const char *remaining) {
    AddWalk walk{ctx, record};
    const qerrno status = walk.run(remaining);
    record.result = status == TVK_OK ? walk.attachment() : nullptr;
    return status;
}

}  // namespace tvk
