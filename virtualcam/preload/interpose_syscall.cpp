// Replaces the C library's syscall(), through which libv4l2 bypasses the other functions.
#include "control.h"
#include "preload/lookup.h"
#include "preload/next.h"
#include "preload/node_calls.h"

#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cstdarg>

namespace {

using doccam::virtualcam::Next;
using doccam::virtualcam::virtualDescriptors;
using doccam::virtualcam::virtualMappings;

constinit Next<long(long, ...)> nextSyscall("syscall");

struct Arguments {
    long value[6];

    int number(int position) const { return static_cast<int>(value[position]); }

    // NOLINTNEXTLINE(performance-no-int-to-ptr): the kernel takes pointers as numbers.
    void* pointer(int position) const { return reinterpret_cast<void*>(value[position]); }

    const char* text(int position) const { return static_cast<const char*>(pointer(position)); }
};

// Whether the call must go to the replaced function of the same name.
bool concernsNode(long call, const Arguments& arguments) {
    switch (call) {
    case SYS_open:
        return doccam::virtualcam::virtualNode(arguments.text(0)) >= 0;
    case SYS_openat:
        return doccam::virtualcam::virtualNode(arguments.text(1)) >= 0;
    case SYS_close:
    case SYS_ioctl:
        return virtualDescriptors.contains(arguments.number(0));
    case SYS_mmap:
        return virtualDescriptors.contains(arguments.number(4));
    case SYS_munmap:
        return virtualMappings.contains(arguments.pointer(0));
    default:
        return false;
    }
}

long callByName(long call, const Arguments& arguments) {
    switch (call) {
    case SYS_open:
        return open(arguments.text(0), arguments.number(1));
    case SYS_openat:
        return open(arguments.text(1), arguments.number(2));
    case SYS_close:
        return close(arguments.number(0));
    case SYS_ioctl:
        return ioctl(arguments.number(0), static_cast<unsigned long>(arguments.value[1]),
                     arguments.pointer(2));
    case SYS_mmap:
        return reinterpret_cast<long>(mmap(
            arguments.pointer(0), static_cast<std::size_t>(arguments.value[1]), arguments.number(2),
            arguments.number(3), arguments.number(4), arguments.value[5]));
    default:
        return munmap(arguments.pointer(0), static_cast<std::size_t>(arguments.value[1]));
    }
}

} // namespace

// Callers pass as many arguments as the call takes; like the kernel, this reads all six.
extern "C" DOCCAM_VIRTUALCAM_API __attribute__((no_sanitize("address"))) long
syscall(long call, ...) noexcept {
    Arguments arguments{};
    va_list rest;
    va_start(rest, call);
    for (long& value : arguments.value) {
        value = va_arg(rest, long);
    }
    va_end(rest);
    if (concernsNode(call, arguments)) {
        return callByName(call, arguments);
    }
    const long* value = arguments.value;
    return nextSyscall(call, value[0], value[1], value[2], value[3], value[4], value[5]);
}
