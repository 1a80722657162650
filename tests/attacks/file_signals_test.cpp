// A signal, or a kill, while the program works on files.
#include "bombs.h"
#include "hosts/running_program.h"
#include "measured_run.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <opencv2/imgcodecs.hpp>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <thread>

namespace {

using namespace doccam::test;
using testing::Contains;
using testing::ElementsAre;
using testing::StartsWith;

namespace fs = std::filesystem;

// A field of a process's /proc status; 0 if the process has gone.
unsigned long statusOf(pid_t process, const std::string& field, int base) {
    std::ifstream status("/proc/" + std::to_string(process) + "/status");
    for (std::string word, value; status >> word;) {
        if (word == field + ":") {
            status >> value;
            return std::stoul(value, nullptr, base);
        }
    }
    return 0;
}

// Whether the program's first thread holds SIGTERM back: a watcher waits for it from then on.
bool holdsSignalsBack(pid_t process) {
    return (statusOf(process, "SigBlk", 16) >> (SIGTERM - 1) & 1) != 0;
}

// Whether the program, or a child of it, holds the pixels of a large picture.
bool hasPixels(pid_t process) {
    constexpr unsigned long kKilobytes = 150000;
    const std::string number = std::to_string(process);
    std::ifstream children("/proc/" + number + "/task/" + number + "/children");
    pid_t child = 0;
    return statusOf(process, "VmHWM", 10) > kKilobytes ||
           (children >> child && statusOf(child, "VmHWM", 10) > kKilobytes);
}

class FileSignals : public testing::Test {
  protected:
    RunningProgram start(const std::vector<std::string>& words,
                         const std::string& out = "/dev/null") const {
        std::vector<std::string> command{"/usr/bin/env", "DOCCAM_READ_SECONDS=1000",
                                         DOCCAM_PROGRAM};
        command.insert(command.end(), words.begin(), words.end());
        return {command, program_.file("."), out};
    }

    void writeLargePicture() const {
        program_.write("a.png", claimingPng({.width = 10000, .height = 10000, .colour = 2}));
    }

    // Waits until the program has a work folder, which it creates before it decodes pixels.
    void awaitWork() const {
        while (program_.files().front().find(".doccam-") != 0) {
            std::this_thread::yield();
        }
    }

    MeasuredRun program_;
};

TEST_F(FileSignals, EndTheCleaningOfAPictureAndLeaveNothing) {
    writeLargePicture();
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
        RunningProgram cleaning = start({"clean", "a.png"});
        awaitWork();
        cleaning.signalGroup(number);
        EXPECT_EQ(cleaning.finish(), kInterrupted);
        EXPECT_THAT(program_.files(), ElementsAre("a.png"));
    }
}

TEST_F(FileSignals, EndTheMakingOfAPdfAndLeaveNothing) {
    writeLargePicture();
    RunningProgram making = start({"pdf", "all.pdf", "a.png"});
    awaitWork();
    making.signal(SIGTERM);
    EXPECT_EQ(making.finish(), kInterrupted);
    EXPECT_THAT(program_.files(), ElementsAre("a.png"));
}

TEST_F(FileSignals, EndTheSearchForCodesInOnePicture) {
    writeLargePicture();
    RunningProgram reading = start({"read", "a.png"});
    while (!hasPixels(reading.process())) {
        std::this_thread::yield();
    }
    reading.signal(SIGTERM);
    EXPECT_EQ(reading.finish(), kInterrupted);
}

// Like output to a pager that waits for the user.
TEST_F(FileSignals, EndAProgramWhoseOutputNobodyReads) {
    const std::string pipe = program_.file("pipe");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    const int end = open(pipe.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC);
    const std::array<char, 4096> fill{};
    while (write(end, fill.data(), fill.size()) > 0) {
    }
    for (const std::vector<std::string>& words :
         {std::vector<std::string>{"list", "--json"}, {"--help"}, {"--version"}}) {
        RunningProgram printing = start(words, pipe);
        while (!holdsSignalsBack(printing.process())) {
            std::this_thread::yield();
        }
        printing.signal(SIGTERM);
        EXPECT_EQ(printing.finish(), kInterrupted) << words.front();
    }
    close(end);
}

TEST_F(FileSignals, WorkFolderOfAKilledProgramIsRemovedByTheNext) {
    writeLargePicture();
    program_.write("b.png", claimingPng({.width = 8, .height = 8}));
    RunningProgram cleaning = start({"clean", "a.png"});
    awaitWork();
    while (!fs::exists(program_.file(program_.files().front()) + "/owner")) {
        std::this_thread::yield();
    }
    cleaning.signalGroup(SIGKILL);
    cleaning.finish();
    ASSERT_THAT(program_.files(), Contains(StartsWith(".doccam-")));
    ASSERT_EQ(program_.run({"clean", "b.png"}).status, kDone);
    EXPECT_THAT(program_.files(), ElementsAre("a.png", "b-clean.png", "b.png"));
}

} // namespace
