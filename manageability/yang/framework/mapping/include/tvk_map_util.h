/* Texts, the clock, conversions of values, IPv4 addresses, and small helpers. */
#ifndef TVK_MAP_UTIL_H
#define TVK_MAP_UTIL_H

#include <stdint.h>

#include "tvk_map_types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Returns the schema node type of node (enum qidl_tvk_node_type); 0 when it carries none, or is null. */
TVK_MAP_API uint32_t tvk_map_get_node_type(const struct qidl_tvk_datatree *node);

/* ---- Small text and time helpers ------------------------------------------------------------------------ */

/*
 * Asks whether part occurs in text.
 *
 * Returns
 * - 1: it does.
 * - 0: it does not, or either is null.
 */
TVK_MAP_API int tvk_map_does_it_have(const char *text, const char *part);

/* Returns the wall clock in microseconds since the epoch. */
TVK_MAP_API uint64_t tvk_map_get_timestamp(void);

/*
 * Asks whether text begins with prefix, both taken without leading white space.
 *
 * Returns
 * - 1: it does.
 * - 0: it does not, or either is null.
 */
TVK_MAP_API int tvk_map_trim_strcmpbeg(const char *text, const char *prefix);

/*
 * Asks whether two texts are the same.
 *
 * Returns
 * - 1: both are given and equal.
 * - 0: they differ, or either is null.
 */
TVK_MAP_API int tvk_map_do_these_match(const char *a, const char *b);

/* ---- Value conversions ------------------------------------------------------------------------------------
 *
 * A conversion reads the terminated text value, of length characters, and stores a text of its own in out, allocated
 * on the named heap under "TVK_CONV" (20 bytes): the caller releases it with kel_named_free. value and out must be
 * there. The two conversions of the table do not look at length.
 */
typedef qerrno (*tvk_map_data_conv_fp)(const char *value, uint32_t length, char **out);

struct tvk_map_data_conv_cb {
    int32_t id;
    tvk_map_data_conv_fp convert;
};

#define TVK_MAP_DATA_CONVERSIONS 2

/* Index 0: kilobits to bits per second. Index 1: seconds to date-and-time. */
TVK_MAP_API extern const struct tvk_map_data_conv_cb tvk_map_data_conv_cb_tab[TVK_MAP_DATA_CONVERSIONS];

/*
 * Converts value by the conversion at index of the table, whatever its id.
 *
 * Returns
 * - 0: out is the converted text.
 * - TVK_ERR_INVALID: index is outside the table, or value or out is null. out is unwritten, and nothing is logged.
 * - TVK_ERR_NO_MEMORY: out is null.
 */
TVK_MAP_API qerrno tvk_map_data_conv(int32_t index, const char *value, char **out);

/*
 * Converts a rate in kilobits per second to bits per second. value is a decimal text: leading white space and a sign
 * are read, and anything behind the digits is ignored. Both rates are 32 bits wide: above 4294967 kbit/s the result
 * wraps.
 *
 * Returns
 * - 0: out is the converted text.
 * - TVK_ERR_NO_MEMORY: out is null.
 */
TVK_MAP_API qerrno tvk_map_data_kbs_uint32_yang_bps_uint64(const char *value, uint32_t length, char **out);

/*
 * Gives the empty text, whatever value is: the table's slot for an interface time in seconds as a YANG date-and-time.
 *
 * Returns
 * - 0: out is the empty text.
 * - TVK_ERR_NO_MEMORY: out is null.
 */
TVK_MAP_API qerrno tvk_map_data_intf_secs_uint32_to_yang_date_and_time(const char *value, uint32_t length, char **out);

/* ---- Addresses and texts ---------------------------------------------------------------------------------- */

/*
 * Asks whether addr is an IPv4 address: four dotted decimal numbers from 0 to 255 without leading zeros, with or
 * without a zone ("%" and letters or digits). The first calls of a process must not race.
 *
 * Returns
 * - 1: it is.
 * - 0: it is not, addr is null, or there is no memory to tell.
 */
TVK_MAP_API int tvk_map_is_valid_ipv4_addr(const char *addr);

/*
 * Returns the address of address/length, in place: passes over leading slashes and cuts prefix at the next. Null for
 * null, or when nothing is left.
 */
TVK_MAP_API char *tvk_map_get_ip_address_info(char *prefix);

/*
 * Returns the length of address/length, in place: the text behind the first "/". Null for null, or without a "/". Ask
 * it before tvk_map_get_ip_address_info, which overwrites the slash.
 */
TVK_MAP_API char *tvk_map_get_ip_address_len_info(char *prefix);

/* Returns bitmap with bit number bit, taken modulo 32, set. */
TVK_MAP_API uint32_t tvk_map_set_bitmap(uint32_t bitmap, int32_t bit);

/*
 * Asks whether the name, which must not be null, is that of a private model.
 *
 * Returns
 * - 1: it contains "PRIVATE".
 * - 0: it does not.
 */
TVK_MAP_API int tvk_map_is_private_model(char *model_name);

/*
 * Cuts path in place at "/" and stores up to max_index + 1 tokens (a negative max_index counts as 0) in tokens from
 * position *count on, which it advances; there must be room.
 *
 * Returns
 * - 0: that many were stored. The rest of the path is uncut.
 * - 1: there were fewer, or an argument is null.
 */
TVK_MAP_API int tvk_map_str_to_array(char *path, char **tokens, uint32_t max_index, uint32_t *count);

#ifdef __cplusplus
}
#endif

#endif
