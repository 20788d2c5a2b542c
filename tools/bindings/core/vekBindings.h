/*
 * vekBindings: what the packages for other languages call. It is part of them and changes with them; hosts call
 * vekInspect.h instead.
 *
 * Texts go in as bytes with their size. vekBindingsRead and vekBindingsWrite hand a result out in a buffer of the
 * caller's, and return its size without the NUL behind it; when that is not below `room`, the buffer holds only the
 * beginning, and the call is to be repeated with room for the size and the NUL. JSON is that of vekInspect.h: bytes
 * that are no UTF-8 are the characters U+EF80 to U+EFFF.
 *
 * Threads: the calls may run at the same time; a log is one thread's at a time.
 */
#ifndef VEK_BINDINGS_H
#define VEK_BINDINGS_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

#if defined(_WIN32)
#    define VEK_BINDINGS_CALL __cdecl
#    define VEK_BINDINGS_API
#else
#    define VEK_BINDINGS_CALL
#    define VEK_BINDINGS_API __attribute__((visibility("default")))
#endif

/* A text message as one JSON object: id, name, echo, seq, length, its problems when there are any, and the body under
 * the record's name ("body" for an id without one) as a host reads it: in the spelling of the library, whatever it was
 * before. "unbounded" is true when a real in it may be a text, for it is infinite or has hundreds of digits. -1 with
 * the reason when memory runs out.
 */
VEK_BINDINGS_API int32_t VEK_BINDINGS_CALL vekBindingsRead(const char *text, size_t size, char *buffer, size_t room);

/* The text message of such an object; or -1 with the reasons, a line each, "PATH: why". */
VEK_BINDINGS_API int32_t VEK_BINDINGS_CALL vekBindingsWrite(const char *json, size_t size, char *buffer, size_t room);

/* A log, to be closed by the caller; NULL when memory runs out. */
VEK_BINDINGS_API void *VEK_BINDINGS_CALL vekBindingsOpenLog(void);

/* Takes the next block of a log; one of size 0 is its end. Returns the bytes of what was found since, or -1. */
VEK_BINDINGS_API int32_t VEK_BINDINGS_CALL vekBindingsTakeLog(void *log, const char *block, size_t size);

/* What the last block brought, valid until the next one: for each message a line of JSON as vekBindingsRead gives it,
 * with line, offset, before, time (when there is one) and source, the message as it stands, in front.
 */
VEK_BINDINGS_API const char *VEK_BINDINGS_CALL vekBindingsFound(const void *log);

VEK_BINDINGS_API void VEK_BINDINGS_CALL vekBindingsCloseLog(void *log);

#ifdef __cplusplus
}
#endif

#endif
