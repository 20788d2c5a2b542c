/*
 * Which version of the library a host has at run time. The headers that it was built with may be newer than the library
 * that is installed where it runs; what was added in between, a message for instance, is not there then:
 *
 *     if (vekLibraryVersion() < VEK_VERSION_NUMBER)
 *         ... say so: the library that is loaded is older than this program
 *
 * For C99 and C++. The function is the host's own, of the static library vekTypes (C++ hosts link it anyway; C hosts
 * link vekParams2ASCII::cpp for it, or what pkg-config says). It reads what the file of the loaded library says of
 * itself, a note on Linux and the version resource on Windows, calls nothing in it, and may run on any thread.
 */
#ifndef VEK_LIBRARY_VERSION_H
#define VEK_LIBRARY_VERSION_H

#include "vek/api/version.h"

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* The version of the loaded library, to compare with VEK_VERSION_NUMBER. Where no library is loaded, as in a program
 * with the four calls inside, that of this function itself.
 */
int32_t vekLibraryVersion(void);

#ifdef __cplusplus
}
#endif

#endif
