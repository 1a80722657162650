// Writing pictures.
#include "decoded.h"
#include "output/files/image_file.h"
#include "support/refused_writing.h"
#include "support/scratch_folder.h"

#include <gtest/gtest.h>
#include <opencv2/core.hpp>

#include <filesystem>
#include <string>

namespace {

namespace fs = std::filesystem;
using doccam::writeImage;
using namespace doccam::test;

// Noise, which no encoder can compress much.
cv::Mat noise() {
    cv::Mat picture(200, 300, CV_8UC3);
    cv::RNG random(1);
    random.fill(picture, cv::RNG::UNIFORM, 0, 256);
    return picture;
}

class ImageFile : public testing::TestWithParam<std::string> {
  protected:
    bool folderIsEmpty() const { return fs::is_empty(scratch_.path()); }

    ScratchFolder scratch_;
    std::string target_ = scratch_.file("a." + GetParam());
};

TEST_P(ImageFile, IsAbsentWhenTheDiskIsFull) {
    const FullDisk full(4096);
    EXPECT_FALSE(writeImage(target_, noise()));
    EXPECT_TRUE(folderIsEmpty());
}

TEST_P(ImageFile, StaysAsItWasWhenTheDiskIsFull) {
    writeText(target_, "old");
    const FullDisk full(4096);
    EXPECT_FALSE(writeImage(target_, noise()));
    EXPECT_EQ(readText(target_), "old");
    EXPECT_EQ(std::distance(fs::directory_iterator(scratch_.path()), {}), 1);
}

TEST_P(ImageFile, IsReplacedWhole) {
    writeText(target_, std::string(1'000'000, 'x'));
    EXPECT_TRUE(writeImage(target_, cv::Mat(2, 2, CV_8UC3, cv::Scalar::all(9))));
    EXPECT_LT(fs::file_size(target_), 2000U);
}

TEST_P(ImageFile, IsAbsentWhenItsFolderIsMissing) {
    EXPECT_FALSE(writeImage(scratch_.file("missing/a." + GetParam()), noise()));
    EXPECT_TRUE(folderIsEmpty());
}

INSTANTIATE_TEST_SUITE_P(EachType, ImageFile, testing::Values("jpg", "png", "bmp", "tif"));

class ImageFileFailure : public testing::Test {
  protected:
    ~ImageFileFailure() override { EXPECT_TRUE(fs::is_empty(scratch_.path())); }

    ScratchFolder scratch_;
};

TEST_F(ImageFileFailure, ThrowsForAnUnknownExtension) {
    EXPECT_THROW(writeImage(scratch_.file("a.xyz"), noise()), cv::Exception);
    EXPECT_THROW(writeImage(scratch_.file("a"), noise()), cv::Exception);
}

TEST_F(ImageFileFailure, ThrowsForAnEmptyName) {
    EXPECT_THROW(writeImage("", noise()), cv::Exception);
}

TEST_F(ImageFileFailure, ThrowsForAnEmptyPicture) {
    EXPECT_THROW(writeImage(scratch_.file("a.jpg"), cv::Mat()), cv::Exception);
}

TEST_F(ImageFileFailure, ThrowsForTwoChannels) {
    EXPECT_THROW(writeImage(scratch_.file("a.jpg"), cv::Mat(2, 2, CV_8UC2, cv::Scalar::all(0))),
                 cv::Exception);
}

TEST_F(ImageFileFailure, ReportsAPictureThatTheTypeCannotHold) {
    EXPECT_FALSE(writeImage(scratch_.file("a.jpg"), cv::Mat(1, 70000, CV_8UC1, cv::Scalar(0))));
}

TEST_F(ImageFileFailure, ReportsAFullDevice) {
    fs::create_symlink("/dev/full", scratch_.file("a.jpg"));
    EXPECT_FALSE(writeImage(scratch_.file("a.jpg"), noise()));
    EXPECT_TRUE(fs::is_symlink(scratch_.file("a.jpg")));
    fs::remove(scratch_.file("a.jpg"));
}

} // namespace
