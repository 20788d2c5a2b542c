/*
 * vekInspect: what people see of the messages of a laser exposure device, for hosts in any language.
 *
 * Usable from C99 and C++. Texts go in as bytes with their size and come out in a buffer of the caller's: nothing that
 * the library allocates is handed out, so nothing is to be given back. A call returns the size of its result in bytes,
 * without the NUL behind it; when that is not below `room`, the buffer holds only the beginning, with a NUL, and the
 * call is to be repeated with room for the size and the NUL. `buffer` may be NULL when `room` is 0.
 * A call that fails returns -1; the buffer then says why, for people, cut to its room: "out of memory", for example.
 * None ends the process.
 *
 * Threads: the calls may run at the same time. None of them writes, reads files or remembers anything but the
 * catalogue, which is made once for the process. The host's floating-point environment neither matters nor changes.
 */
#ifndef VEK_INSPECT_H
#define VEK_INSPECT_H

#include <stddef.h>
#include <stdint.h>

#if defined(_WIN32)
#    define VEK_INSPECT_CALL __cdecl
#    define VEK_INSPECT_API
#else
#    define VEK_INSPECT_CALL
#    define VEK_INSPECT_API __attribute__((visibility("default")))
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* A text message as one JSON object: id, name, header numbers, its problems (severity, code, path, start, end, message,
 * consequence, suggestion), its body under the record's name, and "nodes", every pair with its places. Places are start
 * and end in bytes. The text may be damaged in any way. `vekmsg schema --json` prints the JSON Schema of all JSON here.
 *
 * Returns the size of the JSON, or -1 when memory runs out, or text is NULL or larger than 1 GB.
 */
VEK_INSPECT_API int32_t VEK_INSPECT_CALL vekInspectToJson(const char *text, size_t size, char *buffer, size_t room);

/* The text message of such an object: the very text when the object was not changed, else a sealed one with the changed
 * body. A key that is absent, or an empty text, is absent in the message too: a host reads 0 or an empty text; a count
 * that is absent follows its list. What a host would read as something else is refused, unless a member "raw" is true.
 *
 * Returns the size of the text; or -1, also when the JSON can't be read or is refused: then the buffer says where and
 * why, "line 1, column 9 (byte 8): ...", with lines and columns from 1, and bytes from 0.
 */
VEK_INSPECT_API int32_t VEK_INSPECT_CALL vekInspectFromJson(const char *json, size_t size, char *buffer, size_t room);

/* The catalogue as a JSON object: its version, messages, enumerations, and records with keys, kinds, members and
 * defaults.
 *
 * Returns the size of the JSON, or -1 when memory runs out.
 */
VEK_INSPECT_API int32_t VEK_INSPECT_CALL vekInspectCatalogue(char *buffer, size_t room);

#ifdef __cplusplus
}
#endif

#endif
