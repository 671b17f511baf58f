/* The device's information about itself. */
#ifndef PLATFORM_INFO_H
#define PLATFORM_INFO_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Returns the router type. Types 7, 8 and 18 do not support "vrrp" nodes; the others have no meaning to the library. */
uint32_t platform_get_router_type(void);

#ifdef __cplusplus
}
#endif

#endif
