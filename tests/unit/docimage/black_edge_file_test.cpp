// Whitening the dark margins of image files.
#include "cleaning_pictures.h"
#include "docimage/clean/black_edge.h"
#include "support/printed_text.h"
#include "support/refused_writing.h"
#include "support/same_picture.h"
#include "support/scratch_folder.h"

#include <doccam/doccam.hpp>

#include <gtest/gtest.h>
#include <opencv2/core.hpp>
#include <opencv2/imgcodecs.hpp>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;
using namespace doccam::test;

using Bytes = std::vector<uchar>;

Bytes bytesOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

void writeBytes(const std::string& path, const Bytes& bytes) {
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
}

Bytes encoded(const std::string& extension, const cv::Mat& picture) {
    Bytes bytes;
    cv::imencode(extension, picture, bytes);
    return bytes;
}

// The same JPEG with an EXIF orientation that asks for a quarter turn clockwise.
Bytes withOrientationSix(const Bytes& jpeg) {
    static constexpr uchar kSegment[] = {
        0xFF, 0xE1, 0,   34,                          // application segment, its length
        'E',  'x',  'i', 'f', 0, 0,                   // of this kind
        'M',  'M',  0,   42,  0, 0, 0, 8,             // big-endian, first list at 8
        0,    1,                                      // of one entry:
        0x01, 0x12, 0,   3,   0, 0, 0, 1, 0, 6, 0, 0, // orientation, one short, 6
        0,    0,    0,   0,                           // no further list
    };
    Bytes tagged = jpeg;
    tagged.insert(tagged.begin() + 2, std::begin(kSegment), std::end(kSegment));
    return tagged;
}

// Dim paper with a bright area large enough to pass for a sheet.
cv::Mat dimPage() {
    cv::Mat page = sheetOnDesk(kSize, kSheet, cv::Scalar::all(70));
    page(cv::Rect(40, 35, 215, 145)).setTo(cv::Scalar::all(240));
    return page;
}

using Rewrite = void (*)(char*);
using Clean = void (*)(cv::Mat);

struct Variant {
    const char* name;
    Rewrite rewrite;
    Clean clean;
};

class BlackEdgeFile : public testing::TestWithParam<Variant> {
  protected:
    ~BlackEdgeFile() override { EXPECT_EQ(entries(), expectedEntries_); }

    static void rewrite(std::string path) { GetParam().rewrite(path.data()); }

    // What the variant makes of the picture in the file.
    static cv::Mat cleaned(const cv::Mat& picture) {
        cv::Mat result = picture.clone();
        GetParam().clean(result);
        return result;
    }

    std::string make(const std::string& name, const Bytes& bytes) {
        writeBytes(scratch_.file(name), bytes);
        ++expectedEntries_;
        return scratch_.file(name);
    }

    // A rewrite leaves nothing beside its file.
    std::ptrdiff_t entries() const {
        return std::distance(fs::directory_iterator(scratch_.path()), {});
    }

    ScratchFolder scratch_;
    std::ptrdiff_t expectedEntries_ = 0;
};

TEST_P(BlackEdgeFile, IsReplacedByTheCleanedPicture) {
    for (const char* const extension : {".png", ".bmp", ".tif"}) {
        const std::string file = make(std::string("a") + extension, encoded(extension, dimPage()));
        rewrite(file);
        EXPECT_TRUE(isSamePicture(cv::imread(file, cv::IMREAD_UNCHANGED), cleaned(dimPage())))
            << extension;
    }
}

TEST_P(BlackEdgeFile, IsEncodedWithOpenCvsDefaults) {
    const Bytes jpeg = encoded(".jpg", dimPage());
    const std::string file = make("a.jpg", jpeg);
    rewrite(file);
    EXPECT_EQ(bytesOf(file), encoded(".jpg", cleaned(cv::imdecode(jpeg, cv::IMREAD_COLOR))));
}

TEST_P(BlackEdgeFile, BecomesColourWhenItWasGrey) {
    cv::Mat grey;
    cv::extractChannel(dimPage(), grey, 0);
    const std::string file = make("a.png", encoded(".png", grey));
    rewrite(file);
    EXPECT_TRUE(isSamePicture(cv::imread(file, cv::IMREAD_UNCHANGED), cleaned(dimPage())));
}

TEST_P(BlackEdgeFile, RaisesOpenCvsErrorWhenItIsAbsent) {
    EXPECT_THROW(rewrite(scratch_.file("missing.png")), cv::Exception);
    EXPECT_THROW(GetParam().rewrite(nullptr), cv::Exception);
}

