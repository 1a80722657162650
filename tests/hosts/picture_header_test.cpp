#include "pictures/headers/picture_header.h"
#include "support/scratch_folder.h"

#include <gtest/gtest.h>
#include <opencv2/imgcodecs.hpp>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <vector>

namespace {

using doccam::host::FileBytes;
using doccam::host::PictureHeader;

class PictureHeaders : public testing::Test {
  protected:
    std::optional<PictureHeader> headerOf(const std::string& name) const {
        FileBytes file(folder_.file(name));
        return doccam::host::readPictureHeader(file);
    }

    std::optional<PictureHeader> headerOfPicture(const std::string& name,
                                                 const std::vector<int>& parameters = {}) const {
        const bool grey = name == "a.pgm" || name == "a.pbm";
        const cv::Mat picture(70, 100, grey ? CV_8UC1 : CV_8UC3, cv::Scalar(9, 99, 199));
        cv::imwrite(folder_.file(name), picture, parameters);
        return headerOf(name);
    }

    doccam::test::ScratchFolder folder_;
};

TEST_F(PictureHeaders, NameTheSidesOfEachType) {
    for (const std::string name :
         {"a.jpg", "a.png", "a.tif", "a.bmp", "a.webp", "a.ppm", "a.pgm", "a.pbm"}) {
        const auto header = headerOfPicture(name);
        ASSERT_TRUE(header) << name;
        EXPECT_EQ(header->width, 100U) << name;
        EXPECT_EQ(header->height, 70U) << name;
        EXPECT_EQ(header->pixels, 7000U) << name;
    }
}

TEST_F(PictureHeaders, CountTheCoefficientsOnlyOfAProgressiveJpeg) {
    const auto progressive = headerOfPicture("a.jpg", {cv::IMWRITE_JPEG_PROGRESSIVE, 1});
    const auto plain = headerOfPicture("b.jpg");
    ASSERT_TRUE(progressive && plain);
    // 7 x 5 units of 16 pixels: four luma and two chroma blocks of 64 coefficients.
    EXPECT_EQ(progressive->decoderBytes, 7U * 5 * 6 * 64 * 2);
    EXPECT_GT(progressive->passes, 1U);
    EXPECT_EQ(plain->decoderBytes, 0U);
    EXPECT_EQ(plain->passes, 1U);
}

TEST_F(PictureHeaders, AddUpThePagesOfATiffFile) {
    const cv::Mat picture(70, 100, CV_8UC1, cv::Scalar(9));
    cv::imwritemulti(folder_.file("a.tif"), std::vector<cv::Mat>(3, picture));
    const auto header = headerOf("a.tif");
    ASSERT_TRUE(header);
    EXPECT_EQ(header->pixels, 3U * 7000);
}

TEST_F(PictureHeaders, AreNoneInWhatIsNoPicture) {
    std::ofstream(folder_.file("a.png")) << "<VRTDataset rasterXSize=\"8\" rasterYSize=\"8\"/>";
    EXPECT_FALSE(headerOf("a.png"));
    EXPECT_FALSE(headerOf("missing.png"));
}

TEST_F(PictureHeaders, AreNotReadFromAPipe) {
    mkfifo(folder_.file("a.png").c_str(), 0600);
    EXPECT_FALSE(FileBytes(folder_.file("a.png")).isOpen());
}

TEST_F(PictureHeaders, AreNoneWhereTheyEndEarly) {
    for (const std::string name : {"a.jpg", "a.png", "a.tif", "a.bmp", "a.webp", "a.ppm"}) {
        headerOfPicture(name);
        std::filesystem::resize_file(folder_.file(name), 7);
        EXPECT_FALSE(headerOf(name)) << name;
    }
}

} // namespace
