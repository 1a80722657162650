// Running another program to its end.
#pragma once

#include "host/interrupt.h"

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace doccam::host {

struct ProgramRun {
    std::string path;                       // absolute
    std::vector<std::string> arguments;     // without the program's name
    std::vector<std::string> environment{}; // NAME=VALUE, instead of or beside this process's
    std::chrono::seconds processorTime;     // after which it is killed
};

enum class ProgramEnd { kDone, kFailed, kOutOfTime };

struct ProgramResult {
    ProgramEnd end = ProgramEnd::kDone;
    std::string output; // the beginning of its standard output, at most 64 KiB
};

// The path of the program in PATH, whose folders count if they are absolute.
std::optional<std::string> findProgram(const std::string& name);

// Runs the program without input and discards its errors. It does not outlive the calling thread.
// Throws Interruption, having killed it, when this process must end; does not react when it is only
// asked to finish. Any thread.
ProgramResult runProgram(const ProgramRun& run, const Interrupt& interrupt);

} // namespace doccam::host
