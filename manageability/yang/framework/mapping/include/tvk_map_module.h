/*
 * The contract of a mapping module: a shared object that is loaded as a mapping.
 *
 * The module exports one function, tvk_map_module_get, which returns a table of the top containers that it maps.
 * The table is constant and lives as long as the module is loaded.
 */
#ifndef TVK_MAP_MODULE_H
#define TVK_MAP_MODULE_H

#include <stdint.h>

#include "tvk_map_walk.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Version of this table. A loader refuses a module of another one. */
#define TVK_MAP_MODULE_VERSION 2u

/* A top container of the request that the module maps. */
struct tvk_map_module_container {
    const char *tag;
    const char *ns;
    /*
     * Maps the container. node is the container in the request; target is the root of what the mapping builds: of
     * the native tree in an edit, of the response in a read. The root is a record that stands for no node; its
     * children are top containers.
     *
     * In a read node is the filter, without children when all is asked for. Path adding asks it about paths below
     * node: add the container itself to target first (tvk_map_datatree_add_subtree), then paths below it. The caller
     * marks that container against node and sweeps it.
     *
     * The native data of a read is behind the request's connection (tvk_map_get_varn_conn_hdl). On a device the
     * handle is a connection to the system database. In the desk tool every handle is the root of the native tree, a
     * const struct qidl_tvk_datatree * that stands for no node and lives as long as the request; it is null in an
     * edit, whose native data is target.
     */
    tmap_node_process_fp handler;
};

/* A list of the native model. */
struct tvk_map_module_list {
    const char *path; /* tags from the top container down to the list, as in "routes/route" */
    const char *keys; /* tags of its key leaves, separated by blanks, in the order of the model */
};

/* Bits of tvk_map_module::flags. */
#define TVK_MAP_MODULE_TAKES_INSERT 0x1u /* handlers look at yang:insert; else a request with one is refused */

/*
 * The table of a module. The fields behind containers are optional: a module leaves those that it does not need zero.
 *
 * begin_request is called once for each request that concerns the module, before the first of its handlers, with the
 * context that the handlers get. Another status than TVK_OK fails the request. end_request is called once for each
 * begin_request that returned TVK_OK, or that is null, when the request has ended, well or not. The request's trees
 * still exist then, and also when release_data is called.
 *
 * A mapping may keep data for the time of a request at ctx->mapping_data: a native list, say, grouped by the values
 * that handlers look for, so that none of them looks through the whole list again. The mapping allocates the data, in
 * begin_request or where it is first needed; release_data releases it. In an edit the pointer is null at the begin,
 * and the data is released when the request ends. In a read the pointer may be that of an earlier read of the same
 * native data, which has not changed since; the framework has it released before that data changes or goes.
 */
struct tvk_map_module {
    uint32_t version; /* TVK_MAP_MODULE_VERSION */
    const char *name;
    uint32_t container_count;
    const struct tvk_map_module_container *containers;

    qerrno (*begin_request)(tvk_map_ctx ctx); /* called before the first handler of a request */
    void (*end_request)(tvk_map_ctx ctx);     /* called when the request has ended */
    void (*release_data)(void *mapping_data); /* not called with null */
    /*
     * The leaves of the request whose values are identities, by the tags from the top container down, as in
     * "interfaces/interface/config/type"; ended by a null pointer. The framework takes the prefix off their values and
     * puts the namespace that it stands for into data_ns. Values of all other leaves keep their text as it stands.
     */
    const char *const *identities;
    /*
     * The lists of the native model, for tools that apply the edit that a mapping makes; ended by an entry without a
     * path. If it names a list of a top container it names all lists of that container. A list of values has no keys
     * ("").
     */
    const struct tvk_map_module_list *native_lists;
    uint32_t flags; /* TVK_MAP_MODULE_* */
};

/* Name of the exported function, for dlsym. */
#define TVK_MAP_MODULE_SYMBOL "tvk_map_module_get"

typedef const struct tvk_map_module *(*tvk_map_module_get_fp)(void);

/* Returns the module's table, never null. A mapping module exports it; it is called once, before any handler. */
#if defined(__GNUC__)
__attribute__((visibility("default")))
#endif
const struct tvk_map_module *
tvk_map_module_get(void);

#ifdef __cplusplus
}
#endif

#endif
