// Saving a finished page as a PDF.
#include "decoded.h"
#include "environment.h"
#include "pdf_file.h"
#include "support/printed_text.h"
#include "support/refused_writing.h"
#include "support/scratch_folder.h"

#include <doccam/doccam.hpp>

#include <gtest/gtest.h>
#include <opencv2/core.hpp>
#include <unistd.h>

#include <filesystem>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;
using namespace doccam::test;
using Sizes = std::vector<std::string>;

class SavePdf : public testing::Test {
  protected:
    void SetUp() override {
        fs::create_directory(home_);
        fs::create_directory(out_);
    }

    void TearDown() override {
        SetColorMode(0);
        SetJpgQuality(85);
    }

    std::string save(std::string path) {
        EXPECT_EQ(SaveImage(path.data(), page_), 0);
        return path;
    }

    ScratchFolder scratch_;
    std::string home_ = scratch_.file("home");
    std::string out_ = scratch_.file("out");
    Home user_{home_.c_str()};
    cv::Mat page_ = cv::Mat(30, 50, CV_8UC3, cv::Scalar(0, 0, 255));
};

TEST_F(SavePdf, ShowsThePictureAtOnePixelToOnePoint) {
    const std::string pdf = save(out_ + "/page1.pdf");
    EXPECT_EQ(pageSizes(pdf), Sizes{"50x30"});
    EXPECT_EQ(pictureKinds(pdf), Sizes{"rgb 3 8 jpeg"});
    const Pixel pixel = extractPicture(pdf, 0).at(25, 15);
    EXPECT_GT(pixel[0], 245);
    EXPECT_LT(pixel[2], 10);
}

TEST_F(SavePdf, LeavesItsJpegInTheHomeDirectory) {
    SetJpgQuality(40);
    const std::string pdf = save(out_ + "/page1.pdf");
    EXPECT_EQ(readJpeg(home_ + "/page1.jpg").firstQuantizer, 20);
    outputOf("pdfimages -j '" + pdf + "' '" + out_ + "/p'");
    EXPECT_EQ(readText(out_ + "/p-000.jpg"), readText(home_ + "/page1.jpg"));
    EXPECT_EQ(std::distance(fs::directory_iterator(home_), {}), 1);
}

TEST_F(SavePdf, OverwritesTheJpegOfAnEarlierPage) {
    save(out_ + "/page1.pdf");
    page_ = cv::Mat(60, 70, CV_8UC3, cv::Scalar::all(255));
    EXPECT_EQ(pageSizes(save(out_ + "/page1.pdf")), Sizes{"70x60"});
    EXPECT_EQ(readJpeg(home_ + "/page1.jpg").width, 70);
}

TEST_F(SavePdf, StoresOneChannelInGreyAndInBlackAndWhite) {
    for (const int mode : {1, 2}) {
        SetColorMode(mode);
        EXPECT_EQ(pictureKinds(save(out_ + "/page1.pdf")), Sizes{"gray 1 8 jpeg"}) << mode;
        EXPECT_EQ(readJpeg(home_ + "/page1.jpg").channels, 1) << mode;
    }
}

TEST_F(SavePdf, NamesTheJpegAfterThePathsLastPart) {
    save(out_ + "/a.b.pdf");
    EXPECT_TRUE(fs::exists(home_ + "/a.b.jpg"));
    save(out_ + "/.pdf");
    EXPECT_TRUE(fs::exists(home_ + "/.jpg"));
}

TEST_F(SavePdf, NamesTheJpegOfAPathWithoutFolder) {
    const fs::path before = fs::current_path();
    fs::current_path(out_);
    save("plain.pdf");
    fs::current_path(before);
    EXPECT_TRUE(fs::exists(home_ + "/plain.jpg"));
    EXPECT_EQ(pageSizes(out_ + "/plain.pdf"), Sizes{"50x30"});
}

TEST_F(SavePdf, ThrowsWhenTheLastDotLiesBeforeTheLastSlash) {
    fs::create_directory(out_ + "/rel.2");
    std::string path = out_ + "/rel.2/scanpdf";
    EXPECT_THROW(SaveImage(path.data(), page_), cv::Exception);
    EXPECT_TRUE(fs::is_empty(out_ + "/rel.2"));
    EXPECT_TRUE(fs::is_empty(home_));
}

TEST_F(SavePdf, ThrowsWithoutADot) {
    std::string path = "scanpdf";
    EXPECT_THROW(TempImgToPdf(path.data(), page_), cv::Exception);
    EXPECT_THROW(TempImgToPdf(nullptr, page_), cv::Exception);
    EXPECT_FALSE(fs::exists(path));
}

TEST_F(SavePdf, WritesAPdfUnderAnyNameWhenAskedDirectly) {
    std::string path = out_ + "/page.out";
    EXPECT_EQ(TempImgToPdf(path.data(), page_), 0);
    EXPECT_EQ(pageSizes(path), Sizes{"50x30"});
}

TEST_F(SavePdf, UsesTheEnvironmentsHomeWithoutAPasswordEntry) {
    const Home nobody(nullptr);
    const Variable home("HOME", out_.c_str());
    save(out_ + "/page1.pdf");
    EXPECT_TRUE(fs::exists(out_ + "/page1.jpg"));
    EXPECT_TRUE(fs::exists(out_ + "/page1.pdf"));
}

TEST_F(SavePdf, UsesTmpWithoutPasswordEntryAndHome) {
    const Home nobody(nullptr);
    for (const char* value : {static_cast<const char*>(nullptr), ""}) {
        const Variable home("HOME", value);
        // The scratch folder's name is unique.
        const std::string name = scratch_.path().filename();
        save(out_ + "/" + name + ".pdf");
        EXPECT_TRUE(fs::remove("/tmp/" + name + ".jpg"));
    }
}

TEST_F(SavePdf, PrefersThePasswordEntryToTheEnvironment) {
    const Variable home("HOME", out_.c_str());
    save(out_ + "/page1.pdf");
    EXPECT_TRUE(fs::exists(home_ + "/page1.jpg"));
}

TEST_F(SavePdf, PrintsTheErrorAndWritesNothingWithoutAHome) {
    const Home missing((home_ + "/missing").c_str());
    PrintedText printed;
    save(out_ + "/page1.pdf");
    EXPECT_EQ(printed.take(), "ERROR: error_no=1017, detail_no=2\n");
    EXPECT_TRUE(fs::is_empty(out_));
}

TEST_F(SavePdf, DoesNotShowAnEarlierPageWhenItsJpegCannotBeWritten) {
    save(out_ + "/page1.pdf");
    fs::remove(out_ + "/page1.pdf");
    PrintedText printed;
    {
        const FullDisk full(100);
        save(out_ + "/page1.pdf");
    }
    EXPECT_EQ(printed.take(), "ERROR: error_no=1016, detail_no=0\n");
    EXPECT_TRUE(fs::is_empty(out_));
    EXPECT_EQ(std::distance(fs::directory_iterator(home_), {}), 1);
}

} // namespace
