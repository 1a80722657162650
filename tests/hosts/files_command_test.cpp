#include "host_program.h"
#include "support/refused_writing.h"

#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace {

using namespace doccam::test;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;

class Files : public HostProgramTest {
  protected:
    // A sheet on a black desk, as FN_DeleteBlackEdge expects it.
    void drawPage(const std::string& name) const {
        cv::Mat page(400, 300, CV_8UC3, cv::Scalar::all(8));
        cv::rectangle(page, {40, 40, 220, 320}, cv::Scalar::all(235), -1);
        cv::rectangle(page, {80, 100, 140, 12}, cv::Scalar::all(60), -1);
        cv::imwrite(file(name), page);
    }

    // The number that a command prints when run in the folder.
    int shellCount(const std::string& command) const {
        const std::string counted = file("counted");
        const std::string whole = "cd " + file(".") + " && " + command + " >" + counted;
        std::system(whole.c_str()); // NOLINT(cert-env33-c): the shell is wanted
        int count = -1;
        std::ifstream(counted) >> count;
        return count;
    }

    double brightness(const std::string& name) const {
        return cv::mean(cv::imread(file(name), cv::IMREAD_GRAYSCALE))[0];
    }
};

TEST_F(Files, BecomeThePagesOfAPdf) {
    drawSheet("a.jpg");
    drawSheet("b.TIF");
    drawSheet("c.png");
    const Outcome outcome = run("pdf all.pdf a.jpg b.TIF c.png --json");
    ASSERT_EQ(outcome.status, kDone) << outcome.err;
    EXPECT_EQ(outcome.json()["pages"], 3);
    EXPECT_THAT(files(), ElementsAre("a.jpg", "all.pdf", "b.TIF", "c.png"));
    EXPECT_EQ(std::system(("pdfinfo " + file("all.pdf") + " | grep -q 'Pages: *3$'").c_str()), 0);
}

TEST_F(Files, OfAFewPixelsBecomePagesToo) {
    const cv::Mat picture(5, 5, CV_8UC3, cv::Scalar::all(9));
    for (const std::string name : {"a.png", "b.jpg", "c.tif"}) {
        cv::imwrite(file(name), picture);
    }
    EXPECT_EQ(run("pdf all.pdf a.png b.jpg c.tif").status, kDone);
}

TEST_F(Files, ThatAreNoPicturesMakeNoPdf) {
    std::ofstream(file("b.jpg")) << "no picture";
    const Outcome outcome = run("pdf all.pdf " + drawSheet("a.jpg") + " b.jpg");
    EXPECT_EQ(outcome.status, kUsage);
    EXPECT_THAT(outcome.err, isOneSentence());
    EXPECT_THAT(outcome.err, HasSubstr("b.jpg"));
    EXPECT_THAT(files(), ElementsAre("a.jpg", "b.jpg"));
}

TEST_F(Files, ThatAreMissingOrFoldersAreSaidToBe) {
    drawSheet("a.jpg");
    for (const std::string command : {"pdf all.pdf a.jpg", "clean", "clean --crop", "read"}) {
        const Outcome missing = run(command + " b.jpg");
        EXPECT_EQ(missing.status, kUsage) << command;
        EXPECT_EQ(missing.err, "doccam: There is no file b.jpg.\n") << command;
        EXPECT_THAT(run(command + " ../home").err, AllOf(isOneSentence(), HasSubstr("is a folder")))
            << command;
    }
    EXPECT_EQ(run("--virtual=b.jpg list").err, "doccam: There is no file b.jpg.\n");
    EXPECT_THAT(run("--virtual=. list").err, HasSubstr("is a folder"));
    EXPECT_THAT(files(), ElementsAre("a.jpg"));
}

TEST_F(Files, GoIntoAPdfUnchangedWhateverTheirExtension) {
    drawSheet("a.jpg");
    std::filesystem::copy(file("a.jpg"), file("b.JPG"));
    std::filesystem::copy(file("a.jpg"), file("c.jpeg"));
    std::filesystem::copy(file("a.jpg"), file("d.png"));
    ASSERT_EQ(run("pdf all.pdf a.jpg b.JPG c.jpeg d.png").status, kDone);
    EXPECT_EQ(shellCount("pdfimages -list all.pdf | grep -c jpeg"), 4);
}

TEST_F(Files, AreTurnedUprightInAPdf) {
    drawSheet("a.jpg");
    turnOnItsSide("a.jpg");
    ASSERT_EQ(run("pdf all.pdf a.jpg").status, kDone);
    EXPECT_EQ(shellCount("pdfinfo all.pdf | grep -c 'Page rot: *90'"), 1);
}

TEST_F(Files, AreReplacedByAPdfOnlyWhenForced) {
    drawSheet("a.jpg");
    std::ofstream(file("all.pdf")) << "mine";
    EXPECT_EQ(run("pdf all.pdf a.jpg").status, kFileFailed);
    EXPECT_EQ(run("pdf --force all.pdf a.jpg").status, kDone);
}

TEST_F(Files, AreCleanedIntoNewFilesBesideThem) {
    drawPage("a.png");
    ASSERT_EQ(run("clean a.png").status, kDone);
    EXPECT_THAT(files(), ElementsAre("a-clean.png", "a.png"));
    EXPECT_GT(brightness("a-clean.png"), 200);
    EXPECT_LT(brightness("a.png"), 170);
    EXPECT_EQ(run("clean a.png").status, kFileFailed);
}

TEST_F(Files, AreCleanedInPlaceWhenForced) {
    drawPage("a.png");
    ASSERT_EQ(run("clean --edges --in-place --force a.png").status, kDone);
    EXPECT_THAT(files(), ElementsAre("a.png"));
    EXPECT_GT(brightness("a.png"), 200);
}

TEST_F(Files, OnAGreyDeskAreCleanedByTheirBrightness) {
    drawSheet("a.png");
    ASSERT_EQ(run("clean --edges --bright-sheet a.png").status, kDone);
    EXPECT_GT(brightness("a-clean.png"), 200);
}

TEST_F(Files, AreCleanedIntoAFolder) {
    drawSheet("a.png");
    EXPECT_EQ(run("clean --into missing a.png").status, kFileFailed);
    const Outcome outcome = run("clean --background --into ../home a.png --json");
    ASSERT_EQ(outcome.status, kDone) << outcome.err;
    EXPECT_EQ(outcome.json()[0]["width"], 1280);
}

TEST_F(Files, ThatAreNoPicturesAreNotCleanedButEarlierOnesAreReported) {
    std::ofstream(file("b.jpg")) << "no picture";
    const Outcome outcome = run("clean --json " + drawSheet("a.png") + " b.jpg");
    EXPECT_EQ(outcome.status, kUsage);
    EXPECT_EQ(outcome.json()[0]["file"], "a-clean.png");
    EXPECT_THAT(files(), ElementsAre("a-clean.png", "a.png", "b.jpg"));
}

TEST_F(Files, AreNotCleanedOntoAFullDisk) {
    for (const std::string name : {"a.jpg", "a.png", "a.tif"}) {
        drawSheet(name);
        const FullDisk disk(10000);
        const Outcome outcome = run("clean " + name);
        EXPECT_EQ(outcome.status, kFileFailed) << name;
        EXPECT_THAT(outcome.err, isOneSentence()) << name;
    }
    EXPECT_THAT(files(), ElementsAre("a.jpg", "a.png", "a.tif"));
}

} // namespace
