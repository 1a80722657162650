/* The version of these headers, and of the loaded library. */
#ifndef DOCCAM_VERSION_H
#define DOCCAM_VERSION_H

#include "export.h"

/* The build takes the project's version from these three lines. */
#define DOCCAM_VERSION_MAJOR 1
#define DOCCAM_VERSION_MINOR 0
#define DOCCAM_VERSION_PATCH 0

/* A version as a number that grows with it, usable in #if. minor and patch stay below 1000. */
#define DOCCAM_VERSION_NUMBER(major, minor, patch) ((major)*1000000 + (minor)*1000 + (patch))

/* The version of these headers as such a number. */
#define DOCCAM_VERSION                                                                             \
    DOCCAM_VERSION_NUMBER(DOCCAM_VERSION_MAJOR, DOCCAM_VERSION_MINOR, DOCCAM_VERSION_PATCH)

/* The same as text: "1.0.0". */
#define DOCCAM_VERSION_STRING                                                                      \
    DOCCAM_VERSION_TEXT_(DOCCAM_VERSION_MAJOR, DOCCAM_VERSION_MINOR, DOCCAM_VERSION_PATCH)
#define DOCCAM_VERSION_TEXT_(major, minor, patch) DOCCAM_VERSION_JOIN_(major, minor, patch)
#define DOCCAM_VERSION_JOIN_(major, minor, patch) #major "." #minor "." #patch

#ifdef __cplusplus
extern "C" {
#endif

/*
 * Returns the version of the loaded library, in the form of DOCCAM_VERSION. It is greater if the
 * library was updated after the host was built; within one major version the host still works. Any
 * thread.
 */
DOCCAM_API int doccam_version(void);

#ifdef __cplusplus
}
#endif

#endif
