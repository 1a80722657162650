// Restricting a process's system calls with a seccomp filter.
#pragma once

namespace doccam::host {

// What is allowed besides computing, threads, waiting, and files.
struct CallGroups {
    bool cameras = false;      // V4L2's requests
    bool connections = false;  // accepting and using them
    bool localSockets = false; // sockets within this machine, of every kind
};

// Permanent, for all threads. Returns 0 or the kernel's error.
//
// Starting programs and processes, signalling others, and creating sockets fail with EPERM. All
// other disallowed calls fail with ENOSYS, as on an older kernel, so that the C library falls back
// to alternatives, which it would not for EPERM.
int filterCalls(const CallGroups& groups);

} // namespace doccam::host
