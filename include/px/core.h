/*
 * libpx_core: memory behind handles.
 *
 * A handle is not zero when the block exists, and it is at the same time the block's address. All
 * four calls may be made from any thread; one block belongs to one caller at a time.
 */
#ifndef PX_CORE_H
#define PX_CORE_H

#include <stdint.h>

#include "px/export.h"

#ifdef __cplusplus
extern "C" {
#endif

/*
 * Allocates a block of `size` bytes. Its contents are undefined; a size of 0 gives a block that can
 * be freed and not used. Answers the handle, or 0 when there is no memory. The caller frees it with
 * SYSNativeFree.
 */
PX_API uintptr_t SYSNativeAlloc(uint64_t size);

/* Answers the address of the block, or null for the handle 0. Locks don't count and don't nest. */
PX_API void *SYSNativeLock(uintptr_t handle);

/* Ends the use of the address. The block stays until it is freed. */
PX_API void SYSNativeUnlock(uintptr_t handle);

/* Frees the block. The handle 0 is ignored. */
PX_API void SYSNativeFree(uintptr_t handle);

#ifdef __cplusplus
}
#endif

#endif
