#include "host/confinement/call_filter.h"

#include "host/confinement/call_names.h"

#include <sched.h>
#include <seccomp.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <memory>
#include <sstream>
#include <string>

namespace doccam::host {
namespace {

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

    void allow(const char* names) { add(SCMP_ACT_ALLOW, names); }

    void refuse(const char* names) { add(kRefuse, names); }

    void allow(const char* name, const Argument& argument) { add(SCMP_ACT_ALLOW, name, argument); }

    void refuse(const char* name, const Argument& argument) { add(kRefuse, name, argument); }

    int load() {
        note(context_ == nullptr ? -ENOMEM : error_ == 0 ? seccomp_load(context_.get()) : 0);
        return -error_;
    }

  private:
    void set(scmp_filter_attr attribute, std::uint32_t value) {
        note(seccomp_attr_set(context_.get(), attribute, value));
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

    void note(int result) { error_ = error_ == 0 && result < 0 ? result : error_; }

    std::unique_ptr<void, decltype(&seccomp_release)> context_;
    int error_ = 0;
};

void addThreads(Filter& filter) {
    // Threads, but no processes. clone3 has its flags in memory, where the filter cannot see them;
    // it fails with ENOSYS, and the C library falls back to clone.
    filter.allow("clone", bits(0, CLONE_THREAD | kNewNamespaces, CLONE_THREAD));
    filter.refuse("clone", bits(0, CLONE_THREAD, 0));
    filter.allow("tgkill", bits(0, kWholeRequest, static_cast<std::uint64_t>(getpid())));
}

// No memory is both writable and executable.
void addMappings(Filter& filter) {
    for (const std::uint64_t allowed : {0, PROT_WRITE, PROT_EXEC}) {
        filter.allow("mmap", bits(2, kWriteAndRun, allowed));
    }
    filter.allow("mprotect", bits(2, PROT_EXEC, 0));
}

void addRequests(Filter& filter, bool cameras) {
    for (const std::uint64_t request : {TCGETS, TIOCGWINSZ, FIONREAD, FIONBIO, FIOCLEX, FIONCLEX}) {
        filter.allow("ioctl", bits(1, kWholeRequest, request));
    }
    for (const std::uint64_t way : kWays) {
        if (cameras) {
            filter.allow("ioctl", bits(1, kLetterAndWay, way | kV4l2Letter));
        }
    }
}

void addSockets(Filter& filter, const CallGroups& groups) {
    if (groups.connections || groups.localSockets) {
        filter.allow(kConnectionCalls);
    }
    if (!groups.localSockets) {
        filter.refuse("socket connect bind listen");
        return;
    }
    filter.allow("connect bind listen");
    filter.allow("socket", {0, SCMP_CMP_EQ, AF_UNIX, 0});
    filter.refuse("socket", {0, SCMP_CMP_NE, AF_UNIX, 0});
}

} // namespace

int filterCalls(const CallGroups& groups) {
    Filter filter;
    for (const char* names : {kFileCalls, kMemoryCalls, kThreadCalls, kQueryCalls, kWaitingCalls}) {
        filter.allow(names);
    }
    filter.refuse(kRefusedCalls);
    addThreads(filter);
    addMappings(filter);
    addRequests(filter, groups.cameras);
    addSockets(filter, groups);
    return filter.load();
}

} // namespace doccam::host
