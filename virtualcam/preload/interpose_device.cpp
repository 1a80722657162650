// Replaces the C library's functions on descriptors and mappings.
#include "control.h"
#include "preload/lookup.h"
#include "preload/next.h"
#include "preload/node_calls.h"
#include "preload/sleeps.h"

#include <poll.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/select.h>

#include <algorithm>
#include <cstdarg>
#include <cstdint>

namespace {

using doccam::virtualcam::Next;
using doccam::virtualcam::NodeMapping;
using doccam::virtualcam::pollErrors;
using doccam::virtualcam::virtualDescriptors;
using doccam::virtualcam::virtualMappings;

constinit Next<int(int, unsigned long, ...)> nextIoctl("ioctl");
constinit Next<void*(void*, std::size_t, int, int, int, off_t)> nextMmap("mmap");
constinit Next<int(void*, std::size_t)> nextMunmap("munmap");
constinit Next<int(pollfd*, nfds_t, int)> nextPoll("poll");
constinit Next<int(pollfd*, nfds_t, const timespec*, const sigset_t*)> nextPpoll("ppoll");
constinit Next<int(int, fd_set*, fd_set*, fd_set*, timeval*)> nextSelect("select");

void* mapNode(void* address, std::size_t length, int protection, int flags, int descriptor,
              off_t offset) {
    NodeMapping mapping(descriptor, length, protection, flags, offset);
    void* mapped = MAP_FAILED;
    if (mapping.memoryFile() >= 0) {
        mapped = nextMmap(address, length, protection, flags, mapping.memoryFile(), offset);
    }
    mapping.finish(mapped);
    return mapped;
}

short errorsOf(const pollfd& entry) {
    return virtualDescriptors.contains(entry.fd) ? pollErrors(entry.fd) : static_cast<short>(0);
}

// A node that does not stream is reported at once, as an error instead of as readable.
template <typename Wait, typename Look>
int pollNodes(pollfd* entries, nfds_t count, Wait wait, Look look) {
    const bool failed = std::any_of(entries, entries + count, errorsOf);
    int result = failed ? look() : wait();
    for (nfds_t i = 0; result >= 0 && i < count; ++i) {
        if (const short errors = errorsOf(entries[i]); errors != 0) {
            result += entries[i].revents == 0 ? 1 : 0;
            entries[i].revents = errors;
        }
    }
    return result;
}

bool virtualAmong(const pollfd* entries, nfds_t count) {
    return std::any_of(entries, entries + count,
                       [](const pollfd& entry) { return virtualDescriptors.contains(entry.fd); });
}

} // namespace

extern "C" {

DOCCAM_VIRTUALCAM_API int ioctl(int descriptor, unsigned long request, ...) noexcept {
    va_list rest;
    va_start(rest, request);
    void* argument = va_arg(rest, void*);
    va_end(rest);
    if (virtualDescriptors.contains(descriptor)) {
        return doccam::virtualcam::requestNode(descriptor, static_cast<std::uint32_t>(request),
                                               argument);
    }
    return nextIoctl(descriptor, request, argument);
}

DOCCAM_VIRTUALCAM_API void* mmap(void* address, std::size_t length, int protection, int flags,
                                 int descriptor, off_t offset) noexcept {
    if ((flags & MAP_ANONYMOUS) == 0 && virtualDescriptors.contains(descriptor)) {
        return mapNode(address, length, protection, flags, descriptor, offset);
    }
    return nextMmap(address, length, protection, flags, descriptor, offset);
}

DOCCAM_VIRTUALCAM_API void* mmap64(void* address, std::size_t length, int protection, int flags,
                                   int descriptor, off64_t offset) noexcept {
    return mmap(address, length, protection, flags, descriptor, offset);
}

DOCCAM_VIRTUALCAM_API int munmap(void* address, std::size_t length) noexcept {
    if (!virtualMappings.contains(address)) {
        return nextMunmap(address, length);
    }
    if (!doccam::virtualcam::mayUnmap(address)) {
        return -1;
    }
    const int result = nextMunmap(address, length);
    if (result == 0) {
        doccam::virtualcam::unmapped(address);
    }
    return result;
}

DOCCAM_VIRTUALCAM_API int poll(pollfd* entries, nfds_t count, int timeout) {
    if (!virtualAmong(entries, count)) {
        return nextPoll(entries, count, timeout);
    }
    return pollNodes(
        entries, count, [&] { return nextPoll(entries, count, timeout); },
        [&] { return nextPoll(entries, count, 0); });
}

DOCCAM_VIRTUALCAM_API int ppoll(pollfd* entries, nfds_t count, const timespec* timeout,
                                const sigset_t* mask) {
    if (!virtualAmong(entries, count)) {
        return nextPpoll(entries, count, timeout, mask);
    }
    const timespec now{};
    return pollNodes(
        entries, count, [&] { return nextPpoll(entries, count, timeout, mask); },
        [&] { return nextPpoll(entries, count, &now, mask); });
}

DOCCAM_VIRTUALCAM_API int select(int count, fd_set* readable, fd_set* writable, fd_set* special,
                                 timeval* timeout) {
    if (readable != nullptr || writable != nullptr || special != nullptr || timeout == nullptr) {
        return nextSelect(count, readable, writable, special, timeout);
    }
    *timeout = doccam::virtualcam::noteSleep(*timeout);
    return nextSelect(count, nullptr, nullptr, nullptr, timeout);
}

} // extern "C"
