// Keeps what the library prints out of the table.
#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>

namespace doccam::bench {

// While alive, discards standard output.
class QuietOutput {
  public:
    QuietOutput() {
        std::fflush(stdout);
        const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
        dup2(nowhere, STDOUT_FILENO);
        close(nowhere);
    }

    ~QuietOutput() {
        std::fflush(stdout);
        dup2(output_, STDOUT_FILENO);
        close(output_);
    }

    QuietOutput(const QuietOutput&) = delete;
    QuietOutput& operator=(const QuietOutput&) = delete;

  private:
    const int output_ = dup(STDOUT_FILENO);
};

} // namespace doccam::bench
