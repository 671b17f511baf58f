// Plays the framework around the handlers of a mapping module.
#ifndef TVK_TEST_MAPPED_REQUEST_H
#define TVK_TEST_MAPPED_REQUEST_H

#include <dlfcn.h>

#include <string>

#include "context.h"
#include "kel_memory.h"
#include "tree.h"
#include "tvk_map_module.h"
#include "tvk_platform_control.h"

namespace tvk::test {

inline const tvk_map_module &example(const std::string &folder, const std::string &name) {
    void *module = dlopen((folder + name + ".so").c_str(), RTLD_NOW | RTLD_LOCAL);
    EXPECT_NE(nullptr, module) << dlerror();
    void *get = dlsym(module, TVK_MAP_MODULE_SYMBOL);
    return *reinterpret_cast<tvk_map_module_get_fp>(get)();
}

// The native data of a read, in the framework's session table.
class Database {
public:
    template <class... Tops>
    explicit Database(MappingContext &mapping, const Tops &...tops)
        : data_(root()(tops...)), framework_(&mapping.framework) {
        mapping.request.session_id = 1;
        mapping.request.presence |= TVK_REQUEST_HAS_SESSION_ID;
        EXPECT_NE(0, tvk_platform_set_session(framework_, 1, &session_));
    }
    ~Database() { tvk_platform_set_session(framework_, 1, nullptr); }
    Database(const Database &) = delete;
    Database &operator=(const Database &) = delete;

private:
    Tree data_;
    tvk_framework_ctx framework_;
    varn_connection_table_a table_a_{data_.get(), data_.get()};
    varn_connection_table_b table_b_{data_.get(), nullptr, data_.get()};
    varn_backend backend_{&table_a_};
    me_backend_session_ctx_t backend_session_{&backend_, &table_b_};
    me_backend_session_ctx_t *backend_sessions_[1] = {&backend_session_};
    me_session sessions_{backend_sessions_};
    tvk_session session_{&sessions_};
};

// A request that concerns the module, from its begin to its end.
class MappedRequest {
public:
    MappedRequest(const tvk_map_module &module, tvk_map_ctx ctx) : module_(module), ctx_(ctx) {}
    ~MappedRequest() {
        if (has_begun_ && module_.end_request != nullptr) {
            module_.end_request(ctx_);
        }
        if (ctx_->mapping_data != nullptr) {
            module_.release_data(ctx_->mapping_data);
        }
        kel_named_free(ctx_->failure_reason);
    }
    MappedRequest(const MappedRequest &) = delete;
    MappedRequest &operator=(const MappedRequest &) = delete;

    qerrno handle(const Tree &request, const Tree &target) {
        const qerrno status = module_.begin_request != nullptr ? module_.begin_request(ctx_) : TVK_OK;
        has_begun_ = status == TVK_OK;
        return has_begun_ ? module_.containers[0].handler(ctx_, request.get(), target.get()) : status;
    }

private:
    const tvk_map_module &module_;
    tvk_map_ctx ctx_;
    bool has_begun_ = false;
};

}  // namespace tvk::test

#endif
