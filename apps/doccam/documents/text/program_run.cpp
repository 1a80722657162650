#include "documents/text/program_run.h"

#include "base/unique_fd.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <utility>

namespace doccam::host {
namespace {

constexpr std::size_t kMaximumOutput = 65536;

bool setsSame(const std::string& one, const char* other) {
    return std::string(other).starts_with(one.substr(0, one.find('=') + 1));
}

std::vector<std::string> environmentOf(const ProgramRun& run) {
    std::vector<std::string> environment = run.environment;
    for (char** one = environ; *one != nullptr; ++one) {
        if (std::none_of(run.environment.begin(), run.environment.end(),
                         [&](const std::string& set) { return setsSame(set, *one); })) {
            environment.emplace_back(*one);
        }
    }
    return environment;
}

// The words as execve takes them, as long as these exist.
std::vector<char*> pointersTo(std::vector<std::string>& words) {
    std::vector<char*> pointers;
    pointers.reserve(words.size() + 1);
    for (std::string& word : words) {
        pointers.push_back(word.data());
    }
    pointers.push_back(nullptr);
    return pointers;
}

// All that execve needs, made before the fork, after which nothing may be allocated.
struct Start {
    explicit Start(const ProgramRun& run)
      : words(run.arguments)
      , settings(environmentOf(run)) {
        words.insert(words.begin(), run.path);
        arguments = pointersTo(words);
        environment = pointersTo(settings);
        getrlimit(RLIMIT_CPU, &processorTime);
        const auto seconds = static_cast<rlim_t>(run.processorTime.count());
        processorTime.rlim_cur = std::min(seconds, processorTime.rlim_max);
    }

    std::vector<std::string> words;
    std::vector<std::string> settings;
    std::vector<char*> arguments;
    std::vector<char*> environment;
    rlimit processorTime{};
};

// In the forked child: only calls that are safe after the fork of a process with threads.
[[noreturn]] void become(const Start& start, pid_t parent, int nothing, int output) {
    constexpr int kCannotRun = 127;
    constexpr rlimit kNoCore{0, 0};
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() == parent && dup2(nothing, STDIN_FILENO) >= 0 &&
        dup2(output, STDOUT_FILENO) >= 0 && dup2(nothing, STDERR_FILENO) >= 0) {
        setrlimit(RLIMIT_CORE, &kNoCore);
        std::signal(SIGXCPU, SIG_DFL);
        setrlimit(RLIMIT_CPU, &start.processorTime);
        execve(start.arguments[0], start.arguments.data(), start.environment.data());
    }
    _exit(kCannotRun);
}

// The running program, which does not outlive this object.
class Running {
  public:
    Running(pid_t process, int pipe)
      : process_(process)
      , pipe_(pipe) {}

    ~Running() {
        if (process_ > 0) {
            kill(process_, SIGKILL);
            await();
        }
    }

    Running(const Running&) = delete;
    Running& operator=(const Running&) = delete;

    // Its output, which ends when it does.
    std::string follow(const Interrupt& interrupt) const {
        constexpr int kLookAgain = 100; // milliseconds
        std::string output;
        while (true) {
            const bool asked = interrupt.raised();
            if (asked && interrupt.mustEnd()) {
                throw Interruption();
            }
            // Once the process is asked to finish, the descriptor stays readable.
            std::array<pollfd, 2> events{
                {{pipe_, POLLIN, 0}, {asked ? -1 : interrupt.descriptor(), POLLIN, 0}}};
            poll(events.data(), events.size(), asked ? kLookAgain : -1);
            if (events[0].revents != 0 && !readInto(output)) {
                return output;
            }
        }
    }

    ProgramEnd await() {
        int status = 0;
        while (waitpid(process_, &status, 0) < 0 && errno == EINTR) {
        }
        process_ = -1;
        if (WIFSIGNALED(status) && WTERMSIG(status) == SIGXCPU) {
            return ProgramEnd::kOutOfTime;
        }
        return WIFEXITED(status) && WEXITSTATUS(status) == 0 ? ProgramEnd::kDone
                                                             : ProgramEnd::kFailed;
    }

  private:
    // Reads what is available; false at the end.
    bool readInto(std::string& output) const {
        std::array<char, 4096> chunk{};
        const ssize_t count = read(pipe_, chunk.data(), chunk.size());
        if (count > 0) {
            const std::size_t room = kMaximumOutput - output.size();
            output.append(chunk.data(), std::min(room, static_cast<std::size_t>(count)));
        }
        return count > 0 || (count < 0 && errno == EINTR);
    }

    pid_t process_;
    int pipe_;
};

bool isProgram(const std::string& path) {
    std::error_code ignored;
    return std::filesystem::is_regular_file(path, ignored) && access(path.c_str(), X_OK) == 0;
}

} // namespace

std::optional<std::string> findProgram(const std::string& name) {
    const char* const variable = std::getenv("PATH");
    const std::string folders = variable == nullptr ? "" : variable;
    for (std::size_t begin = 0; begin < folders.size();) {
        const std::size_t end = std::min(folders.find(':', begin), folders.size());
        const std::string path = folders.substr(begin, end - begin) + "/" + name;
        if (folders[begin] == '/' && isProgram(path)) {
            return path;
        }
        begin = end + 1;
    }
    return std::nullopt;
}

ProgramResult runProgram(const ProgramRun& run, const Interrupt& interrupt) {
    const Start start(run);
    std::array<int, 2> ends{};
    const UniqueFd nothing(open("/dev/null", O_RDWR | O_CLOEXEC));
    if (!nothing.isOpen() || pipe2(ends.data(), O_CLOEXEC) != 0) {
        return {ProgramEnd::kFailed, {}};
    }
    const UniqueFd from(ends[0]);
    UniqueFd to(ends[1]);
    const pid_t parent = getpid();
    const pid_t process = fork();
    if (process < 0) {
        return {ProgramEnd::kFailed, {}};
    }
    if (process == 0) {
        become(start, parent, nothing.get(), to.get());
    }
    to.reset();
    Running running(process, from.get());
    std::string output = running.follow(interrupt);
    return {running.await(), std::move(output)};
}

} // namespace doccam::host
