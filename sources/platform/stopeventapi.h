#pragma once

namespace StopEventApi {
// The Win32 side, kept free of Qt so that it can be checked without it.
// Results follow the Win32 calls: null or false on failure, with the code in
// *error.
void *create(const char *name, unsigned long *error);
bool set(void *event, unsigned long *error);
void reset(void *event);
bool isSet(void *event);
void close(void *event);
/** Removes the name, so that nothing can open the event any more. */
void unlink(const char *name);
/** The system's text for an error code of the calls above. */
void describe(unsigned long error, char *text, unsigned long size);
} // namespace StopEventApi
