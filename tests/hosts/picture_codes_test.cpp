// The codes of a picture: also on sheets seen at an angle, which of them are new, and their rows.
#include "codes/code_rows.h"
#include "codes/new_codes.h"
#include "codes/picture_codes.h"
#include "codes/symbology_names.h"
#include "unit/barcode/code_drawing.h"

#include <doccam/codes.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <opencv2/imgproc.hpp>
#include <zint.h>

namespace {

using namespace doccam::host;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr double kSeconds = 30;

// A white sheet on a dark desk under a camera that looks at it from the side.
class TiltedSheet : public testing::Test {
  protected:
    cv::Mat seen(const cv::Mat& code) const {
        cv::Mat sheet(1400, 1000, CV_8UC1, cv::Scalar(240));
        const cv::Size size = code.size();
        code.copyTo(sheet(cv::Rect(centre_ - cv::Point(size.width / 2, size.height / 2), size)));
        cv::Mat picture;
        cv::warpPerspective(sheet, picture, view_, {1600, 1200}, cv::INTER_AREA,
                            cv::BORDER_CONSTANT, cv::Scalar(50));
        cv::GaussianBlur(picture, picture, {}, 0.7);
        return picture;
    }

    // The code's middle in the picture.
    cv::Point2d middle() const {
        std::vector<cv::Point2d> point{centre_};
        cv::perspectiveTransform(point, point, view_);
        return point[0];
    }

  private:
    const cv::Point centre_{500, 350};

    const cv::Mat view_ = cv::getPerspectiveTransform(
        std::vector<cv::Point2f>{{0, 0}, {1000, 0}, {1000, 1400}, {0, 1400}},
        std::vector<cv::Point2f>{{380, 460}, {1220, 460}, {1500, 1150}, {100, 1150}});
};

TEST_F(TiltedSheet, ShowsItsCodesOnceItIsUpright) {
    const cv::Mat picture =
        seen(doccam::test::drawCode({BARCODE_DATAMATRIX, "ON A SHEET 12345", ""}, 4));
    const CodesFound found = codesOnSheets(picture, {}, DOCCAM_SYMBOLOGIES_ALL, kSeconds);
    EXPECT_TRUE(found.complete);
    ASSERT_THAT(found.codes, SizeIs(1));
    const Code& code = found.codes[0];
    EXPECT_EQ(code.text, "ON A SHEET 12345");
    const cv::Point2d centre =
        (code.corners[0] + code.corners[1] + code.corners[2] + code.corners[3]) / 4;
    EXPECT_LT(cv::norm(centre - middle()), 8);
}

TEST_F(TiltedSheet, ShowsNoCodeTwice) {
    for (const int pixels : {3, 4}) {
        const cv::Mat picture =
            seen(doccam::test::drawCode(doccam::test::code128("ON A SHEET 12345"), pixels));
        const CodesFound first = codesIn(picture, DOCCAM_SYMBOLOGIES_ALL, kSeconds);
        ASSERT_THAT(first.codes, testing::Not(IsEmpty()));
        EXPECT_THAT(codesOnSheets(picture, first.codes, DOCCAM_SYMBOLOGIES_ALL, kSeconds).codes,
                    IsEmpty());
    }
}

Code codeOf(const std::string& text) {
    return {DOCCAM_QR, text, text, "", {}};
}

std::vector<std::string> textsOf(const std::vector<Code>& codes) {
    std::vector<std::string> texts;
    for (const Code& code : codes) {
        texts.push_back(code.text);
    }
    return texts;
}

class NewCodesTest : public testing::Test {
  protected:
    // The texts of the new ones in a frame that comes so long after the last.
    std::vector<std::string> after(std::chrono::milliseconds time, const std::vector<Code>& codes) {
        return textsOf(news_.among(codes, now_ += time));
    }

    static constexpr std::chrono::milliseconds kSoon{40};

  private:
    NewCodes news_;
    NewCodes::Clock::time_point now_;
};

TEST_F(NewCodesTest, AreThoseThatWereNotThere) {
    EXPECT_THAT(after(kSoon, {codeOf("a")}), ElementsAre("a"));
    EXPECT_THAT(after(kSoon, {codeOf("a"), codeOf("b"), codeOf("b")}), ElementsAre("b"));
}

TEST_F(NewCodesTest, AreNotThoseThatWereMissedForAMoment) {
    after(kSoon, {codeOf("a")});
    for (int frame = 0; frame < 50; ++frame) {
        EXPECT_THAT(after(kSoon, {}), IsEmpty());
    }
    EXPECT_THAT(after(kSoon, {codeOf("a")}), IsEmpty());
    EXPECT_THAT(after(std::chrono::seconds(10), {}), IsEmpty()); // a single slow frame
    EXPECT_THAT(after(kSoon, {codeOf("a")}), IsEmpty());
}

TEST_F(NewCodesTest, AreThoseThatComeBack) {
    after(kSoon, {codeOf("a")});
    for (int frame = 0; frame < 6; ++frame) {
        after(std::chrono::seconds(1), {});
    }
    EXPECT_THAT(after(kSoon, {codeOf("a")}), ElementsAre("a"));
}

TEST(SymbologyNames, MeanTheirSets) {
    EXPECT_EQ(symbologiesIn("any"), DOCCAM_SYMBOLOGIES_ALL);
    EXPECT_EQ(symbologiesIn("bar"), DOCCAM_SYMBOLOGIES_LINEAR);
    EXPECT_EQ(symbologiesIn("qr,matrix"), DOCCAM_SYMBOLOGIES_MATRIX);
    EXPECT_EQ(symbologiesIn("EAN13,Code 128"), unsigned{DOCCAM_EAN_13} | DOCCAM_CODE_128);
    for (const char* wrong : {"", "qr,", ",qr", "text", "qr;bar", "qr bar"}) {
        EXPECT_FALSE(symbologiesIn(wrong)) << wrong;
    }
    unsigned all = 0;
    for (const std::string& name : symbologyNames()) {
        all |= symbologiesIn(name).value_or(0);
    }
    EXPECT_EQ(all, DOCCAM_SYMBOLOGIES_ALL);
}

TEST(SymbologyNames, ArePartsOfTheirKinds) {
    for (unsigned bit = 1; (bit & DOCCAM_SYMBOLOGIES_ALL) != 0; bit <<= 1U) {
        const auto symbology = static_cast<int>(bit);
        EXPECT_EQ(symbologiesIn(nameOf(symbology)), bit);
        EXPECT_NE(symbologiesIn(kindOf(symbology)).value_or(0) & bit, 0U);
    }
}

// The examples of RFC 4648.
TEST(Base64, IsPadded) {
    EXPECT_EQ(base64Of(""), "");
    EXPECT_EQ(base64Of("f"), "Zg==");
    EXPECT_EQ(base64Of("fo"), "Zm8=");
    EXPECT_EQ(base64Of("foo"), "Zm9v");
    EXPECT_EQ(base64Of("foob"), "Zm9vYg==");
    EXPECT_EQ(base64Of("\xff\xfe\xfd"), "//79");
}

} // namespace
