#include "host/apart.h"

#include "base/unique_fd.h"
#include "host/confinement/confinement.h"
#include "host/failure.h"

#include <fcntl.h>
#include <opencv2/core.hpp>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <utility>

namespace doccam::host {
namespace {

// Precedes each message on the pipe: its kind, a report or the exit code of a Failure, and length.
struct MessageHead {
    std::int32_t kind = 0;
    std::uint32_t length = 0;
};

constexpr std::int32_t kReport = -1;
constexpr std::size_t kMaximumBytes = 1 << 20; // all messages together

using Clock = std::chrono::steady_clock;

[[noreturn]] void failToStart() {
    throw Failure(kFileFailed, std::string("No process can be started to read the files (") +
                                   std::strerror(errno) + "); close other programs and try again.");
}

void send(int pipe, std::int32_t kind, const std::string& text) {
    const MessageHead head{kind, static_cast<std::uint32_t>(text.size())};
    std::string message(reinterpret_cast<const char*>(&head), sizeof head);
    message += text;
    for (std::size_t sent = 0; sent < message.size();) {
        const ssize_t count = write(pipe, message.data() + sent, message.size() - sent);
        if (count <= 0 && errno != EINTR) {
            _exit(kDone);
        }
        sent += static_cast<std::size_t>(std::max<ssize_t>(count, 0));
    }
}

// The process's private writable memory, as counted by RLIMIT_DATA.
std::uint64_t bytesInUse() {
    std::uint64_t pages = 0;
    std::ifstream statistics("/proc/self/statm");
    for (int field = 0; field < 6; ++field) {
        statistics >> pages;
    }
    return pages * static_cast<std::uint64_t>(sysconf(_SC_PAGESIZE));
}

// Permanent. The hard limit is one higher: there SIGKILL would replace SIGXCPU.
void limit(__rlimit_resource resource, std::uint64_t value) {
    rlimit limits{};
    getrlimit(resource, &limits);
    limits.rlim_max = std::min<rlim_t>(value + 1, limits.rlim_max);
    limits.rlim_cur = std::min<rlim_t>(value, limits.rlim_max);
    setrlimit(resource, &limits);
}

// Thread stacks count as memory in use even if untouched.
void apply(const Bounds& bounds, std::uint64_t before) {
    constexpr int kMaximumThreads = 4;
    cv::setNumThreads(std::min(cv::getNumThreads(), kMaximumThreads));
    limit(RLIMIT_CORE, 0);
    if (bounds.processor) {
        std::signal(SIGXCPU, SIG_DFL);
        limit(RLIMIT_CPU, static_cast<std::uint64_t>(bounds.processor->count()));
    }
    // A sanitizer's shadow would count as memory.
    if (!DOCCAM_SANITIZED) {
        limit(RLIMIT_DATA, before + bounds.bytes);
    }
    if (bounds.confined) {
        confineCalls({});
    }
}

[[noreturn]] void workInCopy(int pipe, pid_t parent, const Bounds& bounds, std::uint64_t before,
                             const std::function<void(const Report&)>& work) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != parent) {
        _exit(kDone);
    }
    try {
        apply(bounds, before);
        work([pipe](const std::string& text) { send(pipe, kReport, text); });
    } catch (const Failure& failure) {
        send(pipe, failure.code(), failure.what());
    } catch (const std::exception&) {
        std::fflush(stdout);
        std::abort();
    }
    std::fflush(stdout);
    _exit(kDone);
}

int millisecondsUntil(std::optional<Clock::time_point> end) {
    using std::chrono::milliseconds;
    if (!end) {
        return -1;
    }
    const auto left = std::chrono::ceil<milliseconds>(*end - Clock::now());
    return static_cast<int>(std::max(left, milliseconds(0)).count());
}

// The running child process, which does not outlive this object. Its messages may be arbitrary
// bytes once a decoder is compromised.
class Child {
  public:
    Child(pid_t process, const UniqueFd& pipe)
      : process_(process)
      , pipe_(pipe.get()) {}

    ~Child() {
        if (process_ > 0) {
            kill(process_, SIGKILL);
            await();
        }
    }

    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;

    // Reads the messages until the child has ended or must be ended.
    ApartEnd follow(const Interrupt& interrupt, std::optional<Clock::time_point> end) {
        std::array<pollfd, 2> events{{{pipe_, POLLIN, 0}, {interrupt.descriptor(), POLLIN, 0}}};
        while (true) {
            const int ready = poll(events.data(), events.size(), millisecondsUntil(end));
            interrupt.check();
            if (ready == 0) {
                // Without waiting for it, as a disk that does not respond may block it.
                kill(std::exchange(process_, -1), SIGKILL);
                return ApartEnd::kOutOfTime;
            }
            if (ready < 0 || (events[0].revents & (POLLIN | POLLHUP)) == 0) {
                continue;
            }
            if (!read()) {
                return await();
            }
            if (bytes_.size() > kMaximumBytes) {
                return ApartEnd::kCrashed;
            }
        }
    }

    // The reports in its messages. Throws a Failure that they contain.
    Apart after(ApartEnd end) const {
        if (bytes_.size() > kMaximumBytes) {
            return {ApartEnd::kCrashed, {}};
        }
        Apart apart{end, {}};
        MessageHead head;
        for (std::size_t at = 0; bytes_.size() - at >= sizeof head; at += head.length) {
            std::memcpy(&head, bytes_.data() + at, sizeof head);
            at += sizeof head;
            if (head.length > bytes_.size() - at) {
                break;
            }
            const std::string text = bytes_.substr(at, head.length);
            if (head.kind >= kNothingFound && head.kind <= kFileFailed) {
                throw Failure(static_cast<ExitCode>(head.kind), text);
            }
            if (head.kind == kInterrupted) {
                throw Interruption();
            }
            if (head.kind != kReport) {
                return {ApartEnd::kCrashed, {}};
            }
            apart.reports.push_back(text);
        }
        return apart;
    }

  private:
    // Reads what is available; false at the end.
    bool read() {
        std::array<char, 65536> chunk{};
        const ssize_t count = ::read(pipe_, chunk.data(), chunk.size());
        bytes_.append(chunk.data(), static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
        return count > 0 || (count < 0 && errno == EINTR);
    }

    ApartEnd await() {
        int status = 0;
        while (waitpid(process_, &status, 0) < 0 && errno == EINTR) {
        }
        process_ = -1;
        if (!WIFSIGNALED(status)) {
            return WEXITSTATUS(status) == 0 ? ApartEnd::kDone : ApartEnd::kCrashed;
        }
        return WTERMSIG(status) == SIGXCPU ? ApartEnd::kOutOfTime : ApartEnd::kCrashed;
    }

    pid_t process_;
    int pipe_;
    std::string bytes_;
};

} // namespace

Apart runApart(const Interrupt& interrupt, const Bounds& bounds,
               const std::function<void(const Report&)>& work) {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) {
        failToStart();
    }
    const UniqueFd from(ends[0]);
    UniqueFd to(ends[1]);
    std::fflush(stdout);
    const std::uint64_t before = bytesInUse();
    const pid_t parent = getpid();
    const pid_t process = fork();
    if (process < 0) {
        failToStart();
    }
    if (process == 0) {
        workInCopy(to.get(), parent, bounds, before, work);
    }
    to.reset();
    Child child(process, from);
    const auto end = bounds.wall ? std::optional(Clock::now() + *bounds.wall) : std::nullopt;
    return child.after(child.follow(interrupt, end));
}

} // namespace doccam::host
