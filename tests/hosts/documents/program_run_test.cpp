// Programs run to their end, or ended.
#include "documents/text/program_run.h"
#include "support/scratch_folder.h"

#include <gtest/gtest.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>

namespace doccam::test {
namespace {

using host::findProgram;
using host::ProgramEnd;
using host::ProgramResult;
using std::chrono::seconds;

constexpr seconds kLong{1000};

// Unblocks the signals that Interrupt blocks, for the other tests.
class AskedProgram : public testing::Test {
  protected:
    ~AskedProgram() override { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }

  private:
    static sigset_t ownMask() {
        sigset_t mask;
        pthread_sigmask(SIG_BLOCK, nullptr, &mask);
        return mask;
    }

    const sigset_t before_ = ownMask();
};

class ProgramRun : public AskedProgram {
  protected:
    ProgramResult shell(const std::string& script, seconds processorTime = kLong) const {
        return host::runProgram({.path = "/bin/sh",
                                 .arguments = {"-c", script},
                                 .environment = {"SETTING=a b"},
                                 .processorTime = processorTime},
                                interrupt_);
    }

  private:
    const host::Interrupt interrupt_;
};

TEST_F(ProgramRun, ReturnsTheOutput) {
    const ProgramResult result = shell("echo \"$SETTING\"; echo wrong >&2; cat");
    EXPECT_EQ(result.end, ProgramEnd::kDone);
    EXPECT_EQ(result.output, "a b\n");
}

TEST_F(ProgramRun, ReturnsTheBeginningOfLongOutput) {
    const ProgramResult result = shell("yes | head -c 1000000");
    EXPECT_EQ(result.end, ProgramEnd::kDone);
    EXPECT_EQ(result.output.size(), 65536U);
}

TEST_F(ProgramRun, ReportsAFailingProgram) {
    EXPECT_EQ(shell("exit 3").end, ProgramEnd::kFailed);
    EXPECT_EQ(shell("kill -SEGV $$").end, ProgramEnd::kFailed);
    EXPECT_EQ(host::runProgram({.path = "/none", .arguments = {}, .processorTime = kLong},
                               host::Interrupt())
                  .end,
              ProgramEnd::kFailed);
}

TEST_F(AskedProgram, GoesOnWhenThisProcessIsToFinish) {
    const host::Interrupt interrupt(std::nullopt, host::kInterrupted,
                                    host::Interrupt::CtrlC::kFinishes);
    kill(getpid(), SIGINT);
    pollfd asked{interrupt.descriptor(), POLLIN, 0};
    ASSERT_EQ(poll(&asked, 1, -1), 1);
    EXPECT_EQ(host::runProgram(
                  {.path = "/bin/sh", .arguments = {"-c", "echo done"}, .processorTime = kLong},
                  interrupt)
                  .output,
              "done\n");
}

TEST_F(ProgramRun, EndsAProgramThatUsesTooMuchProcessorTime) {
    EXPECT_EQ(shell("while :; do :; done", seconds(1)).end, ProgramEnd::kOutOfTime);
}

// The pipe's end is reached when nobody is left who could write to it.
TEST_F(ProgramRun, DoesNotOutliveThisProcess) {
    std::array<int, 2> ends{};
    ASSERT_EQ(pipe(ends.data()), 0);
    const pid_t process = fork();
    if (process == 0) {
        shell("echo >&" + std::to_string(ends[1]) + "; exec sleep 1000");
        _exit(0);
    }
    close(ends[1]);
    char byte = 0;
    EXPECT_EQ(read(ends[0], &byte, 1), 1); // the program runs
    kill(process, SIGKILL);
    EXPECT_EQ(read(ends[0], &byte, 1), 0);
    close(ends[0]);
    waitpid(process, nullptr, 0);
}

TEST(FindProgram, LooksInAbsoluteFoldersOnly) {
    const ScratchFolder folder;
    const std::string before = std::getenv("PATH");
    const std::filesystem::path current = std::filesystem::current_path();
    std::filesystem::current_path(folder.path());
    std::ofstream(folder.file("tool")) << "#!/bin/sh\n";
    std::filesystem::create_directory(folder.file("folder"));
    std::filesystem::create_directory(folder.file("folder/tool"));
    const auto foundIn = [](const std::string& path) {
        setenv("PATH", path.c_str(), 1);
        return findProgram("tool");
    };
    EXPECT_EQ(foundIn(folder.path()), std::nullopt) << "not executable";
    std::filesystem::permissions(folder.file("tool"), std::filesystem::perms::owner_all);
    EXPECT_EQ(foundIn("."), std::nullopt);
    EXPECT_EQ(foundIn(""), std::nullopt);
    EXPECT_EQ(foundIn(":" + folder.file("folder") + ":none:" + folder.path().string()),
              folder.file("tool"));
    setenv("PATH", before.c_str(), 1);
    std::filesystem::current_path(current);
}

} // namespace
} // namespace doccam::test
