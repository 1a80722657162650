// Signals at any moment of a command that uses a camera.
#include "bombs.h"
#include "hosts/running_program.h"
#include "measured_run.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <thread>

namespace {

using namespace doccam::test;
using testing::Each;
using testing::Not;
using testing::StartsWith;

namespace fs = std::filesystem;

bool isLauncher(pid_t process) {
    std::error_code gone;
    return fs::read_symlink("/proc/" + std::to_string(process) + "/exe", gone).filename() ==
           "doccam-virtualcam";
}

bool hasChild(pid_t process) {
    const std::string number = std::to_string(process);
    std::ifstream children("/proc/" + number + "/task/" + number + "/children");
    pid_t child = 0;
    return static_cast<bool>(children >> child);
}

class CameraSignals : public testing::Test {
  protected:
    RunningProgram start(const std::vector<std::string>& words) const {
        std::vector<std::string> command{"/usr/bin/env", "TMPDIR=" + temporary_.path().string(),
                                         DOCCAM_PROGRAM};
        command.insert(command.end(), words.begin(), words.end());
        return {command, work_.file("."), "/dev/null"};
    }

    bool hasWork() const {
        return std::any_of(fs::begin(fs::directory_iterator(work_.file("."))),
                           fs::directory_iterator(), [](const fs::directory_entry& entry) {
                               return entry.path().filename().string().starts_with(".doccam-");
                           });
    }

    void expectAnEndThatLeavesNothing(RunningProgram& program) const {
        EXPECT_EQ(program.finish(), kInterrupted);
        EXPECT_THAT(work_.files(), Each(Not(StartsWith("."))));
        EXPECT_TRUE(fs::is_empty(temporary_.path()));
    }

    MeasuredRun work_;
    ScratchFolder temporary_;
};

TEST_F(CameraSignals, AreHandledBeforeTheCamerasExist) {
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
        RunningProgram listing = start({"--virtual", "list"});
        while (!isLauncher(listing.process())) {
            std::this_thread::yield();
        }
        listing.signal(number);
        expectAnEndThatLeavesNothing(listing);
    }
}

TEST_F(CameraSignals, AreHandledBeforeTheProgramHasStarted) {
    work_.write("desk.png", claimingPng({.width = 64, .height = 64}));
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
        // It would run for long.
        RunningProgram reading =
            start({"--virtual=desk.png", "read", "--size", "640x480", "--wait", "3600"});
        while (!isLauncher(reading.process()) || !hasChild(reading.process())) {
            std::this_thread::yield();
        }
        reading.signal(number);
        expectAnEndThatLeavesNothing(reading);
    }
}

TEST_F(CameraSignals, EndTheTakingOfStills) {
    std::vector<std::string> words{"--virtual", "capture", "--size", "1280x960"};
    for (int still = 0; still < 200; ++still) {
        words.push_back("still" + std::to_string(still) + ".png");
    }
    for (const int number : {SIGINT, SIGTERM}) {
        RunningProgram capture = start(words);
        while (!hasWork()) {
            std::this_thread::yield();
        }
        capture.signal(number);
        expectAnEndThatLeavesNothing(capture);
        words.emplace(words.begin() + 2, "--force");
    }
}

TEST_F(CameraSignals, EndTheSearchForCodesInTheLivePicture) {
    work_.write("desk.png", claimingPng({.width = 64, .height = 64}));
    for (const int number : {SIGINT, SIGTERM}) {
        RunningProgram reading = start(
            {"--virtual=desk.png", "read", "--size", "640x480", "--wait", "3600", "--verbose"});
        ASSERT_TRUE(reading.says("has no codes"));
        reading.signal(number);
        expectAnEndThatLeavesNothing(reading);
    }
}

} // namespace
