// Which calls the kernel still takes from a process, by a seccomp filter.
#pragma once

namespace doccam::host {

// What is allowed beside computing, threads, waiting, and files.
struct CallGroups {
    bool cameras = false;      // the requests of V4L2
    bool connections = false;  // accepting them, and talking over them
    bool localSockets = false; // sockets within this machine, of every kind
};

// For all threads, and for good. Returns 0 or the error that the kernel gave.
//
// Of what is not allowed, starting programs and processes, signals to others, and sockets fail with
// EPERM. Every other call fails with ENOSYS, as on an older kernel: the C library then does
// without, where EPERM would be an answer to it.
int filterCalls(const CallGroups& groups);

} // namespace doccam::host
