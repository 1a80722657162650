#include "host_program.h"

#include <opencv2/imgcodecs.hpp>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <vector>

namespace {

using namespace doccam::test;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::SizeIs;

class Pdf : public HostProgramTest {
  protected:
    // What a shell command prints, run in the folder.
    std::string said(const std::string& command) const {
        const std::string printed = file("printed");
        const std::string whole = "cd " + file(".") + " && " + command + " >" + printed + " 2>&1";
        std::system(whole.c_str()); // NOLINT(cert-env33-c): the shell is wanted
        std::ifstream stream(printed);
        return {std::istreambuf_iterator<char>(stream), {}};
    }

    void drawPicture(const std::string& name, cv::Size size) const {
        cv::imwrite(file(name), cv::Mat(size, CV_8UC3, cv::Scalar(200, 220, 210)));
    }
};

TEST_F(Pdf, HasPagesOfTheSizeThatIsAskedFor) {
    drawPicture("a.jpg", {1000, 1414});
    Outcome outcome = run("pdf a.pdf a.jpg --paper a4 --json");
    ASSERT_EQ(outcome.status, kDone) << outcome.err;
    EXPECT_EQ(outcome.json()["sizes"][0]["dpi_from"], "paper");
    EXPECT_THAT(said("pdfinfo a.pdf"), HasSubstr("595.276 x 841.89 pts (A4)"));
    outcome = run("pdf --force a.pdf a.jpg --dpi 200 --json");
    EXPECT_EQ(outcome.json()["sizes"][0]["dpi_from"], "option");
    EXPECT_EQ(outcome.json()["sizes"][0]["dpi"], 200);
    EXPECT_THAT(said("pdfinfo a.pdf"), HasSubstr("360 x 509.04 pts"));
}

TEST_F(Pdf, SaysThatASizeIsAGuess) {
    drawPicture("a.jpg", {1414, 1000});
    EXPECT_EQ(run("pdf a.pdf a.jpg --json").json()["sizes"][0]["dpi_from"], "guess");
    EXPECT_THAT(run("pdf --force a.pdf a.jpg").out, HasSubstr("297 x 210 mm, guessed"));
}

TEST_F(Pdf, TakesAllPicturesOfATiffAndAllPagesOfAPdf) {
    const cv::Mat picture(200, 200, CV_8UC3, cv::Scalar::all(200));
    cv::imwrite(file("a.tif"), std::vector<cv::Mat>{picture, picture, picture});
    EXPECT_EQ(run("pdf a.pdf a.tif --json").json()["pages"], 3);
    drawPicture("b.png", {100, 100});
    EXPECT_EQ(run("pdf b.pdf b.png a.pdf b.png --json").json()["pages"], 5);
    EXPECT_THAT(said("qpdf --check b.pdf"), HasSubstr("No syntax or stream encoding errors"));
    EXPECT_THAT(said("pdfinfo b.pdf"), HasSubstr("Pages:           5"));
}

TEST_F(Pdf, IsAppendedTo) {
    drawPicture("a.jpg", {100, 100});
    drawPicture("b.jpg", {200, 100});
    EXPECT_EQ(run("pdf --append all.pdf a.jpg").status, kDone);
    EXPECT_EQ(run("pdf --append all.pdf b.jpg a.jpg").status, kDone);
    EXPECT_THAT(said("pdfinfo all.pdf"), HasSubstr("Pages:           3"));
    said("pdfimages -j all.pdf image");
    EXPECT_EQ(said("cmp a.jpg image-000.jpg && cmp b.jpg image-001.jpg"), "");
}

TEST_F(Pdf, KeepsWhatItCannotBeAppendedTo) {
    drawPicture("a.jpg", {100, 100});
    ASSERT_EQ(run("pdf plain.pdf a.jpg").status, kDone);
    said("qpdf --encrypt '' owner 256 -- plain.pdf locked.pdf && cp locked.pdf before.pdf");
    const Outcome outcome = run("pdf --append locked.pdf a.jpg");
    EXPECT_NE(outcome.status, kDone);
    EXPECT_THAT(outcome.err, AllOf(isOneSentence(), HasSubstr("locked.pdf is encrypted")));
    EXPECT_EQ(said("cmp locked.pdf before.pdf"), "");
    EXPECT_THAT(run("pdf new.pdf a.jpg locked.pdf").err, HasSubstr("locked.pdf is encrypted"));
}

TEST_F(Pdf, LeavesOutBadFilesWhenAsked) {
    drawPicture("a.jpg", {100, 100});
    std::ofstream(file("b.jpg")) << "no picture";
    const Outcome outcome = run("pdf all.pdf a.jpg b.jpg a.jpg --skip-bad --json");
    EXPECT_EQ(outcome.status, kFileFailed);
    EXPECT_THAT(outcome.err, AllOf(isOneSentence(), HasSubstr("b.jpg")));
    EXPECT_EQ(outcome.json()["pages"], 2);
    EXPECT_EQ(run("pdf none.pdf b.jpg --skip-bad").status, kUsage);
    EXPECT_THAT(files(), ElementsAre("a.jpg", "all.pdf", "b.jpg"));
}

TEST_F(Pdf, HasNoPagesOfFilesThatEndTooEarly) {
    const cv::Mat picture(200, 200, CV_8UC3, cv::Scalar::all(200));
    cv::imwrite(file("whole.tif"), std::vector<cv::Mat>{picture, picture, picture, picture});
    cv::imwrite(file("whole.jpg"), cv::imread(file(drawSheet("sheet.png"))));
    said("head -c $(($(stat -c %s whole.tif) / 2)) whole.tif >cut.tif");
    said("head -c $(($(stat -c %s whole.jpg) / 2)) whole.jpg >cut.jpg");
    for (const std::string name : {"cut.tif", "cut.jpg"}) {
        const Outcome outcome = run("pdf all.pdf " + name);
        EXPECT_EQ(outcome.status, kUsage) << name;
        EXPECT_THAT(outcome.err, AllOf(isOneSentence(), HasSubstr(name)));
    }
    EXPECT_EQ(run("pdf all.pdf whole.tif whole.jpg").status, kDone);
}

TEST_F(Pdf, ShowsWhatIsTransparentAsPaper) {
    cv::Mat picture(80, 80, CV_8UC4, cv::Scalar::all(0));
    picture(cv::Rect(0, 0, 20, 20)).setTo(cv::Scalar(0, 0, 0, 255));
    cv::imwrite(file("a.webp"), picture, {cv::IMWRITE_WEBP_QUALITY, 101});
    ASSERT_EQ(run("pdf a.pdf a.webp").status, kDone);
    said("pdftoppm -gray -singlefile -r 72 a.pdf a");
    const cv::Mat page = cv::imread(file("a.pgm"), cv::IMREAD_GRAYSCALE);
    EXPECT_GT(page.at<uchar>(page.rows - 20, page.cols - 20), 250);
    EXPECT_LT(page.at<uchar>(20, 20), 10);
}

TEST_F(Pdf, HasBlackAndWhiteAsCcitt) {
    cv::Mat bits(80, 80, CV_8U, cv::Scalar(255));
    bits(cv::Rect(10, 10, 30, 30)).setTo(0);
    cv::imwrite(file("a.pbm"), bits);
    cv::imwrite(file("b.bmp"), bits);
    cv::imwrite(file("c.png"), bits);
    ASSERT_EQ(run("pdf a.pdf a.pbm b.bmp c.png").status, kDone);
    EXPECT_EQ(said("pdfimages -list a.pdf | grep -c ccitt"), "3\n");
    ASSERT_EQ(run("--virtual capture --colour bw b.pdf").status, kDone);
    EXPECT_EQ(said("pdfimages -list b.pdf | grep -c ccitt"), "1\n");
}

TEST_F(Pdf, SaysThatPagesOfPdfsStayAsTheyAre) {
    drawPicture("a.jpg", {100, 100});
    ASSERT_EQ(run("pdf a.pdf a.jpg").status, kDone);
    const Outcome outcome = run("pdf b.pdf a.pdf --paper a5");
    EXPECT_EQ(outcome.status, kFileFailed);
    EXPECT_THAT(outcome.err, AllOf(isOneSentence(), HasSubstr("pages of PDFs")));
}

TEST_F(Pdf, HasTheSizeOfTheCommandLineRatherThanOfTheConfiguration) {
    drawPicture("a.jpg", {1000, 1414});
    std::ofstream(file("sizes.toml")) << "[pdf]\ndpi = 200\n";
    const Outcome outcome = run("--config sizes.toml pdf a.pdf a.jpg --paper a4 --json");
    ASSERT_EQ(outcome.status, kDone) << outcome.err;
    EXPECT_EQ(outcome.json()["sizes"][0]["dpi_from"], "paper");
}

TEST_F(Pdf, MayHaveFilesWhoseNamesAreNoUtf8) {
    drawPicture("a.jpg", {100, 100});
    const std::string folder = "d\xE4";
    std::filesystem::create_directory(file(folder));
    std::ofstream(file(folder + "/bad.jpg")) << "no picture";
    const Outcome outcome =
        run("pdf " + folder + "/a.pdf a.jpg " + folder + "/bad.jpg --skip-bad --json");
    EXPECT_EQ(outcome.status, kFileFailed);
    EXPECT_THAT(outcome.err, HasSubstr("bad.jpg"));
    EXPECT_EQ(outcome.json()["pages"], 1);
    EXPECT_TRUE(std::filesystem::exists(file(folder + "/a.pdf")));
}

TEST_F(Pdf, SaysWhatItIs) {
    drawPicture("a.jpg", {100, 100});
    ASSERT_EQ(run("pdf a.pdf a.jpg --title 'Two words' --author Ada --language de-CH "
                  "--date 1970-01-02")
                  .status,
              kDone);
    EXPECT_THAT(said("pdfinfo a.pdf"),
                AllOf(HasSubstr("Two words"), HasSubstr("Ada"), HasSubstr("Jan  2")));
    EXPECT_EQ(run("pdf b.pdf a.jpg --date 2026-02-30").status, kUsage);
    EXPECT_EQ(run("pdf b.pdf a.jpg --language 'x y'").status, kUsage);
}

TEST_F(Pdf, HasTheWordsOfItsPages) {
    drawSheet("a.jpg");
    ASSERT_EQ(run("pdf a.pdf a.jpg --ocr eng --paper a4 --compact").status, kDone);
    EXPECT_GT(std::stoi(said("pdftotext a.pdf - | wc -w")), 20);
    EXPECT_THAT(said("pdfinfo a.pdf"), HasSubstr("Tagged:          no"));
}

TEST_F(Pdf, IsSavedWithoutTheWordsOfAMissingLanguage) {
    drawSheet("a.jpg");
    const Outcome outcome = run("pdf a.pdf a.jpg --ocr xyz");
    EXPECT_EQ(outcome.status, kFileFailed);
    EXPECT_THAT(outcome.err, AllOf(isOneSentence(), HasSubstr("tesseract-ocr-xyz")));
    EXPECT_THAT(said("pdfinfo a.pdf"), HasSubstr("Pages:           1"));
    EXPECT_EQ(run("pdf b.pdf a.jpg --ocr ../x").status, kUsage);
}

} // namespace
