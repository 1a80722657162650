// Scans that end before they are saved: no page that was named as taken is lost.
#include "kept_pages.h"

#include <signal.h>

#include <cstdlib>
#include <filesystem>
#include <thread>

namespace {

using namespace doccam::test;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

namespace fs = std::filesystem;

using KeptPages = KeptPagesTest;

// The spool's own folder, not the state folder that the virtual camera's launcher may use.
const std::string kSpool = "/doccam/spool";

TEST_F(KeptPages, SurviveAKillAtAnyChangeOfTheSpool) {
    // Creating a document takes about ten changes, each page about ten more.
    for (int at = 3; at <= 41; at += 2) {
        RunningProgram program = failing(kSpool, at, "kill", {"scan", "--pages", "3", "a.pdf"});
        program.type("\n\n\n");
        const std::size_t named = untilTheEnd(program).named;
        program.finish();
        const std::size_t pages = resumed("b.pdf");
        EXPECT_GE(pages, named) << at;
        EXPECT_LE(pages, named + 1) << at;
        clearAll();
    }
}

TEST_F(KeptPages, SurviveAFullDisk) {
    for (const int at : {13, 19, 24}) {
        RunningProgram program = failing(kSpool, at, "full", {"scan", "--pages", "3", "a.pdf"});
        program.type("\n\n\n");
        const Progress progress = untilTheEnd(program);
        EXPECT_EQ(program.finish(), kFileFailed);
        EXPECT_THAT(progress.last, HasSubstr("could not be kept"));
        EXPECT_LT(progress.named, 3U);
        EXPECT_EQ(resumed("b.pdf"), progress.named) << at;
        clearAll();
    }
}

TEST_F(KeptPages, SurviveAnUnpluggedCameraAndAreGoneOnWith) {
    RunningProgram program = start(camera(), {"scan", "a.pdf"});
    program.type("\n\n");
    ASSERT_TRUE(program.says("page 2 taken"));
    unplug();
    EXPECT_EQ(program.finish(), kCameraFailed);
    EXPECT_THAT(program.lastLine(), AllOf(HasSubstr("stopped"), HasSubstr("scan --resume")));
    EXPECT_THAT(files(), IsEmpty());
    const Outcome outcome = runWith(camera(), "scan --resume --json", "\nq\n");
    ASSERT_EQ(outcome.status, kDone) << outcome.err;
    EXPECT_THAT(outcome.err, HasSubstr("Enter takes page 3"));
    EXPECT_THAT(outcome.json()["pages"], SizeIs(3));
    EXPECT_THAT(files(), ElementsAre("a.pdf"));
    EXPECT_NE(spooled()[0]["saved"], nullptr);
}

TEST_F(KeptPages, SurviveTheEndOfTheTerminalOrTheSession) {
    for (const int number : {SIGHUP, SIGTERM}) {
        RunningProgram program = start(camera(), {"scan", "a.pdf"});
        program.type("\n");
        ASSERT_TRUE(program.says("page 1 taken"));
        program.signalGroup(number);
        EXPECT_EQ(program.finish(), kInterrupted);
        EXPECT_THAT(program.lastLine(), HasSubstr("scan --resume"));
        EXPECT_THAT(files(), IsEmpty());
        EXPECT_EQ(resumed("b.pdf"), 1U);
        clearAll();
        fs::remove(file("b.pdf"));
    }
}

TEST_F(KeptPages, AreSavedByTheFirstCtrlC) {
    RunningProgram program = start(camera(), {"scan", "a.pdf"});
    program.type("\n");
    ASSERT_TRUE(program.says("page 1 taken"));
    program.signalGroup(SIGINT);
    EXPECT_EQ(program.finish(), kInterrupted);
    EXPECT_THAT(printed(), HasSubstr("1 page"));
    EXPECT_THAT(files(), ElementsAre("a.pdf"));
    EXPECT_NE(spooled()[0]["saved"], nullptr);
}

TEST_F(KeptPages, StayInTheSpoolAtTheSecondCtrlC) {
    // The page is never made, so the document is not saved in time.
    RunningProgram program = failing("/pages/frame-", 1, "hang", {"scan", "a.pdf"});
    program.type("\n");
    ASSERT_TRUE(program.says("page 1 taken"));
    program.signal(SIGINT);
    // One that comes at once may be the same by another route.
    std::this_thread::sleep_for(std::chrono::milliseconds(600));
    program.signal(SIGINT);
    EXPECT_EQ(program.finish(), kInterrupted);
    EXPECT_THAT(program.lastLine(), HasSubstr("scan --resume"));
    EXPECT_THAT(files(), IsEmpty());
    EXPECT_EQ(resumed("b.pdf"), 1U);
}

TEST_F(KeptPages, StayInTheSpoolWhenThePdfCannotBeWritten) {
    RunningProgram program = failing("/pages/frame-", 1, "full", {"scan", "a.pdf"});
    program.type("\nq\n");
    EXPECT_EQ(program.finish(), kFileFailed);
    EXPECT_THAT(program.lastLine(), HasSubstr("scan --resume"));
    EXPECT_EQ(resumed("b.pdf"), 1U);
}

TEST_F(KeptPages, AreGoneOnWithInTheSameWay) {
    for (const std::string options :
         {"--look photo --rotate 90 --quality 20", "--clean-background --colour grey"}) {
        leaveOnePage(options);
        const auto before = plan();
        const Outcome outcome = runWith(camera(), "scan --resume", "\nq\n");
        ASSERT_EQ(outcome.status, kDone) << outcome.err;
        const auto pages = show();
        ASSERT_THAT(pages, SizeIs(2)) << options;
        EXPECT_EQ(wayOf(pages[1]), wayOf(pages[0])) << options;
        EXPECT_EQ(plan(), before) << options;
        EXPECT_LT(difference(pages[0]["frame"], pages[1]["frame"]), 3) << options;
        clearAll();
    }
}

TEST_F(KeptPages, AreGoneOnWithInAnotherWayByRequest) {
    leaveOnePage("--crop=rectangle --colour grey --clean-edges");
    const Outcome outcome = runWith(camera(), "scan --resume --look photo", "\nq\n");
    ASSERT_EQ(outcome.status, kDone) << outcome.err;
    const auto pages = show();
    EXPECT_EQ(pages[0]["finished"], true);
    EXPECT_EQ(pages[1]["finished"], false);
    EXPECT_EQ(pages[1]["look"], "photo");
    EXPECT_EQ(pages[1]["colour"], "grey");
}

TEST_F(KeptPages, AreSavedWithTheirLooks) {
    leaveOnePage("--look photo");
    run("spool resume --as photo.pdf");
    leaveOnePage("--look paper");
    run("spool resume --as paper.pdf");
    EXPECT_NE(fs::file_size(file("photo.pdf")), fs::file_size(file("paper.pdf")));
}

TEST_F(KeptPages, AreListedWithTheirDamage) {
    for (int i = 0; i < 2; ++i) {
        RunningProgram program = start(camera(), {"scan", "a.pdf"});
        program.type("\n\n");
        ASSERT_TRUE(program.says("page 2 taken"));
        program.signal(SIGTERM);
        program.finish();
    }
    const auto documents = spooled();
    ASSERT_THAT(documents, SizeIs(2));
    fs::remove(documents[0]["folder"].get<std::string>() + "/pages.json");
    fs::remove(documents[1]["folder"].get<std::string>() + "/frame-000001.jpg");
    EXPECT_EQ(spooled()[0]["pages"], nullptr);
    EXPECT_THAT(spooled()[1]["damaged"], ElementsAre("frame-000001.jpg"));
    EXPECT_EQ(run("spool show --json").json()[0]["sound"], false);
    const Outcome outcome = run("spool resume --json");
    EXPECT_EQ(outcome.status, kFileFailed);
    EXPECT_THAT(outcome.json()["pages"], SizeIs(1));
    EXPECT_THAT(outcome.err, HasSubstr("frame-000001.jpg"));
}

TEST_F(KeptPages, AreNoneWithoutASpool) {
    RunningProgram program = start(camera(), {"scan", "--no-spool", "a.pdf"});
    program.type("\n");
    ASSERT_TRUE(program.says("page 1 taken"));
    program.signal(SIGTERM);
    EXPECT_EQ(program.finish(), kInterrupted);
    EXPECT_THAT(files(), IsEmpty());
    EXPECT_FALSE(fs::exists(state() + "/doccam/spool"));
    const Outcome outcome = runWith(camera(), "scan --no-spool a.pdf", "\nq\n");
    EXPECT_EQ(outcome.status, kDone) << outcome.err;
    EXPECT_FALSE(fs::exists(state() + "/doccam/spool"));
}

TEST_F(KeptPages, LimitTheSpoolAndSaySo) {
    ASSERT_EQ(setenv("DOCCAM_SPOOL_MEGABYTES", "1", 1), 0);
    const Outcome outcome = runWith(camera(), "scan a.pdf", std::string(60, '\n') + "q\n");
    unsetenv("DOCCAM_SPOOL_MEGABYTES");
    EXPECT_EQ(outcome.status, kFileFailed);
    EXPECT_THAT(outcome.err, AllOf(HasSubstr("1 MiB"), HasSubstr("scan --resume"),
                                   HasSubstr("page 1 taken"), Not(HasSubstr("page 60 taken"))));
}

} // namespace
