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
    bool cameras = false;                       // including those attached later
    bool connections = false;                   // accepted from an already listening socket
};

// Permanently drops all other access: in one step, or in two if sockets are created in between.
// Does nothing in instrumented builds, whose runtimes need more.
void confine(const Reach& reach, Interrupt& interrupt);

// Restricts file access with Landlock if the kernel has it (Linux 5.19). Applies to the calling
// thread, those it starts later, and the one that waits for signals: call it before other threads
// exist.
void confineFiles(const Reach& reach, Interrupt& interrupt);

// Prevents starting programs and processes, creating sockets, and tracing or signalling other
// processes, with a seccomp filter for all threads. Such calls fail with EPERM, and the process
// continues; if the filter cannot be installed, it prints a warning and continues. A program needed
// later must be started before, and connected by a pipe.
void confineCalls(const Reach& reach);

} // namespace doccam::host
