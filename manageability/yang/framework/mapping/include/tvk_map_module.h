/*
 * A mapping module: what a shared object must export to be loaded as a mapping.
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
#define TVK_MAP_MODULE_VERSION 1u

/* A top container of the request that the module maps. */
struct tvk_map_module_container {
    const char *tag;
    const char *ns;
    /*
     * Maps the container. node is the container in the request; target is the root of what the mapping builds: of
     * the native tree in an edit, of the response in a read. The root is a record that stands for no node; its
     * children are top containers.
     *
     * In a read node is the filter, without children when all is asked for, and the paths that path adding asks it
     * about are those below node: add the container itself to target first (tvk_map_datatree_add_subtree), then
     * paths below it. The caller marks that container against node and sweeps it.
     *
     * The native data of a read is behind the request's connection (tvk_map_get_varn_conn_hdl). On a device the
     * handle is a connection to the system database. In the desk tool every handle is the root of the native tree, a
     * const struct qidl_tvk_datatree * that stands for no node and lives as long as the request; it is null in an
     * edit, whose native data is target.
     */
    tmap_node_process_fp handler;
};

struct tvk_map_module {
    uint32_t version; /* TVK_MAP_MODULE_VERSION */
    const char *name;
    uint32_t container_count;
    const struct tvk_map_module_container *containers;
};

/* Name of the exported function, for dlsym. */
#define TVK_MAP_MODULE_SYMBOL "tvk_map_module_get"

typedef const struct tvk_map_module *(*tvk_map_module_get_fp)(void);

/*
 * What a mapping module exports to be loaded as one: returns its table, never null. It is called once, before any
 * handler of the table.
 */
#if defined(__GNUC__)
__attribute__((visibility("default")))
#endif
const struct tvk_map_module *
tvk_map_module_get(void);

#ifdef __cplusplus
}
#endif

#endif
