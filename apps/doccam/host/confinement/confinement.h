// Dropping access before untrusted data is processed, to contain faults in a decoder or in the
// server.
#pragma once

#include "host/interrupt.h"

#include <filesystem>
#include <vector>

namespace doccam::host {

// What a confined process can still access, besides the system's own files and what it has open.
struct Reach {
    std::vector<std::filesystem::path> read{};  // files, or folders with all below them
    std::vector<std::filesystem::path> write{}; // folders with all below them
    std::vector<std::filesystem::path> keep{};  // such folders that are never removed themselves
    bool cameras = false;                       // including those attached later
    bool connections = false;                   // accepted from an already listening socket
};

// Each permanently drops other access: in two steps, as sockets may be created in between. Both do
// nothing in instrumented builds, whose runtimes need more.

// Restricts file access with Landlock if the kernel has it (Linux 5.19). Applies to the calling
// thread, those it starts later, and the one that waits for signals: call it before other threads
// exist.
void confineFiles(const Reach& reach, Interrupt& interrupt);

// Restricts system calls with a seccomp filter for all threads; prints a warning if it cannot be
// installed. Starting programs and processes, signalling or tracing others, and creating sockets
// fail with EPERM. All other disallowed calls fail with ENOSYS, as on an older kernel, so that the
// C library falls back to alternatives, which it would not for EPERM.
void confineCalls(const Reach& reach);

} // namespace doccam::host