TEST_P(BlackEdgeFile, RaisesOpenCvsErrorAndStaysWhenItIsNoPicture) {
    const Bytes text{'n', 'o', 'p', 'e'};
    const std::string file = make("a.png", text);
    EXPECT_THROW(rewrite(file), cv::Exception);
    EXPECT_EQ(bytesOf(file), text);
}

TEST_P(BlackEdgeFile, RaisesOpenCvsErrorAndStaysWithAnUnknownExtension) {
    const Bytes png = encoded(".png", dimPage());
    const std::string file = make("a.page", png);
    EXPECT_THROW(rewrite(file), cv::Exception);
    EXPECT_EQ(bytesOf(file), png);
}

TEST_P(BlackEdgeFile, SilentlyStaysWhenItMayNotBeWritten) {
    const Bytes png = encoded(".png", dimPage());
    const std::string file = make("a.png", png);
    fs::permissions(file, fs::perms(0444));
    fs::permissions(scratch_.path(), fs::perms(0555));
    PrintedText output;
    PrintedText errors(PrintedText::Stream::kError);
    {
        const OrdinaryUser user;
        rewrite(file);
    }
    EXPECT_EQ(errors.take(), "");
    EXPECT_EQ(output.take(), "");
    EXPECT_EQ(bytesOf(file), png);
    fs::permissions(scratch_.path(), fs::perms(0755));
}

TEST_P(BlackEdgeFile, SilentlyStaysWhenTheDiskIsFull) {
    const Bytes bmp = encoded(".bmp", dimPage());
    const std::string file = make("a.bmp", bmp);
    PrintedText output;
    PrintedText errors(PrintedText::Stream::kError);
    {
        const FullDisk full(4096);
        rewrite(file);
    }
    EXPECT_EQ(errors.take(), "");
    EXPECT_EQ(output.take(), "");
    EXPECT_EQ(bytesOf(file), bmp);
}

INSTANTIATE_TEST_SUITE_P(EachVariant, BlackEdgeFile,
                         testing::Values(Variant{"Ex", FN_DeleteBlackEdgeEx, doccam::whitenMargins},
                                         Variant{"Ex2", FN_DeleteBlackEdgeEx2,
                                                 doccam::whitenMarginsByBrightness}),
                         [](const auto& variant) { return variant.param.name; });

class BlackEdgeFiles : public testing::Test {
  protected:
    cv::Mat rewritten(Rewrite rewrite, const std::string& name, const Bytes& bytes) {
        std::string file = scratch_.file(name);
        writeBytes(file, bytes);
        rewrite(file.data());
        return cv::imread(file, cv::IMREAD_COLOR | cv::IMREAD_IGNORE_ORIENTATION);
    }

    ScratchFolder scratch_;
};

TEST_F(BlackEdgeFiles, DifferOnADimPageThatOnlyTheFirstVariantBrightens) {
    const Bytes png = encoded(".png", dimPage());
    const cv::Mat lifted = rewritten(FN_DeleteBlackEdgeEx, "a.png", png);
    const cv::Mat plain = rewritten(FN_DeleteBlackEdgeEx2, "b.png", png);
    const cv::Point dim(30, 100);
    const cv::Point bright(150, 100);
    EXPECT_EQ(lifted.at<cv::Vec3b>(dim), cv::Vec3b::all(70));
    EXPECT_EQ(plain.at<cv::Vec3b>(dim), cv::Vec3b::all(255));
    EXPECT_EQ(lifted.at<cv::Vec3b>(bright), cv::Vec3b::all(240));
    EXPECT_EQ(plain.at<cv::Vec3b>(bright), cv::Vec3b::all(240));
}

TEST_F(BlackEdgeFiles, AreTurnedByTheirOrientationTagInTheFirstVariantOnly) {
    const Bytes plain = encoded(".jpg", dimPage());
    const Bytes tagged = withOrientationSix(plain);
    ASSERT_EQ(cv::imdecode(tagged, cv::IMREAD_COLOR).size(), cv::Size(kSize.height, kSize.width));

    EXPECT_TRUE(isSamePicture(rewritten(FN_DeleteBlackEdgeEx2, "tagged.jpg", tagged),
                              rewritten(FN_DeleteBlackEdgeEx2, "plain.jpg", plain)));
    cv::Mat turned;
    cv::rotate(cv::imdecode(plain, cv::IMREAD_COLOR), turned, cv::ROTATE_90_CLOCKWISE);
    FN_DeleteBlackEdge(turned);
    EXPECT_TRUE(isSamePicture(rewritten(FN_DeleteBlackEdgeEx, "turned.jpg", tagged),
                              cv::imdecode(encoded(".jpg", turned), cv::IMREAD_COLOR)));
}

} // namespace
