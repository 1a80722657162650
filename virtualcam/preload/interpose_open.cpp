// Replaces the C library's functions that open, close and duplicate descriptors.
#include "control.h"
#include "preload/lookup.h"
#include "preload/next.h"
#include "preload/node_calls.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>

namespace {

using doccam::virtualcam::Next;
using doccam::virtualcam::virtualDescriptors;

constinit Next<int(const char*, int, ...)> nextOpen("open");
constinit Next<int(const char*, int, ...)> nextOpen64("open64");
constinit Next<int(int, const char*, int, ...)> nextOpenat("openat");
constinit Next<int(int, const char*, int, ...)> nextOpenat64("openat64");
constinit Next<int(const char*, int)> nextOpen2("__open_2");
constinit Next<int(const char*, int)> nextOpen64Checked("__open64_2");
constinit Next<int(int, const char*, int)> nextOpenat2("__openat_2");
constinit Next<int(int, const char*, int)> nextOpenat64Checked("__openat64_2");
constinit Next<int(int)> nextClose("close");
constinit Next<int(int)> nextDup("dup");
constinit Next<int(int, int)> nextDup2("dup2");
constinit Next<int(int, int, int)> nextDup3("dup3");
constinit Next<int(int, int, ...)> nextFcntl("fcntl");
constinit Next<int(int, int, ...)> nextFcntl64("fcntl64");

// The mode is passed only if a file may be created.
bool takesMode(int flags) {
    return (flags & O_CREAT) != 0 || (flags & O_TMPFILE) == O_TMPFILE;
}

// Opens a virtual node, or else calls the C library's function.
template <typename Pass>
int openOr(const char* path, int flags, Pass pass) {
    const int node = doccam::virtualcam::virtualNode(path);
    return node >= 0 ? doccam::virtualcam::openNode(node, flags) : pass();
}

int noteCopy(int descriptor, int copy) {
    if (copy >= 0 && virtualDescriptors.contains(descriptor)) {
        doccam::virtualcam::shareNode(descriptor, copy);
    }
    return copy;
}

void noteReplaced(int descriptor, int copy) {
    if (descriptor != copy && virtualDescriptors.contains(copy)) {
        doccam::virtualcam::dropNode(copy);
    }
}

bool duplicates(int command) {
    return command == F_DUPFD || command == F_DUPFD_CLOEXEC;
}

} // namespace

extern "C" {

DOCCAM_VIRTUALCAM_API int open(const char* path, int flags, ...) {
    va_list rest;
    va_start(rest, flags);
    const mode_t mode = takesMode(flags) ? va_arg(rest, mode_t) : 0;
    va_end(rest);
    return openOr(path, flags, [&] { return nextOpen(path, flags, mode); });
}

DOCCAM_VIRTUALCAM_API int open64(const char* path, int flags, ...) {
    va_list rest;
    va_start(rest, flags);
    const mode_t mode = takesMode(flags) ? va_arg(rest, mode_t) : 0;
    va_end(rest);
    return openOr(path, flags, [&] { return nextOpen64(path, flags, mode); });
}

DOCCAM_VIRTUALCAM_API int openat(int folder, const char* path, int flags, ...) {
    va_list rest;
    va_start(rest, flags);
    const mode_t mode = takesMode(flags) ? va_arg(rest, mode_t) : 0;
    va_end(rest);
    return openOr(path, flags, [&] { return nextOpenat(folder, path, flags, mode); });
}

DOCCAM_VIRTUALCAM_API int openat64(int folder, const char* path, int flags, ...) {
    va_list rest;
    va_start(rest, flags);
    const mode_t mode = takesMode(flags) ? va_arg(rest, mode_t) : 0;
    va_end(rest);
    return openOr(path, flags, [&] { return nextOpenat64(folder, path, flags, mode); });
}

// NOLINTBEGIN(bugprone-reserved-identifier): a fortified open() calls these.

DOCCAM_VIRTUALCAM_API int __open_2(const char* path, int flags) {
    return openOr(path, flags, [&] { return nextOpen2(path, flags); });
}

DOCCAM_VIRTUALCAM_API int __open64_2(const char* path, int flags) {
    return openOr(path, flags, [&] { return nextOpen64Checked(path, flags); });
}

DOCCAM_VIRTUALCAM_API int __openat_2(int folder, const char* path, int flags) {
    return openOr(path, flags, [&] { return nextOpenat2(folder, path, flags); });
}

DOCCAM_VIRTUALCAM_API int __openat64_2(int folder, const char* path, int flags) {
    return openOr(path, flags, [&] { return nextOpenat64Checked(folder, path, flags); });
}

// NOLINTEND(bugprone-reserved-identifier)

DOCCAM_VIRTUALCAM_API int close(int descriptor) {
    if (!virtualDescriptors.contains(descriptor)) {
        return nextClose(descriptor);
    }
    const int result = doccam::virtualcam::closeNode(descriptor);
    const int error = errno;
    nextClose(descriptor);
    errno = error;
    return result;
}

DOCCAM_VIRTUALCAM_API int dup(int descriptor) noexcept {
    return noteCopy(descriptor, nextDup(descriptor));
}

DOCCAM_VIRTUALCAM_API int dup2(int descriptor, int copy) noexcept {
    noteReplaced(descriptor, copy);
    const int result = nextDup2(descriptor, copy);
    return descriptor == copy ? result : noteCopy(descriptor, result);
}

DOCCAM_VIRTUALCAM_API int dup3(int descriptor, int copy, int flags) noexcept {
    noteReplaced(descriptor, copy);
    return noteCopy(descriptor, nextDup3(descriptor, copy, flags));
}

DOCCAM_VIRTUALCAM_API int fcntl(int descriptor, int command, ...) {
    va_list rest;
    va_start(rest, command);
    const long argument = va_arg(rest, long);
    va_end(rest);
    const int result = nextFcntl(descriptor, command, argument);
    return duplicates(command) ? noteCopy(descriptor, result) : result;
}

DOCCAM_VIRTUALCAM_API int fcntl64(int descriptor, int command, ...) {
    va_list rest;
    va_start(rest, command);
    const long argument = va_arg(rest, long);
    va_end(rest);
    const int result = nextFcntl64(descriptor, command, argument);
    return duplicates(command) ? noteCopy(descriptor, result) : result;
}

} // extern "C"
