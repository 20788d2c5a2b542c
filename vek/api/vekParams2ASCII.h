/*
 * vekParams2ASCII: converts the messages of a laser exposure device between message structures and text messages.
 *
 * Usable from C99 and C++. Who owns what: vekStrToVal and vekValToStr allocate what they hand out with the library's
 * own allocator; give structures back with vekParamsDeleteStruct and texts with vekParamsDelete, never with free() or
 * delete of your own. What you pass in stays yours.
 *
 * Threads: the calls may run at the same time. Who changes a structure is alone with it; several may read one.
 * The header numbers of messages are those of the process: each message written has a sequence number of its own.
 *
 * Results: 0 is success, -1 failure. A message id that a call does not take is also reported as one line on standard
 * output. Damaged text is no failure: it converts as far as it can be read, the rest of the structure is zero or empty.
 *
 * The message ids and the plain structures are in vek/records/messages.h, which is part of this header; the structures
 * that are C++ objects are declared in the C++ headers beside it.
 */
#ifndef VEK_PARAMS_2_ASCII_H
#define VEK_PARAMS_2_ASCII_H

#include "vek/api/version.h"
#include "vek/records/messages.h"

#include <stdint.h>

#if defined(_WIN32)
#    define VEK_CALL __cdecl
#    define VEK_API
#else
#    define VEK_CALL
#    define VEK_API __attribute__((visibility("default")))
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* Reads a text message into a newly allocated structure.
 *
 * text       A whole text message with its NUL, or NULL for a structure with the defaults of *msgId.
 * msgId      Receives the message's id; selects the structure when text is NULL or its id can't be read.
 * msgStruct  Receives the structure, to be given back with vekParamsDeleteStruct and the same id. It stays untouched
 *            for the ids 4162, 4174, 4175, 4178 to 4180, 4190, 4191 and 4203, which have none (result 0), and for ids
 *            that are refused.
 *
 * Returns 0; or -1 for an empty text, an id that is no message's ("vekStrToVal: InvalidMsgId = "), a NULL msgId or
 * msgStruct, or when memory runs out (then *msgStruct is NULL).
 */
VEK_API int32_t VEK_CALL vekStrToVal(const char *text, int32_t *msgId, void **msgStruct);

/* Writes a structure as a newly allocated text message.
 *
 * msgId      The id of the message that msgStruct is.
 * msgStruct  The structure, which is only read, or NULL for a message with an empty body, whatever the id is.
 * text       Receives the text, to be released with vekParamsDelete. With a structure, it is the empty string for an
 *            id that is refused, and for 4190 and 4191, which have no text.
 *
 * A message of 100,000 characters or more (with its NUL) is written, but its length has five digits only, so it can't
 * be read back.
 *
 * Returns 0; or -1 for an id that can't be written ("vekValToStr: Invalid msg ID = "), a NULL text, or when memory runs
 * out (then *text is NULL).
 */
VEK_API int32_t VEK_CALL vekValToStr(int32_t msgId, const void *msgStruct, char **text);

/* Releases a text that vekValToStr handed out. NULL is harmless. */
VEK_API void VEK_CALL vekParamsDelete(void *text);

/* Releases a structure that vekStrToVal handed out for msgId; a NULL *msgStruct is harmless. *msgStruct must not be
 * used any more; it is set to NULL only for ids without a structure.
 *
 * Returns 0; or -1, releasing nothing, for an id it does not take ("vekStrToVal: InvalidMsgId = "; 4135 and 4136 are
 * among them) or a NULL msgStruct.
 */
VEK_API int32_t VEK_CALL vekParamsDeleteStruct(int32_t msgId, void **msgStruct);

#ifdef __cplusplus
}
#endif

#endif
