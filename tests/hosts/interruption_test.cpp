#include "host_program.h"
#include "running_program.h"

#include <csignal>
#include <filesystem>
#include <thread>

namespace {

using namespace doccam::test;
using testing::Each;
using testing::IsEmpty;
using testing::StartsWith;

using Interruption = HostProgramTest;

TEST_F(Interruption, FromTheTerminalEndsTheScanAndLeavesNoFile) {
    RunningProgram program = start(camera(), {"scan", "a.pdf"});
    ASSERT_TRUE(program.says("Enter takes page"));
    program.signalGroup(SIGINT);
    EXPECT_EQ(program.finish(), kInterrupted);
    EXPECT_THAT(files(), IsEmpty());
}

TEST_F(Interruption, ByAnotherProcessReachesTheProgramThroughTheLauncher) {
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
        RunningProgram program = start(camera(), {"scan", "--auto", "--pages", "9", "a.pdf"});
        ASSERT_TRUE(program.says("put down page"));
        program.signal(number);
        EXPECT_EQ(program.finish(), kInterrupted);
        EXPECT_THAT(files(), IsEmpty());
    }
}

TEST_F(Interruption, EndsTheSearchForACode) {
    RunningProgram program = start(camera(R"("scene": {"centreX": 9, "noise": 0})"),
                                   {"read", "--wait", "3600", "--verbose"});
    ASSERT_TRUE(program.says("has no codes"));
    program.signalGroup(SIGINT);
    EXPECT_EQ(program.finish(), kInterrupted);
}

TEST_F(Interruption, BetweenStillsKeepsFinishedOnes) {
    constexpr int kStills = 200;
    std::vector<std::string> words{"capture"};
    for (int still = 0; still < kStills; ++still) {
        words.push_back("still" + std::to_string(still) + ".jpg");
    }
    RunningProgram program = start(camera(), words);
    while (!std::filesystem::exists(file("still0.jpg"))) {
        std::this_thread::yield();
    }
    program.signalGroup(SIGINT);
    EXPECT_EQ(program.finish(), kInterrupted);
    EXPECT_LT(files().size(), kStills);
    EXPECT_THAT(files(), Each(StartsWith("still")));
}

} // namespace
