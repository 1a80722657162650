/* The version of these headers, and of the library that a host runs with. */
#ifndef DOCCAM_VERSION_H
#define DOCCAM_VERSION_H

#include "export.h"

/* The build takes the project's version from these three lines. */
#define DOCCAM_VERSION_MAJOR 1
#define DOCCAM_VERSION_MINOR 0
#define DOCCAM_VERSION_PATCH 0

/* A version as one number that grows with it; minor and patch stay below 1000. For #if, too. */
#define DOCCAM_VERSION_NUMBER(major, minor, patch) ((major)*1000000 + (minor)*1000 + (patch))

/* The version of these headers, as such a number. */
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
 * The version of the library in the process, as DOCCAM_VERSION counts. It is the greater one where
 * the library was updated after the host was built; within one major version that host still runs.
 * Any thread.
 */
DOCCAM_API int doccam_version(void);

#ifdef __cplusplus
}
#endif

#endif
