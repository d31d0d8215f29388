/* The update checker for code in other processes: plain C, exported by the pane's code
 * (Typeslate.prefPane/Contents/Linux/Typeslate). docs/updates.md shows a caller.
 *
 * The functions reach the machine through services that the process hands them once with TWVC_SetServices; until then
 * they answer as each says. Strings are UTF-8 and stay the caller's. To be called from one thread at a time.
 *
 * A status is 0 for success, -50 for a bad argument or without services, or another negative number. */
#pragma once

#include <stddef.h>
#include <stdint.h>

#if defined(__GNUC__)
#define TWVC_EXPORT __attribute__((visibility("default")))
#else
#define TWVC_EXPORT
#endif

#ifdef __cplusplus
extern "C" {
#endif

enum { TWVC_PathSize = 4096 };

/* An application that was launched. */
typedef struct TWVCFileReference {
    uint64_t device, inode;
    char path[TWVC_PathSize]; /* ends with a zero byte */
} TWVCFileReference;

/* Styles of a date's or a time's text. */
enum { TWVC_NoStyle = 0, TWVC_ShortStyle = 1, TWVC_MediumStyle = 2, TWVC_LongStyle = 3, TWVC_FullStyle = 4 };

/* The services, a C++ object of type twvc::UpdateServices, which outlives every later call; null takes them away. */
struct TWVCServices;
TWVC_EXPORT void TWVC_SetServices(const struct TWVCServices* services);

/* Launches the updater for the module bundle at this path when a check is due. isCheckingFromPlinth: not 0 in a process
 * that the module was loaded into. The reference may be null, and is written only when an updater was launched. 0 when
 * there is nothing to report. */
TWVC_EXPORT int32_t TWVC_CheckForUpdate(const char* bundlePath, int isCheckingFromPlinth,
                                        TWVCFileReference* outLaunchedUpdater);

/* Launches the updater now. The result is that of taking the lock or of giving it back: 0 does not say that an updater
 * was launched; the reference being written does, and the log says why not. */
TWVC_EXPORT int32_t TWVC_RunUpdater(const char* bundlePath, const char* bundleID,
                                    TWVCFileReference* outLaunchedUpdater);

/* The system's version in binary-coded decimal, 10.4.11 as 0x100411; 0 when it is not known or without services. */
TWVC_EXPORT uint32_t TWVC_GetSystemVersion(void);

/* When the user's session began, in seconds since 1970-01-01T00:00:00Z. 0 and nothing written when that is unknown. */
TWVC_EXPORT int TWVC_CopyLoginWindowLaunchDate(double* outSeconds);

/* Records now and the system's version as those of the last check. */
TWVC_EXPORT void TWVC_SetVersionDatePreferences(const char* bundleID);

/* Writes the text of a date in the user's language, in UTF-8 and ended by a zero byte, as many characters as the buffer
 * has room for, and returns the whole text's length in bytes; -1 when the date is not a finite number or there is no
 * text for it. */
TWVC_EXPORT ptrdiff_t GetNSStringFromDate(double seconds, int dateStyle, int timeStyle, char* buffer, size_t size);

#ifdef __cplusplus
}
#endif
