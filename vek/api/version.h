/*
 * The version of the library that these headers belong to. This is the one place that states it: the build, the
 * packages and the version resource of the DLL take it from here.
 *
 * The first number changes when hosts have to be built again, the second when something is added, the third otherwise.
 * For C99, C++ and resource compilers: macros only.
 */
#ifndef VEK_VERSION_H
#define VEK_VERSION_H

#define VEK_VERSION_MAJOR 1
#define VEK_VERSION_MINOR 0
#define VEK_VERSION_PATCH 0

/* The three as one text, and as one number to compare: #if VEK_VERSION_NUMBER >= 10200 means 1.2.0 or later. */
#define VEK_VERSION "1.0.0"
#define VEK_VERSION_NUMBER (VEK_VERSION_MAJOR * 10000 + VEK_VERSION_MINOR * 100 + VEK_VERSION_PATCH)

#endif
