#include "host_program.h"

#include <csignal>
#include <filesystem>
#include <fstream>
#include <regex>
#include <thread>

namespace {

using namespace doccam::test;
using testing::ElementsAre;
using testing::IsEmpty;

// Stills whose names differ by a number, the date or the time.
using Series = HostProgramTest;

TEST_F(Series, TakesTheNextFreeNumbers) {
    std::ofstream(file("page-002.jpg")) << "mine";
    const Outcome outcome = runWith(
        camera(), "capture page-%03d.jpg {date}.png page-%03d.jpg page-%03d.jpg --delay 0.01");
    ASSERT_EQ(outcome.status, kDone) << outcome.err;
    const auto names = files();
    ASSERT_EQ(names.size(), 5U);
    EXPECT_TRUE(std::regex_match(names[0], std::regex("20[0-9]{2}-[0-9]{2}-[0-9]{2}.png")));
    EXPECT_THAT(std::vector(names.begin() + 1, names.end()),
                ElementsAre("page-001.jpg", "page-002.jpg", "page-003.jpg", "page-004.jpg"));
    EXPECT_EQ(std::filesystem::file_size(file("page-002.jpg")), 4U);
}

TEST_F(Series, BeginsAnewWhenForced) {
    std::ofstream(file("1.jpg")) << "mine";
    const Outcome outcome = runWith(camera(), "capture %d.jpg %d.jpg --force --json");
    ASSERT_EQ(outcome.status, kDone) << outcome.err;
    EXPECT_THAT(files(), ElementsAre("1.jpg", "2.jpg"));
    EXPECT_GT(std::filesystem::file_size(file("1.jpg")), 1000U);
}

TEST_F(Series, EndsAtOnceAtCtrlCAndKeepsWhatWasTaken) {
    RunningProgram program =
        start(camera(), {"capture", "%d.jpg", "--count", "9", "--delay", "3600", "--json"});
    while (!std::filesystem::exists(file("1.jpg"))) {
        std::this_thread::yield();
    }
    program.signal(SIGINT);
    EXPECT_EQ(program.finish(), kInterrupted);
    EXPECT_THAT(files(), ElementsAre("1.jpg"));
    EXPECT_EQ(nlohmann::json::parse(printed()).size(), 1U);
}

TEST_F(Series, IsRefusedWithoutUsableNames) {
    for (const std::string arguments :
         {"a%s.jpg", "a%d-%d.jpg", "a%n.jpg", "a%.jpg", "a.jpg --count 2", "{time}.jpg --count 2",
          "a.jpg --delay 1", "a%d.jpg --count 0", "a%d.jpg --count 2 --delay -1"}) {
        const Outcome outcome = run("capture " + arguments);
        EXPECT_EQ(outcome.status, kUsage) << arguments;
        EXPECT_THAT(outcome.err, isOneSentence()) << arguments;
    }
    EXPECT_THAT(files(), IsEmpty());
}

} // namespace
