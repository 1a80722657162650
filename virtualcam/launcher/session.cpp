#include "launcher/session.h"

#include "base/files/harmless_text.h"
#include "bed/udev_tree.h"
#include "launcher/plug_control.h"
#include "picture/jpeg.h"
#include "scenario.h"

#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <stdexcept>

namespace doccam::virtualcam {

namespace {

namespace fs = std::filesystem;

// The preload library's path: beside the launcher in the build folder, or in an installed tree.
std::string findPreload() {
    const fs::path folder = fs::read_symlink("/proc/self/exe").parent_path();
    for (const fs::path& candidate :
         {folder / "libdoccam-virtualcam.so", folder / DOCCAM_VIRTUALCAM_FROM_LAUNCHER}) {
        if (fs::exists(candidate)) {
            return fs::canonical(candidate).string();
        }
    }
    throw std::runtime_error("libdoccam-virtualcam.so is not beside the launcher");
}

std::vector<CameraDescription> camerasOf(const Options& options) {
    std::vector<CameraDescription> cameras =
        options.scenario.empty() ? defaultCameras() : readScenario(options.scenario);
    if (!options.photo.empty()) {
        loadPhoto(options.photo);
    }
    return cameras;
}

// Ends the launcher at a signal that is not ignored, also where its starter has blocked signals.
class EndsAtSignals {
  public:
    EndsAtSignals() {
        for (std::size_t i = 0; i < kSignals.size(); ++i) {
            sigaction(kSignals[i], nullptr, &actions_[i]);
            if (actions_[i].sa_handler != SIG_IGN) {
                std::signal(kSignals[i], [](int) { _exit(128 + SIGINT); });
            }
        }
        sigset_t signals;
        sigemptyset(&signals);
        for (const int signal : kSignals) {
            sigaddset(&signals, signal);
        }
        pthread_sigmask(SIG_UNBLOCK, &signals, &mask_);
    }

    ~EndsAtSignals() {
        pthread_sigmask(SIG_SETMASK, &mask_, nullptr);
        for (std::size_t i = 0; i < kSignals.size(); ++i) {
            sigaction(kSignals[i], &actions_[i], nullptr);
        }
    }

    EndsAtSignals(const EndsAtSignals&) = delete;
    EndsAtSignals& operator=(const EndsAtSignals&) = delete;

  private:
    static constexpr std::array kSignals{SIGINT, SIGTERM, SIGHUP};
    std::array<struct sigaction, kSignals.size()> actions_{};
    sigset_t mask_{};
};

// Decoding a photo may take seconds.
std::vector<CameraDescription> camerasUnlessInterrupted(const Options& options) {
    const EndsAtSignals guard;
    return camerasOf(options);
}

// umockdev aborts if it cannot create its folder.
void requireTemporaryFolder() {
    std::error_code error;
    const fs::path folder = fs::temp_directory_path(error);
    if (error || access(folder.c_str(), W_OK | X_OK) != 0) {
        throw std::runtime_error("no temporary files can be made where TMPDIR says");
    }
}

void exportAbsolute(const char* name, const std::string& path) {
    if (!path.empty()) {
        setenv(name, fs::absolute(path).c_str(), 1);
    }
}

void prepareEnvironment(const Options& options) {
    // If the preload library was built with a sanitizer, the runtime must come first.
    std::string preload = DOCCAM_VIRTUALCAM_RUNTIME;
    const char* others = std::getenv("LD_PRELOAD");
    for (const std::string& library : {findPreload(), std::string("libumockdev-preload.so.0"),
                                       std::string(others == nullptr ? "" : others)}) {
        preload += ' ';
        preload += library;
    }
    setenv("LD_PRELOAD", preload.c_str(), 1);
    exportAbsolute("DOCCAM_VIRTUALCAM", options.scenario);
    exportAbsolute("DOCCAM_VIRTUALCAM_PHOTO", options.photo);
    if (options.intervalMs) {
        setenv("DOCCAM_VIRTUALCAM_INTERVAL", std::to_string(*options.intervalMs).c_str(), 1);
    }
    if (options.sheetFrames) {
        setenv("DOCCAM_VIRTUALCAM_SHEET_FRAMES", std::to_string(*options.sheetFrames).c_str(), 1);
    }
}

[[noreturn]] void become(const Options& options) {
    std::vector<char*> arguments;
    for (const std::string& argument : options.command) {
        arguments.push_back(const_cast<char*>(argument.c_str()));
    }
    arguments.push_back(nullptr);
    execvp(arguments[0], arguments.data());
    const char* const why = std::strerror(errno);
    std::fprintf(stderr, "doccam-virtualcam: %s: %s\n", harmlessText(arguments[0]).c_str(), why);
    _exit(127);
}

// The terminal's interrupt reaches the program by itself, unless it came before the program
// started. Signals sent to the launcher are passed on to the program, and the launcher stays to
// clean up.
void passOn(const siginfo_t& signal, const sigset_t& early, pid_t child) {
    if (signal.si_signo != SIGCHLD &&
        (signal.si_code <= 0 || sigismember(&early, signal.si_signo) == 1)) {
        kill(child, signal.si_signo);
    }
}

int await(pid_t child, const sigset_t& signals, const sigset_t& early) {
    int status = 0;
    while (waitpid(child, &status, WNOHANG) == 0) {
        siginfo_t signal{};
        if (sigwaitinfo(&signals, &signal) > 0) {
            passOn(signal, early, child);
        }
    }
    return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
}

sigset_t awaitedSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    for (const int signal : {SIGCHLD, SIGINT, SIGQUIT, SIGTERM, SIGHUP}) {
        sigaddset(&signals, signal);
    }
    return signals;
}

} // namespace

int runSession(const Options& options) {
    requireTemporaryFolder();
    const std::vector<CameraDescription> cameras = camerasUnlessInterrupted(options);
    // Blocked before the tree starts its thread, which must not receive them.
    const sigset_t signals = awaitedSignals();
    sigset_t before;
    pthread_sigmask(SIG_BLOCK, &signals, &before);
    UdevTree tree;
    int place = 0;
    for (const CameraDescription& camera : cameras) {
        tree.add(camera, place, {2 * place, 2 * place + 1});
        ++place;
    }
    sigset_t early;
    sigpending(&early);
    const pid_t child = fork();
    if (child < 0) {
        throw std::runtime_error("cannot start a process");
    }
    if (child == 0) {
        prctl(PR_SET_PDEATHSIG, SIGTERM); // the cameras go with the launcher
        pthread_sigmask(SIG_SETMASK, &before, nullptr);
        prepareEnvironment(options);
        become(options);
    }
    try {
        const PlugControl control(tree, cameras);
        return await(child, signals, early);
    } catch (...) {
        kill(child, SIGTERM);
        throw;
    }
}

} // namespace doccam::virtualcam
