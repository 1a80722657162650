// The system calls of a confined process by purpose, separated by blanks.
#pragma once

namespace doccam::host {

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

} // namespace doccam::host
