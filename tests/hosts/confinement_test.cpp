#include "host/confinement/confinement.h"
#include "support/scratch_folder.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <linux/landlock.h>
#include <opencv2/core.hpp>
#include <opencv2/imgcodecs.hpp>
#include <spawn.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/ptrace.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <thread>

namespace {

using namespace doccam::host;
using doccam::test::ScratchFolder;
namespace fs = std::filesystem;

// The exit status of a child that runs body, -1 after a signal. body returns errno, 0 for success.
int inChild(const std::function<int()>& body) {
    const pid_t child = fork();
    if (child == 0) {
        _exit(body());
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

int errorOf(long result) {
    return result < 0 ? errno : 0;
}

int openError(const fs::path& path, int flags = O_RDONLY) {
    return errorOf(open(path.c_str(), flags | O_CLOEXEC, 0600));
}

void confine(const Reach& reach, Interrupt& interrupt) {
    confineFiles(reach, interrupt);
    confineCalls(reach);
}

class Confinement : public testing::Test {
  protected:
    Confinement() { std::ofstream(secret_) << "secret"; }

    void SetUp() override {
        if (!DOCCAM_CONFINED) {
            GTEST_SKIP() << "this build is not confined";
        }
    }

    // The result of action in a process confined to reach.
    static int confined(const Reach& reach, const std::function<int()>& action) {
        return inChild([&] {
            Interrupt interrupt;
            confine(reach, interrupt);
            return action();
        });
    }

    Reach ownFolder() const { return {.write = {own_}}; }

    const ScratchFolder folder_;
    const fs::path secret_ = folder_.file("secret");
    const fs::path own_ = fs::path(folder_.file("own"));
};

class FileConfinement : public Confinement {
  protected:
    FileConfinement() { fs::create_directory(own_); }

    void SetUp() override {
        Confinement::SetUp();
        // The first version that can rename between folders.
        if (syscall(SYS_landlock_create_ruleset, nullptr, 0, LANDLOCK_CREATE_RULESET_VERSION) < 2) {
            GTEST_SKIP() << "the kernel has no Landlock";
        }
    }
};

TEST_F(FileConfinement, OpensNoFileOutsideItsFolders) {
    EXPECT_EQ(confined(ownFolder(), [&] { return openError(secret_); }), EACCES);
    EXPECT_EQ(
        confined(ownFolder(), [&] { return openError(folder_.file("new"), O_WRONLY | O_CREAT); }),
        EACCES);
    EXPECT_EQ(confined(ownFolder(), [&] { return errorOf(unlink(secret_.c_str())); }), EACCES);
    EXPECT_EQ(confined(ownFolder(), [&] { return errorOf(truncate(secret_.c_str(), 0)); }), EACCES);
    EXPECT_EQ(fs::file_size(secret_), 6);
}

TEST_F(FileConfinement, ReadsOnlyTheFilesItNames) {
    const Reach reach{.read = {secret_}};
    EXPECT_EQ(confined(reach, [&] { return openError(secret_); }), 0);
    EXPECT_EQ(confined(reach, [&] { return openError(secret_, O_WRONLY); }), EACCES);
    EXPECT_EQ(confined(reach, [&] { return openError(own_); }), EACCES);
    EXPECT_EQ(confined(reach, [] { return openError("/usr/bin/env"); }), 0);
    EXPECT_EQ(confined(reach, [] { return openError("/usr/new", O_WRONLY | O_CREAT); }), EACCES);
}

TEST_F(FileConfinement, WritesRenamesAndRemovesInItsFolders) {
    const auto work = [&] {
        std::error_code error;
        fs::create_directory(own_ / "inner");
        std::ofstream(own_ / "inner" / "draft") << "page";
        fs::rename(own_ / "inner" / "draft", own_ / "page", error);
        return error ? error.value() : openError(own_ / "page");
    };
    EXPECT_EQ(confined(ownFolder(), work), 0);
    EXPECT_TRUE(fs::exists(own_ / "page"));
    const auto remove = [&] {
        fs::remove(own_ / "page");
        fs::remove(own_ / "inner");
        return errorOf(rmdir(own_.c_str()));
    };
    EXPECT_EQ(confined(ownFolder(), remove), 0);
    EXPECT_FALSE(fs::exists(own_));
}

TEST_F(FileConfinement, KeepsFoldersInWhichItMakesAndRenamesFolders) {
    const Reach reach{.keep = {own_}};
    const auto work = [&] {
        std::error_code error;
        fs::create_directory(own_ / ".new");
        std::ofstream(own_ / ".new" / "draft") << "page";
        fs::rename(own_ / ".new" / "draft", own_ / ".new" / "page", error);
        fs::rename(own_ / ".new", own_ / "document", error);
        return error ? error.value() : openError(own_ / "document" / "page");
    };
    EXPECT_EQ(confined(reach, work), 0);
    EXPECT_EQ(confined(reach, [&] { return errorOf(unlink((own_ / "document/page").c_str())); }),
              0);
    EXPECT_EQ(confined(reach, [&] { return errorOf(rmdir((own_ / "document").c_str())); }), 0);
    EXPECT_EQ(confined(reach, [&] { return errorOf(rmdir(own_.c_str())); }), EACCES);
}

TEST_F(FileConfinement, SeesDevicesOnlyWithCameras) {
    EXPECT_EQ(confined({}, [] { return openError("/dev/full", O_RDWR); }), EACCES);
    EXPECT_EQ(confined({.cameras = true}, [] { return openError("/dev/full", O_RDWR); }), 0);
    EXPECT_EQ(confined({}, [] { return openError("/dev/null", O_RDWR); }), 0);
}

TEST_F(FileConfinement, HoldsForTheThreadThatWaitsForSignals) {
    const auto threads = [&] {
        Interrupt interrupt;
        const auto first = [] {
            for (const auto& entry : fs::directory_iterator("/proc/self/task")) {
                if (const int number = std::stoi(entry.path().filename()); number != gettid()) {
                    return number;
                }
            }
            return 0;
        };
        const int before = first();
        confine({}, interrupt);
        return before == first() ? 1 : 0;
    };
    EXPECT_EQ(inChild(threads), 0);
}

TEST_F(Confinement, MakesNoSocket) {
    for (const int family : {AF_INET, AF_INET6, AF_UNIX, AF_NETLINK, AF_PACKET}) {
        EXPECT_EQ(confined({}, [&] { return errorOf(socket(family, SOCK_DGRAM, 0)); }), EPERM);
        EXPECT_EQ(confined({.cameras = true, .connections = true},
                           [&] { return errorOf(socket(family, SOCK_DGRAM, 0)); }),
                  EPERM);
    }
}

TEST_F(Confinement, ConnectsNoExistingSocket) {
    const int before = socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr address{AF_UNIX, {}};
    const auto connects = [&] { return errorOf(connect(before, &address, sizeof address)); };
    EXPECT_EQ(inChild(connects), ECONNREFUSED);
    EXPECT_EQ(confined({.connections = true}, connects), EPERM);
    close(before);
}

TEST_F(Confinement, AcceptsConnectionsOnItsSocket) {
    std::array<int, 2> ends{};
    ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM, 0, ends.data()), 0);
    const auto talks = [&] {
        char byte = 0;
        return send(ends[0], "x", 1, 0) == 1 && recv(ends[1], &byte, 1, 0) == 1 ? 0 : errno;
    };
    EXPECT_EQ(confined({.connections = true}, talks), 0);
    EXPECT_NE(confined({}, talks), 0);
    close(ends[0]);
    close(ends[1]);
}

TEST_F(Confinement, LeavesVirtualCamerasTheirControlSocket) {
    fs::create_directory(own_);
    setenv("UMOCKDEV_DIR", own_.c_str(), 1);
    setenv("DOCCAM_VIRTUALCAM_CONTROL", folder_.file("control").c_str(), 1);
    const auto listens = [&] {
        sockaddr_un address{AF_UNIX, {}};
        folder_.file("control.devices").copy(address.sun_path, sizeof address.sun_path - 1);
        const int steered = socket(AF_UNIX, SOCK_STREAM, 0);
        return errorOf(bind(steered, reinterpret_cast<sockaddr*>(&address), sizeof address) +
                       listen(steered, 1));
    };
    EXPECT_EQ(confined({.cameras = true}, listens), 0);
    EXPECT_EQ(confined({}, [] { return errorOf(socket(AF_INET, SOCK_STREAM, 0)); }), EPERM);
    unsetenv("UMOCKDEV_DIR");
    unsetenv("DOCCAM_VIRTUALCAM_CONTROL");
}

TEST_F(Confinement, StartsNoProgramAndNoProcess) {
    char name[] = "/usr/bin/true";
    char* arguments[] = {name, nullptr};
    EXPECT_EQ(confined({}, [&] { return errorOf(execv(name, arguments)); }), EPERM);
    EXPECT_EQ(confined({}, [] { return errorOf(fork()); }), EPERM);
    const auto spawns = [&] {
        pid_t process = 0;
        return posix_spawn(&process, name, nullptr, nullptr, arguments, environ);
    };
    EXPECT_EQ(inChild(spawns), 0);
    EXPECT_EQ(confined({}, spawns), EPERM);
}

TEST_F(Confinement, LeavesOtherProcessesAlone) {
    const pid_t parent = getpid();
    EXPECT_EQ(confined({}, [&] { return errorOf(kill(parent, 0)); }), EPERM);
    EXPECT_EQ(confined({}, [&] { return errorOf(syscall(SYS_tgkill, parent, parent, 0)); }),
              ENOSYS);
    EXPECT_EQ(confined({}, [&] { return errorOf(ptrace(PTRACE_SEIZE, parent, nullptr, nullptr)); }),
              EPERM);
    EXPECT_EQ(confined({}, [&] { return errorOf(syscall(SYS_pidfd_open, parent, 0)); }), EPERM);
}

TEST_F(Confinement, GainsNoPrivileges) {
    EXPECT_EQ(confined({}, [] { return errorOf(unshare(CLONE_NEWUSER)); }), ENOSYS);
    EXPECT_EQ(confined({}, [] { return errorOf(syscall(SYS_bpf, 0, nullptr, 0)); }), ENOSYS);
    EXPECT_EQ(confined({}, [] { return errorOf(syscall(SYS_io_uring_setup, 1, nullptr)); }),
              ENOSYS);
    EXPECT_EQ(confined({}, [] { return errorOf(syscall(SYS_keyctl, 0, 0)); }), ENOSYS);
}

TEST_F(Confinement, InjectsNothingIntoATerminal) {
    char letter = 'x';
    EXPECT_EQ(confined({.cameras = true}, [&] { return errorOf(ioctl(0, TIOCSTI, &letter)); }),
              ENOSYS);
}

TEST_F(Confinement, MakesNoWritableMemoryExecutable) {
    const auto maps = [] {
        const void* memory = mmap(nullptr, 4096, PROT_READ | PROT_WRITE | PROT_EXEC,
                                  MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        return memory == MAP_FAILED ? errno : 0;
    };
    EXPECT_EQ(inChild(maps), 0);
    EXPECT_EQ(confined({}, maps), ENOSYS);
}

TEST_F(Confinement, HoldsForExistingThreads) {
    const auto tries = [] {
        std::atomic<bool> held{false};
        std::atomic<int> error{0};
        Interrupt interrupt;
        std::thread before([&] {
            held.wait(false);
            error = errorOf(socket(AF_INET, SOCK_DGRAM, 0));
        });
        confine({}, interrupt);
        held = true;
        held.notify_all();
        before.join();
        return error.load();
    };
    EXPECT_EQ(inChild(tries), EPERM);
}

TEST_F(Confinement, StillReceivesSignalsAndEndsAtAnAbort) {
    const auto aborts = [] {
        std::abort();
        return 0;
    };
    EXPECT_EQ(confined({}, aborts), -1);
}

TEST_F(Confinement, StillReadsAndWritesPicturesOnSeveralThreads) {
    fs::create_directory(own_);
    const cv::Mat picture(480, 640, CV_8UC3, cv::Scalar(10, 200, 30));
    cv::imwrite(own_ / "in.png", picture);
    const auto works = [&] {
        const cv::Mat read = cv::imread(own_ / "in.png");
        std::atomic<int> rows{0};
        cv::parallel_for_(cv::Range(0, read.rows),
                          [&](const cv::Range& range) { rows += range.size(); });
        return rows == picture.rows && cv::imwrite(own_ / "out.jpg", read) ? 0 : 1;
    };
    EXPECT_EQ(confined(ownFolder(), works), 0);
    EXPECT_FALSE(cv::imread(own_ / "out.jpg").empty());
}

} // namespace
