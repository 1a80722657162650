// Restricting system calls with a seccomp filter.
#include "host/confinement/confinement.h"
#include "host/own_output.h"
#include "host/virtual_camera.h"

#include <sched.h>
#include <seccomp.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <memory>
#include <sstream>
#include <string>

namespace doccam::host {
namespace {

// The system calls by purpose, separated by blanks.

// Using and opening files; Landlock restricts which ones.
constexpr const char* kFileCalls =
    "access chmod close close_range copy_file_range creat dup dup2 dup3 faccessat faccessat2 "
    "fadvise64 fallocate fchmod fchmodat fchown fcntl fdatasync fgetxattr flock fstat fstatfs "
    "fsync ftruncate getcwd getdents getdents64 getxattr lgetxattr link linkat lseek lstat "
    "mkdir mkdirat newfstatat open openat openat2 pread64 preadv preadv2 pwrite64 pwritev "
    "pwritev2 read readahead readlink readlinkat readv rename renameat renameat2 rmdir "
    "sendfile stat statfs statx sync_file_range truncate umask unlink unlinkat utimensat "
    "write writev";

constexpr const char* kMemoryCalls =
    "brk madvise membarrier memfd_create mincore mremap msync munmap";

constexpr const char* kThreadCalls =
    "arch_prctl exit exit_group futex futex_waitv get_robust_list getcpu getpriority gettid "
    "rseq sched_getaffinity sched_get_priority_max sched_getparam sched_get_priority_min "
    "sched_getscheduler sched_setaffinity sched_yield set_robust_list set_tid_address prctl";

// Querying the process, the machine and the time.
constexpr const char* kQueryCalls =
    "clock_getres clock_gettime getegid geteuid getgid getgroups getpgid getpgrp getpid "
    "getppid getrandom getresgid getresuid getrlimit getrusage getsid gettimeofday getuid "
    "prlimit64 sysinfo time times uname";

// Signals to itself, timers, and waiting for them and for descriptors.
constexpr const char* kWaitingCalls =
    "alarm clock_nanosleep epoll_create epoll_create1 epoll_ctl epoll_pwait epoll_pwait2 "
    "epoll_wait eventfd eventfd2 inotify_add_watch inotify_init inotify_init1 "
    "inotify_rm_watch nanosleep pause pipe pipe2 poll ppoll pselect6 restart_syscall "
    "rt_sigaction rt_sigpending rt_sigprocmask rt_sigreturn rt_sigsuspend rt_sigtimedwait "
    "select setitimer sigaltstack signalfd signalfd4 timer_create timer_delete timer_settime "
    "timerfd_create timerfd_gettime timerfd_settime";

constexpr const char* kConnectionCalls =
    "accept accept4 getpeername getsockname getsockopt recvfrom recvmsg sendmmsg sendmsg "
    "sendto setsockopt shutdown";

// Never allowed; these fail with EPERM.
constexpr const char* kRefusedCalls =
    "execve execveat fork vfork ptrace process_vm_readv process_vm_writev kill tkill "
    "rt_sigqueueinfo rt_tgsigqueueinfo pidfd_open pidfd_send_signal socketpair";

constexpr std::uint32_t kAllow = SCMP_ACT_ALLOW;
constexpr std::uint32_t kRefuse = SCMP_ACT_ERRNO(EPERM);
constexpr std::uint32_t kAsUnknown = SCMP_ACT_ERRNO(ENOSYS);

// An ioctl request contains its subsystem's letter and, in the top two bits, the direction of its
// data: V4L2's requests carry data, the console's of the same letter do not.
constexpr std::uint64_t kLetterAndWay = 0xC000FF00;
constexpr std::uint64_t kWays[] = {0x40000000, 0x80000000, 0xC0000000};
constexpr std::uint64_t kV4l2Letter = 'V' << 8;
constexpr std::uint64_t kWholeRequest = 0xFFFFFFFF;

constexpr std::uint64_t kNewNamespaces = CLONE_NEWCGROUP | CLONE_NEWIPC | CLONE_NEWNET |
                                         CLONE_NEWNS | CLONE_NEWPID | CLONE_NEWUSER | CLONE_NEWUTS;
constexpr std::uint64_t kWriteAndRun = PROT_WRITE | PROT_EXEC;

using Argument = scmp_arg_cmp;

// Matches if the bits in mask of the argument, counted from 0, equal those of value.
Argument bits(unsigned argument, std::uint64_t mask, std::uint64_t value) {
    return {argument, SCMP_CMP_MASKED_EQ, mask, value};
}

class Filter {
  public:
    Filter()
      : context_(seccomp_init(kAsUnknown), seccomp_release) {
        set(SCMP_FLTATR_ACT_BADARCH, kRefuse);
        set(SCMP_FLTATR_CTL_TSYNC, 1);
        constexpr std::uint32_t kAsTree = 2; // a linear list would slow down each call
        set(SCMP_FLTATR_CTL_OPTIMIZE, kAsTree);
    }

