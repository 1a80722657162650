// Scans that are gone on with, and what was saved of them before.
#include "kept_pages.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cstdlib>

namespace {

using namespace doccam::test;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;
using testing::StartsWith;

class GoneOnWith : public KeptPagesTest {
  protected:
    // What pdfinfo prints of the document.
    std::string info(const std::string& name) const {
        const std::string printed = state() + "/printed";
        const std::string command = "pdfinfo -isodates " + file(name) + " >" + printed;
        std::system(command.c_str()); // NOLINT(cert-env33-c): the shell is wanted
        std::ifstream stream(printed);
        return {std::istreambuf_iterator<char>(stream), {}};
    }
};

TEST_F(GoneOnWith, IsWhatStandardOutputDidNotTake) {
    RunningProgram program =
        start(camera(), {"scan", "-"}, {"/bin/sh", "-c", "exec \"$0\" \"$@\" >/dev/full"});
    program.type("\nq\n");
    EXPECT_EQ(program.finish(), kFileFailed);
    EXPECT_THAT(program.lastLine(), AllOf(HasSubstr("Standard output could not be written"),
                                          HasSubstr("The page taken is kept")));
    EXPECT_EQ(spooled()[0]["saved"], nullptr);
    const Outcome again = runWith(camera(), "scan --resume -", "q\n");
    EXPECT_EQ(again.status, kDone) << again.err;
    EXPECT_THAT(again.out, StartsWith("%PDF"));
    EXPECT_NE(spooled()[0]["saved"], nullptr);
}

TEST_F(GoneOnWith, IsWithTheNextSheetHandsFree) {
    leaveOnePage("--auto", "");
    const Outcome outcome =
        runWith(camera(R"("scene": {"sheetFrames": 30})"), "scan --resume --auto --pages 2");
    ASSERT_EQ(outcome.status, kDone) << outcome.err;
    const auto pages = show();
    ASSERT_THAT(pages, SizeIs(2));
    EXPECT_GT(difference(pages[0]["frame"], pages[1]["frame"]), 1);
}

TEST_F(GoneOnWith, IsWhatWasLeftWhenTheTerminalHasGone) {
    const int keyboard = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
    ASSERT_TRUE(grantpt(keyboard) == 0 && unlockpt(keyboard) == 0);
    std::array<char, 64> name{};
    ASSERT_EQ(ptsname_r(keyboard, name.data(), name.size()), 0);
    const std::string within = std::string("exec \"$0\" \"$@\" <") + name.data();
    RunningProgram program = start(camera(), {"scan", "a.pdf"}, {"/bin/sh", "-c", within});
    ASSERT_EQ(write(keyboard, "\n", 1), 1);
    ASSERT_TRUE(program.says("page 1 taken"));
    close(keyboard);
    EXPECT_EQ(program.finish(), kInterrupted);
    EXPECT_THAT(program.lastLine(), HasSubstr("scan --resume"));
    EXPECT_THAT(files(), IsEmpty());
    EXPECT_EQ(resumed("b.pdf"), 1U);
}

TEST_F(GoneOnWith, IsWithItsTitleUnlessAnotherIsGiven) {
    leaveOnePage("--title First --author Ada --language de-CH --date 2026-02-03");
    ASSERT_EQ(run("spool resume --title Second --as b.pdf").status, kDone);
    EXPECT_THAT(info("b.pdf"),
                AllOf(HasSubstr("Second"), HasSubstr("Ada"), HasSubstr("2026-02-03")));
    EXPECT_THAT(run("spool list").out, AllOf(HasSubstr("/b.pdf"), Not(HasSubstr("/a.pdf"))));
    leaveOnePage("--title Third");
    ASSERT_EQ(runWith(camera(), "scan --resume --author Bob", "q\n").status, kDone);
    EXPECT_THAT(info("a.pdf"), AllOf(HasSubstr("Third"), HasSubstr("Bob")));
    EXPECT_EQ(run("spool list --title Fourth").status, kUsage);
}

TEST_F(GoneOnWith, IsWithoutWhatIsDamaged) {
    RunningProgram program = start(camera(), {"scan", "a.pdf"});
    program.type("\n\n\n");
    ASSERT_TRUE(program.says("page 3 taken"));
    program.signal(SIGTERM);
    program.finish();
    const auto before = spooled();
    const std::string folder = before[0]["folder"];
    const std::string cut = folder + "/frame-000001.jpg";
    std::filesystem::resize_file(cut, std::filesystem::file_size(cut) / 2);
    std::ifstream stream(folder + "/pages.json");
    auto manifest = nlohmann::json::parse(stream);
    auto& corners = manifest["pages"][1]["recipe"]["corners"];
    std::swap(corners[0], corners[1]);
    std::ofstream(folder + "/pages.json") << manifest;
    EXPECT_THAT(spooled()[0]["damaged"], ElementsAre("frame-000001.jpg", "frame-000002.jpg"));
    for (const char* force : {"", "--force "}) {
        const Outcome outcome = run(std::string("spool resume --json ") + force);
        EXPECT_EQ(outcome.status, kFileFailed);
        EXPECT_THAT(outcome.json()["pages"], SizeIs(1));
        EXPECT_THAT(outcome.err, AllOf(HasSubstr("frame-000001.jpg"), HasSubstr("frame-000002.jpg"),
                                       HasSubstr("spool resume --force 2")));
    }
}

TEST_F(GoneOnWith, IsNothingWhoseListIsDamaged) {
    leaveOnePage("");
    const auto documents = spooled();
    std::ofstream(documents[0]["folder"].get<std::string>() + "/pages.json") << "{";
    const Outcome scan = runWith(camera(), "scan b.pdf", "\nq\n");
    EXPECT_THAT(scan.err, AllOf(HasSubstr("1 document not saved"), Not(HasSubstr("--resume"))));
    EXPECT_EQ(run("scan --resume").status, kNothingFound);
    const Outcome show = run("spool show " + documents[0]["document"].get<std::string>());
    EXPECT_THAT(show.err, AllOf(isOneSentence(), HasSubstr("has a damaged list")));
}

TEST_F(GoneOnWith, IsWhatTheCommandLineAsksForWhateverTheFileSays) {
    leaveOnePage("");
    std::ofstream(file("no-spool.toml")) << "[scan]\nno-spool = true\n";
    std::ofstream(file("crop.toml")) << "[scan]\ncrop = \"rectangle\"\n";
    EXPECT_EQ(runWith(camera(), "--config no-spool.toml scan --resume", "q\n").status, kDone);
    for (const std::string option : {"--look photo", "--whole-frame"}) {
        const Outcome outcome =
            runWith(camera(), "--config crop.toml scan --force b.pdf " + option, "\nq\n");
        EXPECT_EQ(outcome.status, kDone) << outcome.err;
    }
}

TEST_F(GoneOnWith, AsksForNoPageWhenAllAreThere) {
    leaveOnePage("");
    const Outcome outcome = runWith(camera(), "scan --resume --pages 1");
    EXPECT_EQ(outcome.status, kDone);
    EXPECT_THAT(outcome.err, Not(HasSubstr("Enter takes page")));
}

} // namespace
