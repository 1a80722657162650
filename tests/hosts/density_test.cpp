// Densities in the files of pages.
#include "base/pictures/picture_encoding.h"
#include "base/pictures/png_writer.h"
#include "documents/paper/density_stamp.h"
#include "documents/paper/file_density.h"
#include "support/scratch_folder.h"

#include <gtest/gtest.h>
#include <opencv2/imgcodecs.hpp>

#include <cmath>
#include <fstream>
#include <string>
#include <vector>

namespace {

using namespace doccam::host;

using Bytes = std::vector<unsigned char>;

class FileDensity : public testing::Test {
  protected:
    std::optional<Density> densityOf(const Bytes& bytes, int part = 0) const {
        const std::string path = folder_.file("picture");
        std::ofstream(path, std::ios::binary)
            .write(reinterpret_cast<const char*>(bytes.data()),
                   static_cast<std::streamsize>(bytes.size()));
        FileBytes file(path);
        return readDensity(file, part);
    }

    static cv::Mat picture() {
        cv::Mat pixels(70, 100, CV_8UC3);
        cv::randu(pixels, cv::Scalar::all(0), cv::Scalar::all(255));
        return pixels;
    }

    doccam::test::ScratchFolder folder_;
};

TEST_F(FileDensity, IsReadAsItWasStamped) {
    for (const char* name : {"a.jpg", "a.png", "a.tif"}) {
        for (const Density density : {Density{300, 300}, Density{24.37, 24.11}, {199.6, 204.4}}) {
            Bytes bytes = doccam::encodePicture(name, picture());
            EXPECT_FALSE(densityOf(bytes)) << name;
            stampDensity(bytes, density);
            const auto found = densityOf(bytes);
            ASSERT_TRUE(found) << name;
            EXPECT_NEAR(found->across / density.across, 1, 0.001) << name;
            EXPECT_NEAR(found->down / density.down, 1, 0.001) << name;
        }
    }
}

TEST_F(FileDensity, LeavesThePixelsAsTheyAre) {
    for (const char* name : {"a.jpg", "a.png", "a.tif", "a.bmp"}) {
        Bytes bytes = doccam::encodePicture(name, picture());
        const cv::Mat before = cv::imdecode(bytes, cv::IMREAD_UNCHANGED);
        stampDensity(bytes, {199.6, 204.4});
        const cv::Mat after = cv::imdecode(bytes, cv::IMREAD_UNCHANGED);
        ASSERT_EQ(after.size(), before.size()) << name;
        EXPECT_EQ(cv::norm(before, after, cv::NORM_INF), 0) << name;
    }
}

TEST_F(FileDensity, OfAJpegNeedsNoExifDataIfItIsWhole) {
    Bytes bytes = doccam::encodePicture("a.jpg", picture());
    const std::size_t size = bytes.size();
    stampDensity(bytes, {300, 300});
    EXPECT_EQ(bytes.size(), size);
}

TEST_F(FileDensity, IsInFilesOfBitsToo) {
    const Bytes rows(70 * 13, 0x55);
    auto bytes = doccam::pngOfBits(rows.data(), 13, 100, 70);
    ASSERT_TRUE(bytes);
    stampDensity(*bytes, {300, 300});
    const auto found = densityOf(*bytes);
    ASSERT_TRUE(found);
    EXPECT_NEAR(found->across, 300, 0.02);
}

TEST_F(FileDensity, IsNotWrittenIfItIsAGuess) {
    Bytes bytes = doccam::encodePicture("a.png", picture());
    const Bytes before = bytes;
    stampDensity(bytes, {100, 70}, {{100, 70}, 25.4, DpiSource::kGuess, {100, 70}});
    EXPECT_EQ(bytes, before);
    stampDensity(bytes, {100, 70}, {{100, 80}, 25.4, DpiSource::kPaper, {100, 70}});
    const auto found = densityOf(bytes);
    ASSERT_TRUE(found);
    EXPECT_NEAR(found->down, 25.4, 0.02);
}

TEST_F(FileDensity, OfACameraIsNoneOfThePage) {
    // Exif data of 180 dpi that contradict a JFIF header of 300.
    Bytes bytes = doccam::encodePicture("a.jpg", picture());
    stampDensity(bytes, {180.25, 180.25});
    ASSERT_NEAR(densityOf(bytes)->across, 180.25, 0.01);
    bytes[14] = 300 >> 8;
    bytes[15] = 300 & 0xFF;
    bytes[16] = 300 >> 8;
    bytes[17] = 300 & 0xFF;
    EXPECT_EQ(densityOf(bytes)->across, 300);
}

TEST_F(FileDensity, IsReadInCentimetres) {
    Bytes bytes = doccam::encodePicture("a.jpg", picture());
    stampDensity(bytes, {118, 118});
    bytes[13] = 2;
    EXPECT_NEAR(densityOf(bytes)->across, 118 * 2.54, 0.01);
}

TEST_F(FileDensity, IsReadOfEachPictureOfATiff) {
    const std::string path = folder_.file("pages.tif");
    ASSERT_TRUE(cv::imwritemulti(
        path, std::vector<cv::Mat>{picture(), picture()},
        {cv::IMWRITE_TIFF_RESUNIT, 2, cv::IMWRITE_TIFF_XDPI, 200, cv::IMWRITE_TIFF_YDPI, 100}));
    FileBytes file(path);
    for (const int part : {0, 1}) {
        const auto density = readDensity(file, part);
        ASSERT_TRUE(density) << part;
        EXPECT_EQ(density->across, 200);
        EXPECT_EQ(density->down, 100);
    }
    EXPECT_FALSE(readDensity(file, 2));
}

// Nothing is read past their ends, as sanitizers see.
TEST_F(FileDensity, OfFilesThatEndEarlyIsNoneOrWhole) {
    for (const char* name : {"a.jpg", "a.png", "a.tif"}) {
        Bytes bytes = doccam::encodePicture(name, cv::Mat(4, 4, CV_8UC3, cv::Scalar::all(9)));
        stampDensity(bytes, {199.6, 204.4});
        for (std::size_t size = 0; size < bytes.size(); ++size) {
            Bytes start(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(size));
            const auto found = densityOf(start);
            EXPECT_TRUE(!found || std::abs(found->across - 199.6) < 0.5) << name << ' ' << size;
            stampDensity(start, {300, 300});
        }
    }
}

} // namespace
