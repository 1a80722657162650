// Pictures read here, pixel for pixel equal to what OpenCV reads, whatever is wrong with the file.
#include "base/pictures/jpeg_file_reader.h"
#include "base/pictures/picture_file.h"
#include "picture_corpus.h"
#include "support/same_picture.h"
#include "support/scratch_folder.h"

#include <gtest/gtest.h>
#include <opencv2/imgcodecs.hpp>

#include <fstream>
#include <functional>
#include <tuple>

namespace doccam::test {
namespace {

constexpr int kFlags[] = {
    cv::IMREAD_UNCHANGED,
    cv::IMREAD_GRAYSCALE,
    cv::IMREAD_COLOR,
    cv::IMREAD_ANYDEPTH,
    cv::IMREAD_ANYCOLOR,
    cv::IMREAD_ANYCOLOR | cv::IMREAD_ANYDEPTH,
    cv::IMREAD_COLOR | cv::IMREAD_IGNORE_ORIENTATION,
    cv::IMREAD_COLOR | cv::IMREAD_ANYDEPTH,
    cv::IMREAD_REDUCED_GRAYSCALE_2,
    cv::IMREAD_REDUCED_COLOR_2,
    cv::IMREAD_REDUCED_COLOR_4,
    cv::IMREAD_REDUCED_GRAYSCALE_8,
    cv::IMREAD_REDUCED_GRAYSCALE_8 | cv::IMREAD_IGNORE_ORIENTATION,
    cv::IMREAD_REDUCED_COLOR_8,
};

struct Outcome {
    cv::Mat picture;
    std::string thrown;
    std::string said; // on standard error
};

Outcome outcomeOf(const std::function<cv::Mat()>& read) {
    Outcome outcome;
    testing::internal::CaptureStderr();
    try {
        outcome.picture = read();
    } catch (const cv::Exception& error) {
        outcome.thrown = error.what();
    }
    outcome.said = testing::internal::GetCapturedStderr();
    return outcome;
}

class PictureReading : public testing::Test {
  protected:
    // Compares all flags, or a few.
    void expectAsOpenCv(const PictureSample& sample, const std::string& name = "picture") {
        const std::string path = folder_.file(name);
        std::ofstream(path, std::ios::binary) << sample.bytes;
        for (const int flags : kFlags) {
            SCOPED_TRACE(sample.name + ", flags " + std::to_string(flags));
            const Outcome ours = outcomeOf([&] { return readPictureFile(path, flags); });
            const Outcome theirs = outcomeOf([&] { return cv::imread(path, flags); });
            EXPECT_EQ(ours.picture.type(), theirs.picture.type());
            EXPECT_TRUE(isSamePicture(ours.picture, theirs.picture));
            EXPECT_EQ(ours.thrown, theirs.thrown);
            EXPECT_EQ(ours.said, theirs.said);
            readable_ += theirs.picture.empty() ? 0 : 1;
            unreadable_ += theirs.picture.empty() ? 1 : 0;
        }
    }

    void expectDamagedAsOpenCv(const std::vector<PictureSample>& samples, int ways) {
        for (const PictureSample& sample : samples) {
            for (const PictureSample& changed : damaged(sample, ways)) {
                expectAsOpenCv(changed);
                if (changed.bytes.starts_with("\x89PNG")) {
                    expectAsOpenCv(withRightSums(changed));
                }
            }
        }
        EXPECT_GT(readable_, 100);
        EXPECT_GT(unreadable_, 100);
    }