    void add(std::uint32_t action, const char* names) {
        std::istringstream words(names);
        for (std::string name; words >> name;) {
            // Older versions of libseccomp lack the newest calls.
            const int call = seccomp_syscall_resolve_name(name.c_str());
            if (call != __NR_SCMP_ERROR) {
                note(seccomp_rule_add(context_.get(), action, call, 0));
            }
        }
    }

    void add(std::uint32_t action, const char* name, const Argument& argument) {
        note(seccomp_rule_add_array(context_.get(), action, seccomp_syscall_resolve_name(name), 1,
                                    &argument));
    }

    int load() {
        note(context_ == nullptr ? -ENOMEM : error_ == 0 ? seccomp_load(context_.get()) : 0);
        return -error_;
    }

  private:
    void set(scmp_filter_attr attribute, std::uint32_t value) {
        note(seccomp_attr_set(context_.get(), attribute, value));
    }

    void note(int result) { error_ = error_ == 0 && result < 0 ? result : error_; }

    std::unique_ptr<void, decltype(&seccomp_release)> context_;
    int error_ = 0;
};

void addThreads(Filter& filter) {
    // Threads, but no processes. clone3 has its flags in memory, where the filter cannot see them;
    // it fails with ENOSYS, and the C library falls back to clone.
    filter.add(kAllow, "clone", bits(0, CLONE_THREAD | kNewNamespaces, CLONE_THREAD));
    filter.add(kRefuse, "clone", bits(0, CLONE_THREAD, 0));
    filter.add(kAllow, "tgkill", bits(0, kWholeRequest, static_cast<std::uint64_t>(getpid())));
}

// No memory is both writable and executable.
void addMappings(Filter& filter) {
    for (const std::uint64_t allowed : {0, PROT_WRITE, PROT_EXEC}) {
        filter.add(kAllow, "mmap", bits(2, kWriteAndRun, allowed));
    }
    filter.add(kAllow, "mprotect", bits(2, PROT_EXEC, 0));
}

void addRequests(Filter& filter, bool cameras) {
    for (const std::uint64_t request : {TCGETS, TIOCGWINSZ, FIONREAD, FIONBIO, FIOCLEX, FIONCLEX}) {
        filter.add(kAllow, "ioctl", bits(1, kWholeRequest, request));
    }
    for (const std::uint64_t way : kWays) {
        if (cameras) {
            filter.add(kAllow, "ioctl", bits(1, kLetterAndWay, way | kV4l2Letter));
        }
    }
}

// Virtual cameras are steered through local sockets.
void addSockets(Filter& filter, bool connections) {
    const bool localSockets = !virtualCameraFolders().empty();
    if (connections || localSockets) {
        filter.add(kAllow, kConnectionCalls);
    }
    if (!localSockets) {
        filter.add(kRefuse, "socket connect bind listen");
        return;
    }
    filter.add(kAllow, "connect bind listen");
    filter.add(kAllow, "socket", {0, SCMP_CMP_EQ, AF_UNIX, 0});
    filter.add(kRefuse, "socket", {0, SCMP_CMP_NE, AF_UNIX, 0});
}

// Returns 0 or the kernel's error.
int filterCalls(const Reach& reach) {
    Filter filter;
    for (const char* names : {kFileCalls, kMemoryCalls, kThreadCalls, kQueryCalls, kWaitingCalls}) {
        filter.add(kAllow, names);
    }
    filter.add(kRefuse, kRefusedCalls);
    addThreads(filter);
    addMappings(filter);
    addRequests(filter, reach.cameras);
    addSockets(filter, reach.connections);
    return filter.load();
}

} // namespace

void confineCalls(const Reach& reach) {
    const int error = DOCCAM_CONFINED ? filterCalls(reach) : 0;
    if (error != 0) {
        complain(std::string("The system does not let this process be confined (") +
                 std::strerror(error) + "); it goes on, and --no-confinement silences this.");
    }
}

} // namespace doccam::host
