// Pictures as pages of a PDF.
#include "checked_pdf.h"
#include "documents/writer/file_parts.h"
#include "documents/writer/pdf_writer.h"
#include "support/scratch_folder.h"

#include <gmock/gmock.h>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace doccam::test {
namespace {

using host::DocumentError;
using host::PlannedPage;
using testing::ElementsAre;

constexpr host::Millimetres kA4{210, 297};
constexpr host::Millimetres kFlatA4{297, 210};

// A picture 400 x 600, dark at the top and with a darker square in its left top corner.
cv::Mat markedPicture() {
    cv::Mat picture(600, 424, CV_8UC3, cv::Scalar(230, 240, 235));
    picture.rowRange(0, 200).setTo(cv::Scalar(120, 140, 160));
    picture(cv::Rect(0, 0, 100, 100)).setTo(cv::Scalar(20, 20, 20));
    return picture;
}

std::string contents(const std::string& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

class PdfPictures : public testing::Test {
  protected:
    std::string path(const std::string& name) const { return folder_.file(name); }

    std::string picture(const std::string& name, const cv::Mat& pixels = markedPicture(),
                        const std::vector<int>& parameters = {}) const {
        cv::imwrite(path(name), pixels, parameters);
        return path(name);
    }

    std::string written(const std::vector<PlannedPage>& pages) const {
        host::writePdf({.pages = pages}, path("out.pdf"));
        EXPECT_TRUE(isSound(path("out.pdf")));
        return path("out.pdf");
    }

    // Where the square is: "left top" and so on.
    static std::string corner(const cv::Mat& page) {
        cv::Point darkest;
        cv::Mat smooth;
        cv::blur(page, smooth, {31, 31});
        cv::minMaxLoc(smooth, nullptr, nullptr, &darkest, nullptr);
        return std::string(darkest.x < page.cols / 2 ? "left" : "right") +
               (darkest.y < page.rows / 2 ? " top" : " bottom");
    }

    ScratchFolder folder_;
};

TEST_F(PdfPictures, AreThePagesTrueSize) {
    const std::string pdf = written({{.file = picture("a.jpg"), .size = kA4}});
    EXPECT_THAT(pageSizes(pdf), ElementsAre("595.276 x 841.89"));
    EXPECT_EQ(corner(shown(pdf)), "left top");
}

TEST_F(PdfPictures, KeepTheBytesOfAJpeg) {
    const std::string jpeg = picture("a.jpg");
    const std::string pdf = written({{.file = jpeg, .size = kA4}});
    EXPECT_NE(contents(pdf).find(contents(jpeg)), std::string::npos);
}

TEST_F(PdfPictures, AreTurnedByTheirExifAndByThePlan) {
    std::string jpeg = contents(picture("a.jpg"));
    const std::string exif(
        "\xFF\xE1\x00\x22"
        "Exif\0\0II*\0\x08\0\0\0\x01\0\x12\x01\x03\0\x01\0\0\0\x06\0\0\0\0\0\0\0",
        36);
    std::ofstream(path("turned.jpg"), std::ios::binary) << jpeg.insert(2, exif);
    EXPECT_EQ(host::fileParts(path("turned.jpg"))[0].pixels, cv::Size(600, 424));
    std::string pdf = written({{.file = path("turned.jpg"), .size = kFlatA4}});
    EXPECT_EQ(corner(shown(pdf)), "right top");
    EXPECT_GT(shown(pdf).cols, shown(pdf).rows);
    EXPECT_NE(contents(pdf).find(jpeg), std::string::npos);
    pdf = written({{.file = path("turned.jpg"), .size = kA4, .quarterTurns = 1}});
    EXPECT_EQ(corner(shown(pdf)), "right bottom");
    EXPECT_GT(shown(pdf).rows, shown(pdf).cols);
}

TEST_F(PdfPictures, KeepTheCompressedRowsOfAPng) {
    const std::string png = picture("a.png");
    const std::string pdf = written({{.file = png, .size = kA4}});
    EXPECT_THAT(encodings(pdf), ElementsAre("image"));
    EXPECT_LT(contents(pdf).size(), contents(png).size() + 2000);
    EXPECT_EQ(corner(shown(pdf)), "left top");
}

TEST_F(PdfPictures, ShowWhatIsTransparentAsPaper) {
    cv::Mat picture4(60, 60, CV_8UC4, cv::Scalar(0, 0, 0, 0));
    picture4(cv::Rect(0, 0, 20, 20)).setTo(cv::Scalar(10, 10, 10, 255));
    const std::string pdf = written({{.file = picture("a.png", picture4), .size = {60, 60}}});
    const cv::Mat page = shown(pdf);
    EXPECT_GT(page.at<uchar>(page.rows - 5, page.cols - 5), 250);
    EXPECT_LT(page.at<uchar>(5, 5), 20);
}

TEST_F(PdfPictures, OfTwoColoursAreCcitt) {
    cv::Mat grey;
    cv::cvtColor(markedPicture(), grey, cv::COLOR_BGR2GRAY);
    const cv::Mat bits = grey > 100;
    const std::string png = picture("a.png", bits, {cv::IMWRITE_PNG_BILEVEL, 1});
    const std::string pdf = written({{.file = png, .size = kA4}});
    EXPECT_THAT(encodings(pdf), ElementsAre("ccitt"));
    EXPECT_EQ(corner(shown(pdf)), "left top");
    EXPECT_GT(cv::mean(shown(pdf))[0], 200);
}

TEST_F(PdfPictures, OfATiffAreAllItsPages) {
    std::vector<cv::Mat> pictures;
    for (int i = 0; i < 16; ++i) {
        cv::Mat page(120, 100, CV_8UC3, cv::Scalar::all(255));
        page(cv::Rect(0, 0, 100, 6 * i + 6)).setTo(cv::Scalar(0, 0, 90));
        pictures.push_back(page);
    }
    cv::imwrite(path("pages.tif"), pictures);
    const auto parts = host::fileParts(path("pages.tif"));
    ASSERT_EQ(parts.size(), 16);
    std::vector<PlannedPage> pages;
    for (int i = 0; i < 16; ++i) {
        pages.push_back({.file = path("pages.tif"), .part = i, .size = {100, 120}});
    }
    const std::string pdf = written(pages);
    EXPECT_EQ(pageSizes(pdf).size(), 16);
    for (const int i : {0, 7, 15}) {
        const cv::Mat page = shown(pdf, i + 1);
        EXPECT_NEAR(cv::countNonZero(page < 128) / double(page.total()), (6 * i + 6) / 120.0, 0.01);
    }
}

TEST_F(PdfPictures, LieWholeInTheMiddleOfPaperWithOtherProportions) {
    const cv::Mat square(300, 300, CV_8UC3, cv::Scalar(0, 0, 0));
    const cv::Mat page =
        shown(written({{.file = picture("a.png", square), .size = kA4, .picture = {210, 210}}}));
    EXPECT_GT(page.at<uchar>(100, page.cols / 2), 250);
    EXPECT_LT(page.at<uchar>(page.rows / 2, 3), 5);
    EXPECT_GT(page.at<uchar>(page.rows - 100, page.cols / 2), 250);
}

TEST_F(PdfPictures, PaintTheirInkOverTheirBackground) {
    host::Layers layers;
    cv::Mat ground(30, 20, CV_8UC3, cv::Scalar(200, 230, 240));
    cv::imencode(".jpg", ground, layers.background);
    cv::Mat mask(600, 424, CV_8U, cv::Scalar(0));
    mask(cv::Rect(0, 0, 100, 100)).setTo(255);
    layers.inks.push_back({mask, {0, 0, 0}});
    const std::string pdf =
        written({{.size = kA4, .layers = [&] { return std::optional(layers); }}});
    EXPECT_THAT(encodings(pdf), ElementsAre("jpeg", "ccitt"));
    EXPECT_EQ(corner(shown(pdf)), "left top");
    EXPECT_LT(shown(pdf).at<uchar>(20, 20), 20);
    EXPECT_GT(shown(pdf).at<uchar>(500, 400), 200);
}

TEST_F(PdfPictures, NeedAFileThatIsSound) {
    const std::string png = contents(picture("a.png"));
    std::ofstream(path("cut.png"), std::ios::binary) << png.substr(0, png.size() / 2);
    EXPECT_THROW(host::fileParts(path("cut.png")), DocumentError);
    EXPECT_THROW(host::fileParts(path("none.png")), DocumentError);
    std::ofstream(path("text.txt")) << "no picture";
    EXPECT_TRUE(host::fileParts(path("text.txt")).empty());
}

} // namespace
} // namespace doccam::test
