#include "host_program.h"

#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

#include <cstdlib>
#include <set>

namespace {

using namespace doccam::test;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class Scan : public HostProgramTest {
  protected:
    // The QR codes of a PDF's pages, in their order.
    std::vector<std::string> codesOn(const std::string& pdf) const {
        const std::string command =
            "cd " + file(".") + " && pdftoppm -png -r 72 " + pdf + " page && mv page-* ../home";
        EXPECT_EQ(std::system(command.c_str()), 0); // NOLINT(cert-env33-c): the shell is wanted
        const Outcome outcome = run("read --kind qr --json ../home/page-*");
        std::vector<std::string> texts;
        for (const auto& code : outcome.json()) {
            texts.push_back(code["text"]);
        }
        return texts;
    }
};

const std::string kChanging = camera(R"("scene": {"sheetFrames": 40})");

TEST_F(Scan, TakesThreeDifferentSheetsByItself) {
    const Outcome outcome = run("--virtual scan demo.pdf --auto --pages 3 --size 1280x960");
    ASSERT_EQ(outcome.status, kDone) << outcome.err;
    EXPECT_THAT(outcome.out, HasSubstr("3 pages"));
    EXPECT_THAT(outcome.err, HasSubstr("page 3 of 3 taken"));
    EXPECT_THAT(files(), ElementsAre("demo.pdf"));
    // A sheet may come and go unseen on a machine that is very busy.
    const std::vector<std::string> codes = codesOn("demo.pdf");
    EXPECT_EQ(std::set<std::string>(codes.begin(), codes.end()).size(), 3U);
    EXPECT_EQ(codes.front(), "https://example.org/sheet/0042");
}

TEST_F(Scan, TakesWholeFramesByItselfButNoEmptyDesk) {
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

TEST_F(Scan, TakesAPageAtEachEnter) {
    const Outcome outcome = runWith(camera(), "scan a.pdf --json", "\n\nq\n");
    ASSERT_EQ(outcome.status, kDone) << outcome.err;
    EXPECT_EQ(outcome.json()["pages"].size(), 2U);
    EXPECT_EQ(outcome.json()["pages"][0]["cropped"], true);
}

TEST_F(Scan, EndsAfterTheNumberOfPagesAskedFor) {
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
    const Outcome outcome = runWith(
        camera(R"("scene": {"sheetFrames": 40}, "faults": [{"fault": "unplug", "at": 60}])"),
        "scan a.pdf --auto --pages 3");
    EXPECT_EQ(outcome.status, kCameraFailed);
    EXPECT_THAT(outcome.err, HasSubstr("page 1 of 3 taken"));
    EXPECT_THAT(outcome.err, HasSubstr("doccam: Camera 0 stopped"));
    EXPECT_THAT(files(), IsEmpty());
}

TEST_F(Scan, RefusesAFileThatExistsBeforeItTakesAnything) {
    drawSheet("a.pdf.png");
    ASSERT_EQ(run("pdf a.pdf a.pdf.png").status, kDone);
    const Outcome outcome = runWith(camera(), "scan a.pdf --auto --pages 1");
    EXPECT_EQ(outcome.status, kFileFailed);
    EXPECT_THAT(outcome.err, isOneSentence());
}

} // namespace