    ScratchFolder folder_;
    int readable_ = 0;
    int unreadable_ = 0;
};

std::vector<PictureSample> everyTenth(std::vector<PictureSample> samples) {
    std::vector<PictureSample> some;
    for (std::size_t i = 0; i < samples.size(); i += 10) {
        some.push_back(samples[i]);
    }
    return some;
}

TEST_F(PictureReading, OfAJpegIsOpenCvs) {
    for (const PictureSample& sample : jpegSamples()) {
        expectAsOpenCv(sample);
    }
    EXPECT_GT(readable_, unreadable_);
}

TEST_F(PictureReading, OfAPngIsOpenCvs) {
    for (const PictureSample& sample : pngSamples()) {
        expectAsOpenCv(sample);
    }
    EXPECT_EQ(unreadable_, 0);
}

TEST_F(PictureReading, OfADamagedJpegIsOpenCvs) {
    expectDamagedAsOpenCv(everyTenth(jpegSamples()), 15);
}

TEST_F(PictureReading, OfADamagedPngIsOpenCvs) {
    expectDamagedAsOpenCv(everyTenth(pngSamples()), 25);
}

TEST_F(PictureReading, GoesByTheContentsAndNotByTheName) {
    for (const char* name : {"page.png", "page.jpg", "page.tif", "page.bmp", "page.txt", "page"}) {
        expectAsOpenCv(jpegSamples().front(), name);
        expectAsOpenCv(pngSamples().front(), name);
    }
}

TEST_F(PictureReading, OfOtherTypesIsOpenCvs) {
    cv::Mat picture(64, 80, CV_8UC3);
    cv::randu(picture, 0, 256);
    for (const char* type : {"bmp", "tiff", "webp", "ppm", "jp2", "hdr", "ras"}) {
        std::vector<unsigned char> bytes;
        cv::imencode(std::string(".") + type, picture, bytes);
        expectAsOpenCv({type, std::string(bytes.begin(), bytes.end())});
    }
    for (const char* text : {"", "G", "GIF89a", "%PDF-1.4", "\xFF\xD8", "\x89PNG\r\n"}) {
        expectAsOpenCv({text, text});
    }
}

// As a camera's frame is checked: damage counts as in OpenCV's decoding of memory.
TEST_F(PictureReading, OfBytesFindsTheSameDamageAsOpenCv) {
    int readable = 0;
    int unreadable = 0;
    testing::internal::CaptureStderr();
    for (const PictureSample& sample : everyTenth(jpegSamples())) {
        for (PictureSample& changed : damaged(sample, 60)) {
            changed.bytes += "\xFF\xD9";
            const std::vector<unsigned char> bytes(changed.bytes.begin(), changed.bytes.end());
            bool expected = false;
            try {
                expected = !cv::imdecode(bytes, cv::IMREAD_REDUCED_GRAYSCALE_8).empty();
            } catch (const cv::Exception&) {
            }
            JpegFileReader reader(bytes);
            PictureReader::Header header;
            cv::Mat picture;
            bool found = reader.readHeader(8, header);
            if (found) {
                picture.create(header.size, CV_8UC1);
                found = reader.readPixels(picture);
            }
            EXPECT_EQ(found, expected) << changed.name;
            ++(expected ? readable : unreadable);
        }
    }
    testing::internal::GetCapturedStderr();
    EXPECT_GT(readable, 100);
    EXPECT_GT(unreadable, 100);
}

// A frame of a camera's stream has no tables; libjpeg supplies them.
TEST_F(PictureReading, OfAJpegWithoutTablesIsOpenCvs) {
    PictureSample sample = jpegSamples().front();
    for (std::size_t at = 0; (at = sample.bytes.find("\xFF\xC4", at)) != std::string::npos;) {
        const auto byte = [&](std::size_t i) {
            return static_cast<std::size_t>(static_cast<unsigned char>(sample.bytes[at + i]));
        };
        sample.bytes.erase(at, 2 + byte(2) * 256 + byte(3));
    }
    expectAsOpenCv(sample);
    EXPECT_EQ(unreadable_, 0);
}

TEST_F(PictureReading, OfAHugePictureThrowsAsOpenCvDoes) {
    PictureSample jpeg = jpegSamples().front();
    const std::size_t frame = jpeg.bytes.find("\xFF\xC0");
    jpeg.bytes.replace(frame + 5, 4, "\xFF\xDC\xFF\xDC"); // 65500 x 65500
    const std::string path = folder_.file("huge.jpg");
    std::ofstream(path, std::ios::binary) << jpeg.bytes;
    const Outcome ours = outcomeOf([&] { return readPictureFile(path, cv::IMREAD_COLOR); });
    const Outcome theirs = outcomeOf([&] { return cv::imread(path, cv::IMREAD_COLOR); });
    EXPECT_NE(theirs.thrown, "");
    EXPECT_EQ(ours.thrown, theirs.thrown);
}

} // namespace
} // namespace doccam::test
