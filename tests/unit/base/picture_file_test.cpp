#include "base/pictures/picture_file.h"
#include "support/scratch_folder.h"

#include <gtest/gtest.h>
#include <opencv2/imgcodecs.hpp>

#include <fstream>

namespace doccam::test {
namespace {

class PictureFile : public testing::Test {
  protected:
    std::string write(const std::string& name, const std::string& bytes) {
        const std::string path = folder_.path() / name;
        std::ofstream(path, std::ios::binary) << bytes;
        return path;
    }

    ScratchFolder folder_;
};

TEST_F(PictureFile, IsReadBlueFirst) {
    const std::string path = folder_.path() / "page.png";
    const cv::Mat page(2, 3, CV_8UC3, cv::Scalar(10, 20, 30));
    cv::imwrite(path, page);
    const cv::Mat read = readPictureFile(path, cv::IMREAD_COLOR);
    ASSERT_EQ(read.size(), page.size());
    EXPECT_EQ(cv::norm(read, page, cv::NORM_INF), 0);
}

TEST_F(PictureFile, ThatIsMissingOrInvalidIsEmpty) {
    EXPECT_TRUE(readPictureFile(folder_.path() / "none.png", cv::IMREAD_COLOR).empty());
    EXPECT_TRUE(readPictureFile(folder_.path(), cv::IMREAD_COLOR).empty());
    EXPECT_TRUE(readPictureFile(write("page.png", "text"), cv::IMREAD_COLOR).empty());
}

TEST_F(PictureFile, ThatLooksLikeADamagedMedicalScanIsEmptyAndDoesNotEndTheProcess) {
    const std::string path =
        write("page.jpg", std::string(128, 'l').append("DICM").append(3, '\0'));
    EXPECT_TRUE(readPictureFile(path, cv::IMREAD_COLOR).empty());
}

} // namespace
} // namespace doccam::test
