// Starting the program, against an empty one that loads every library that doccam may ever need.
#include "row.h"

#include <fcntl.h>
#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <fstream>
#include <limits>
#include <stdexcept>
#include <string>

namespace doccam::bench {
namespace {

constexpr const char* kPrograms[] = {DOCCAM_PROGRAM, DOCCAM_PROGRAM_WITH_EVERYTHING};
constexpr int kRounds = 30;

void check(bool fine, const char* program) {
    if (!fine) {
        throw std::runtime_error(std::string("bench: cannot run ") + program);
    }
}

// Runs the program, stopped when its libraries are about to be loaded, and again at its end.
class Run {
  public:
    explicit Run(const char* program)
      : program_(program)
      , process_(fork()) {
        if (process_ == 0) {
            // Without the libraries that this process preloads.
            std::array<char*, 1> environment{nullptr};
            std::array<char*, 3> words{const_cast<char*>(program), const_cast<char*>("--version"),
                                       nullptr};
            ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
            dup2(open("/dev/null", O_WRONLY), STDOUT_FILENO);
            execve(program, words.data(), environment.data());
            _exit(1);
        }
        check(process_ > 0 && next() == SIGTRAP, program);
        ptrace(PTRACE_SETOPTIONS, process_, nullptr, PTRACE_O_TRACEEXIT);
    }

    // To the end, of which memory is still there.
    void toEnd() {
        ptrace(PTRACE_CONT, process_, nullptr, nullptr);
        check(next() == (SIGTRAP | PTRACE_EVENT_EXIT << 8), program_);
    }

    // The largest resident memory, in millions of bytes.
    double memory() const {
        std::ifstream status("/proc/" + std::to_string(process_) + "/status");
        for (std::string line; std::getline(status, line);) {
            if (line.starts_with("VmHWM:")) {
                return std::stod(line.substr(6)) * 1024 / 1e6;
            }
        }
        throw std::runtime_error("the system does not tell the memory in use");
    }

    ~Run() {
        ptrace(PTRACE_CONT, process_, nullptr, nullptr);
        waitpid(process_, nullptr, 0);
    }

    Run(const Run&) = delete;
    Run& operator=(const Run&) = delete;

  private:
    int next() const {
        int status = 0;
        waitpid(process_, &status, 0);
        return WIFSTOPPED(status) ? status >> 8 : -1;
    }

    const char* program_;
    pid_t process_;
};

// The minimum for each program of many runs in turn.
template <typename Measure>
Quantity leastOf(const std::string& unit, const Measure& measure) {
    std::array<double, 2> least{std::numeric_limits<double>::max(),
                                std::numeric_limits<double>::max()};
    for (int round = 0; round < kRounds; ++round) {
        for (std::size_t i = 0; i < least.size(); ++i) {
            least[i] = std::min(least[i], measure(kPrograms[i]));
        }
    }
    return {least[0], least[1], unit};
}

Quantity startTime(const Picture& /*picture*/) {
    return leastOf("ms", [](const char* program) {
        Run run(program);
        const auto begin = std::chrono::steady_clock::now();
        run.toEnd();
        return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begin)
            .count();
    });
}

Quantity startMemory(const Picture& /*picture*/) {
    return leastOf("MB", [](const char* program) {
        Run run(program);
        run.toEnd();
        return run.memory();
    });
}

const Entry time({.name = "start, time",
                  .peer = "with all libraries loaded",
                  .bound = 0.20,
                  .quantity = startTime});

const Entry memory({.name = "start, memory",
                    .peer = "with all libraries loaded",
                    .bound = 0.50,
                    .quantity = startMemory});

} // namespace
} // namespace doccam::bench
