/* The entry points of the injection runtime that the pane looks up by name in the loaded bundle "com.tarnwick.plinth"
 * (the library libplinth.so). Each may be missing. Plain C, so that a runtime can be built with any compiler. */
#pragma once

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef struct PlinthData {
    const void* bytes;
    size_t length;
} PlinthData;

/* Sends a message with its data (null for none) to the module with the given identifier in every process that has
 * loaded it. Both strings are UTF-8 and stay the caller's. Returns 0, or a negative status when it could not be sent.
 */
typedef int32_t (*PlinthMessageBroadcastFunction)(const char* moduleID, const char* message, const PlinthData* data);

/* The same to one process. */
typedef int32_t (*PlinthMessageSendFunction)(const char* moduleID, const char* message, const PlinthData* data,
                                             int32_t processID);

/* "PlinthHasUpdater": not 0 when the runtime looks for updates of its modules by itself. */
typedef int32_t (*PlinthHasUpdaterFunction)(void);

/* "plinthprintf": writes to the runtime's log, in the manner of printf. */
typedef void (*PlinthPrintfFunction)(const char* format, ...);

#ifdef __cplusplus
}
#endif
