// What a process gives up before it meets bytes from outside: a fault in a decoder or in the server
// then ends with what the process still reaches.
#pragma once

#include "host/interrupt.h"

#include <filesystem>
#include <vector>

namespace doccam::host {

// What a confined process goes on reaching, beside the system's own files and what it has open.
struct Reach {
    std::vector<std::filesystem::path> read{};  // files, or folders with all below them
    std::vector<std::filesystem::path> write{}; // folders with all below them
    bool cameras = false;                       // those attached later, too
    bool connections = false;                   // those that a socket accepts that listens already
};

// Gives up all else for good: in one step, or in two where sockets are made in between. Nothing
// happens in instrumented builds, whose runtimes need more.
void confine(const Reach& reach, Interrupt& interrupt);

// Other files, by Landlock where the kernel has it (Linux 5.19). Holds for the calling thread,
// those that it starts later, and the one that waits for signals: to be called before other threads
// are there.
void confineFiles(const Reach& reach, Interrupt& interrupt);

// Starting programs and processes, making sockets, watching and signalling other processes, by a
// seccomp filter. Holds for all threads. Such a call fails (EPERM), and the process goes on; where
// the filter cannot be set, it complains and goes on, too. Whoever needs another program later
// starts it before, and talks to it over a pipe.
void confineCalls(const Reach& reach);

} // namespace doccam::host
