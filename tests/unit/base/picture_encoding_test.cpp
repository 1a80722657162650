// Pictures encoded here, byte for byte equal to what OpenCV writes.
#include "base/pictures/picture_encoding.h"
#include "base/pictures/png_writer.h"

#include <gtest/gtest.h>
#include <opencv2/imgcodecs.hpp>

namespace doccam::test {
namespace {

using Bytes = std::vector<unsigned char>;

cv::Mat noise(cv::Size size, int type) {
    cv::Mat picture(size, type);
    cv::RNG random(static_cast<unsigned>(size.area() + type));
    random.fill(picture, cv::RNG::UNIFORM, 0, CV_MAT_DEPTH(type) == CV_8U ? 256 : 65536);
    for (int y = 1; y < size.height / 2; ++y) {
        picture.row(0).copyTo(picture.row(y));
    }
    return picture;
}

struct Encoding {
    Bytes bytes;
    std::string thrown;

    bool operator==(const Encoding&) const = default;
};

template <typename Encode>
Encoding encodingBy(const Encode& encode) {
    try {
        return {encode(), ""};
    } catch (const cv::Exception& error) {
        return {{}, error.what()};
    }
}

void expectAsOpenCv(const std::string& name, const cv::Mat& picture,
                    std::optional<int> quality = std::nullopt) {
    SCOPED_TRACE(name + ", type " + std::to_string(picture.type()) + ", quality " +
                 std::to_string(quality.value_or(-1)));
    const Encoding theirs = encodingBy([&] {
        Bytes bytes;
        cv::imencode(name, picture, bytes,
                     quality ? std::vector<int>{cv::IMWRITE_JPEG_QUALITY, *quality}
                             : std::vector<int>{});
        return bytes;
    });
    const Encoding ours = encodingBy([&] { return encodePicture(name, picture, quality); });
    EXPECT_EQ(ours.thrown, theirs.thrown);
    EXPECT_TRUE(ours.bytes == theirs.bytes);
    EXPECT_NE(ours.bytes.empty(), ours.thrown.empty());
}

constexpr int kTypes[] = {CV_8UC1, CV_8UC3,  CV_8UC4,  CV_16UC1, CV_16UC3, CV_16UC4, CV_8UC2,
                          CV_8SC3, CV_32FC1, CV_32FC3, CV_64FC4, CV_16SC1, CV_32SC3, CV_8UC(5)};

TEST(PictureEncoding, OfEveryTypeOfPixelIsOpenCvs) {
    for (const char* name : {".jpg", ".png", ".bmp", ".tif"}) {
        for (const int type : kTypes) {
            expectAsOpenCv(name, noise({53, 41}, type));
        }
    }
}

TEST(PictureEncoding, OfEveryQualityIsOpenCvs) {
    for (int quality = -1; quality <= 101; ++quality) {
        expectAsOpenCv(".jpg", noise({40, 30}, CV_8UC3), quality);
    }
    expectAsOpenCv(".png", noise({40, 30}, CV_8UC3), 50);
}

TEST(PictureEncoding, GoesByTheExtensionAsOpenCvDoes) {
    const cv::Mat picture = noise({20, 10}, CV_8UC3);
    for (const char* name :
         {"a.jpg",  "a.JPG",  "a.jpeg", "a.jpe",  "a.jpx",       "a.jp",          "a.jpgg",
          "a.png",  "a.PNG",  "a.pn",   "a.jpg~", "a.png.bmp",   "/rel.jpg/page", "/rel.2/page",
          "page",   "",       ".",      "..",     "a.",          "jpg",           ".jpg ",
          "a.tiff", "a.webp", "a.ppm",  "a.xyz",  "a.jp\xC3\xA9"}) {
        expectAsOpenCv(name, picture);
        EXPECT_EQ(canEncode(name), cv::haveImageWriter(name)) << name;
    }
}

TEST(PictureEncoding, OfAPictureOfMegabytesOrOfPartOfOneIsOpenCvs) {
    const cv::Mat whole = noise({1400, 1100}, CV_8UC3);
    for (const char* name : {".jpg", ".png"}) {
        expectAsOpenCv(name, whole);
        expectAsOpenCv(name, whole(cv::Rect(11, 7, 43, 50)));
    }
}

TEST(PictureEncoding, OfWhatCannotBeEncodedThrowsAsOpenCvDoes) {
    for (const char* name : {".jpg", ".png", ".xyz"}) {
        expectAsOpenCv(name, cv::Mat());
        expectAsOpenCv(name, cv::Mat(1, 70000, CV_8UC1, cv::Scalar(1)));
        expectAsOpenCv(name, cv::Mat(1, 2000000, CV_8UC1, cv::Scalar(1)));
    }
}

TEST(PictureEncoding, OfBitsIsAPngOfOneBitPerPixel) {
    for (const int width : {1, 7, 8, 9, 33}) {
        SCOPED_TRACE(width);
        constexpr std::size_t kStride = 6; // more than a row
        constexpr int kRows = 5;
        Bytes bits(kStride * kRows);
        cv::Mat expected(kRows, width, CV_8UC1);
        cv::RNG random(static_cast<unsigned>(width));
        for (unsigned char& byte : bits) {
            byte = static_cast<unsigned char>(random.uniform(0, 256));
        }
        for (int y = 0; y < kRows; ++y) {
            for (int x = 0; x < width; ++x) {
                const int byte =
                    bits[kStride * static_cast<std::size_t>(y) + static_cast<std::size_t>(x) / 8];
                expected.at<uchar>(y, x) = (byte << (x % 8) & 0x80) != 0 ? 255 : 0;
            }
        }
        const auto file = pngOfBits(bits.data(), kStride, width, kRows);
        ASSERT_TRUE(file);
        EXPECT_EQ((*file)[24], 1); // bits per sample
        EXPECT_EQ((*file)[25], 0); // grey
        const cv::Mat decoded = cv::imdecode(*file, cv::IMREAD_UNCHANGED);
        ASSERT_EQ(decoded.size(), expected.size());
        EXPECT_EQ(cv::norm(decoded, expected, cv::NORM_INF), 0);
    }
}

TEST(PictureEncoding, OfBitsTooWideForAPngIsRefused) {
    const Bytes bits(1);
    EXPECT_FALSE(pngOfBits(bits.data(), 0, 2000000, 1));
}

} // namespace
} // namespace doccam::test
