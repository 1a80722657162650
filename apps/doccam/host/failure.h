// Failure of a command: an exit code, and one sentence for the user.
#pragma once

#include <stdexcept>
#include <string>

namespace doccam::host {

// The process's exit codes, documented in docs/command-line.md.
enum ExitCode {
    kDone = 0,
    kNothingFound = 1,
    kUsage = 2,
    kNoCamera = 3,
    kCameraFailed = 4,
    kFileFailed = 5,
    kInterrupted = 130
};

// The message says what failed and what to do, without newline and program name.
class Failure : public std::runtime_error {
  public:
    Failure(ExitCode code, const std::string& message)
      : std::runtime_error(message)
      , code_(code) {}

    ExitCode code() const { return code_; }

  private:
    ExitCode code_;
};

// The process was asked to end by Ctrl-C, SIGTERM or SIGHUP.
class Interruption : public Failure {
  public:
    Interruption()
      : Failure(kInterrupted, "interrupted") {}
};

// The terminal has gone, whether or not SIGHUP comes, too.
class HangUp : public Interruption {};

} // namespace doccam::host
