#include "host_program.h"

#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

#include <cstdlib>
#include <filesystem>
#include <set>

namespace {

using namespace doccam::test;
using testing::AllOf;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

class Scan : public HostProgramTest {
  protected:
    // The QR codes of a PDF's pages, in page order.
    std::vector<std::string> codesOn(const std::string& pdf) const {
        const std::string command =
            "cd " + file(".") + " && pdftoppm -png -r 72 " + pdf + " page && mv page-* ../home";
        EXPECT_EQ(std::system(command.c_str()), 0); // NOLINT(cert-env33-c): the shell is wanted
        // Under a sanitizer reading takes longer than a file gets by default.
        setenv("DOCCAM_READ_SECONDS", "1000", 1);
        const Outcome outcome = run("read --kind qr --json ../home/page-*");
        unsetenv("DOCCAM_READ_SECONDS");
        std::vector<std::string> texts;
        for (const auto& code : outcome.json()) {
            texts.push_back(code["text"]);
        }
        return texts;
    }
};

// A sheet stays longer than a slow program takes for a page.
const std::string kChanging = camera(R"("scene": {"sheetFrames": 150})");

TEST_F(Scan, TakesThreeDifferentSheetsHandsFree) {
    const Outcome outcome = run("--virtual scan demo.pdf --auto --pages 3 --size 1280x960");
    ASSERT_EQ(outcome.status, kDone) << outcome.err;
    EXPECT_THAT(outcome.out, HasSubstr("3 pages"));
    EXPECT_THAT(outcome.err, HasSubstr("page 3 of 3 taken"));
    EXPECT_THAT(files(), ElementsAre("demo.pdf"));
    const std::vector<std::string> codes = codesOn("demo.pdf");
    EXPECT_EQ(std::set<std::string>(codes.begin(), codes.end()).size(), 3U);
    EXPECT_THAT(codes, Each(StartsWith("https://example.org/sheet/")));
}

TEST_F(Scan, TakesWholeFramesHandsFreeButNoEmptyDesk) {
    const Outcome outcome = runWith(kChanging, "scan a.pdf --auto --pages 2 --whole-frame --json");
    ASSERT_EQ(outcome.status, kDone) << outcome.err;
    const auto scanned = outcome.json();
    EXPECT_EQ(scanned["file"], "a.pdf");
    ASSERT_EQ(scanned["pages"].size(), 2U);
    EXPECT_EQ(scanned["pages"][1]["width"], 1280);
    EXPECT_EQ(scanned["pages"][1]["cropped"], false);
    const std::vector<std::string> codes = codesOn("a.pdf");
    ASSERT_EQ(codes.size(), 2U);
    EXPECT_NE(codes[0], codes[1]);
}

TEST_F(Scan, TakesEachSheetOnceUnderAFlickeringLamp) {
    const std::string flickering = camera(
        R"("scene": {"sheetFrames": 150, "unrest": {"bands": 0.06, "flicker": 0.05, "nudge": 4}})");
    const Outcome outcome = runWith(flickering, "scan a.pdf --auto --pages 3");
    ASSERT_EQ(outcome.status, kDone) << outcome.err;
    EXPECT_THAT(codesOn("a.pdf"),
                ElementsAre("https://example.org/sheet/0042", "https://example.org/sheet/0043",
                            "https://example.org/sheet/0044"));
}

TEST_F(Scan, SaysWhyItTakesNoPage) {
    RunningProgram program = start(camera(R"("scene": {"sheetFrames": 1, "changeFrames": 12})"),
                                   {"scan", "a.pdf", "--auto"});
    ASSERT_TRUE(program.says("something moves in it"));
    program.type("\n");
    EXPECT_EQ(program.finish(), kNothingFound);
}

TEST_F(Scan, TakesAPageAtEachEnter) {
    const Outcome outcome = runWith(camera(), "scan a.pdf --json", "\n\nq\n");
    ASSERT_EQ(outcome.status, kDone) << outcome.err;
    EXPECT_EQ(outcome.json()["pages"].size(), 2U);
    EXPECT_EQ(outcome.json()["pages"][0]["cropped"], true);
}

TEST_F(Scan, RetakesAndDropsTheLastPage) {
    const Outcome outcome = runWith(camera(), "scan a.pdf --json", "d\nr\n\n\nr\nd\n q \n");
    ASSERT_EQ(outcome.status, kDone) << outcome.err;
    EXPECT_EQ(outcome.json()["pages"].size(), 1U);
    EXPECT_THAT(outcome.err, AllOf(HasSubstr("there is no page yet"), HasSubstr("again"),
                                   HasSubstr("page 2 dropped")));
}

TEST_F(Scan, TakesNothingAtAMistypedLine) {
    const Outcome outcome = runWith(camera(), "scan a.pdf", "qq\n \nR\nquit\n\n");
    ASSERT_EQ(outcome.status, kDone) << outcome.err;
    EXPECT_THAT(outcome.out, HasSubstr("1 page"));
    EXPECT_THAT(outcome.err, HasSubstr("Enter alone takes a page"));
}

TEST_F(Scan, NamesTheSheetThatThePageEngineFound) {
    const Outcome outcome = runWith(camera(), "scan a.pdf --json --rotate 90", "\nq\n");
    ASSERT_EQ(outcome.status, kDone) << outcome.err;
    const auto page = outcome.json()["pages"][0];
    EXPECT_EQ(page["sheet"].size(), 4U);
    EXPECT_GT(page["confidence"], 0.5);
    EXPECT_GT(page["width"], page["height"]);
    EXPECT_THAT(outcome.err, HasSubstr(std::to_string(page["width"].get<int>()) + "x" +
                                       std::to_string(page["height"].get<int>())));
}

TEST_F(Scan, TakesStillsOfTheLibraryByRequest) {
    for (const std::string way : {"--crop=rectangle", "--clean-edges", "--clean-background"}) {
        const Outcome outcome = runWith(camera(), "scan a.pdf --force --json " + way, "\nq\n");
        ASSERT_EQ(outcome.status, kDone) << outcome.err;
        EXPECT_EQ(outcome.json()["pages"][0]["cropped"], true) << way;
        EXPECT_EQ(outcome.json()["pages"][0]["sheet"], nullptr) << way;
    }
    const Outcome both = runWith(camera(), "scan b.pdf --look paper --clean-edges");
    EXPECT_EQ(both.status, kUsage);
    EXPECT_THAT(both.err, isOneSentence());
}

TEST_F(Scan, KeepsFramesWithoutAJpegAsPng) {
    const Outcome outcome = runWith(camera(), "scan a.pdf --format yuyv", "\nq\n");
    ASSERT_EQ(outcome.status, kDone) << outcome.err;
    const auto documents = run("spool list --json").json();
    const std::string name = documents[0]["document"];
    const auto pages = run("spool show --json " + name).json();
    EXPECT_THAT(pages[0]["frame"].get<std::string>(), testing::EndsWith(".png"));
    EXPECT_EQ(cv::imread(pages[0]["frame"].get<std::string>()).size(), cv::Size(640, 480));
}

TEST_F(Scan, EndsAfterTheRequestedNumberOfPages) {
    const Outcome outcome = runWith(camera(), "scan a.pdf --pages 1 --json", "\n\n\n");
    EXPECT_EQ(outcome.json()["pages"].size(), 1U);
}

TEST_F(Scan, WritesNothingWithoutAPage) {
    for (const std::string arguments : {"scan a.pdf", "scan a.pdf --auto"}) {
        const Outcome outcome = runWith(camera(R"("scene": {"centreX": 9})"), arguments, "q\n");
        EXPECT_EQ(outcome.status, kNothingFound);
        EXPECT_THAT(files(), IsEmpty());
    }
}

TEST_F(Scan, LeavesNoFileWhenTheCameraIsUnplugged) {
    RunningProgram program = start(camera(), {"scan", "a.pdf", "--auto", "--pages", "3"});
    ASSERT_TRUE(program.says("page 1 of 3 taken"));
    unplug();
    EXPECT_EQ(program.finish(), kCameraFailed);
    EXPECT_THAT(program.lastLine(), StartsWith("doccam: Camera 0 stopped"));
    EXPECT_THAT(files(), IsEmpty());
}

TEST_F(Scan, ReportsThatAPageCannotBeWritten) {
    RunningProgram program = start(camera(), {"scan", "--whole-frame", "a.pdf"});
    ASSERT_TRUE(program.says("Enter takes page 1"));
    ASSERT_THAT(files(), ElementsAre(StartsWith(".doccam-")));
    std::filesystem::remove_all(file(files().front()));
    program.type("\n");
    EXPECT_EQ(program.finish(), kFileFailed);
    EXPECT_THAT(program.lastLine(), HasSubstr("could not be saved"));
}

TEST_F(Scan, ReportsThatItFindsNoSheet) {
    // Too small to be a sheet, too bright to be an empty desk.
    cv::Mat coin(480, 640, CV_8UC1, cv::Scalar(40));
    cv::circle(coin, {320, 240}, 20, cv::Scalar(255), -1);
    cv::imwrite(file("coin.png"), coin);
    RunningProgram program =
        start(camera(R"("picture": ")" + file("coin.png") + "\""), {"scan", "a.pdf", "--auto"});
    ASSERT_TRUE(program.says("no sheet is found"));
    program.type("\n");
    EXPECT_EQ(program.finish(), kNothingFound);
}

TEST_F(Scan, ContinuesWhenNobodyReadsItsProgress) {
    runWith(kChanging, "scan a.pdf --auto --pages 2 2>&1 </dev/null | head -1");
    EXPECT_THAT(files(), ElementsAre("a.pdf"));
}

TEST_F(Scan, RefusesAFileThatExistsBeforeItTakesAnything) {
    drawSheet("a.pdf.png");
    ASSERT_EQ(run("pdf a.pdf a.pdf.png").status, kDone);
    const Outcome outcome = runWith(camera(), "scan a.pdf --auto --pages 1");
    EXPECT_EQ(outcome.status, kFileFailed);
    EXPECT_THAT(outcome.err, isOneSentence());
}

} // namespace
