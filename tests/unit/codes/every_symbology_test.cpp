// Codes of every symbology, upright and turned, with their texts, bytes and add-ons.
#include "read_picture.h"
#include "unit/barcode/code_pictures.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <opencv2/imgproc.hpp>
#include <zint.h>

namespace doccam::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

struct Sample {
    const char* name;
    Code code;
    const char* read;
};

// For the names of test cases.
void PrintTo(const Sample& sample, std::ostream* out) {
    *out << sample.name;
}

const Sample kSamples[] = {
    {"Ean13", {BARCODE_EANX, "978020137962", ""}, "EAN-13: 9780201379624"},
    {"Ean8", {BARCODE_EANX, "1234567", ""}, "EAN-8: 12345670"},
    {"UpcA", {BARCODE_UPCA, "01234567890", ""}, "UPC-A: 012345678905"},
    {"Ean13ThatIsAUpcA", {BARCODE_EANX, "001234567890", ""}, "UPC-A: 012345678905"},
    {"UpcE", {BARCODE_UPCE, "0123456", ""}, "UPC-E: 01234565"},
    {"Ean13And5", {BARCODE_EANX, "978020137962+51234", ""}, "EAN-13: 9780201379624 + 51234"},
    {"Ean13And2", {BARCODE_EANX, "977123456700+05", ""}, "EAN-13: 9771234567003 + 05"},
    {"UpcAAnd2", {BARCODE_UPCA, "01234567890+12", ""}, "UPC-A: 012345678905 + 12"},
    {"DataBar", {BARCODE_DBAR_OMN, "0950110153000", ""}, "DataBar: 0109501101530003"},
    {"DataBarExpanded",
     {BARCODE_DBAR_EXP, "[01]90012345678908[3103]001750", "", -1, 0, GS1_MODE},
     "DataBar Expanded: 01900123456789083103001750"},
    {"Code128", {BARCODE_CODE128, "Doc 128", ""}, "Code 128: Doc 128"},
    {"Gs1OnCode128",
     {BARCODE_GS1_128, "[10]ABC123[17]140704", "", -1, 0, GS1_MODE},
     "Code 128: 10ABC123\x1d"
     "17140704"},
    {"Code93", {BARCODE_CODE93, "DOC 93", ""}, "Code 93: DOC 93"},
    {"Code39", {BARCODE_CODE39, "DOC 39", ""}, "Code 39: DOC 39"},
    {"Codabar", {BARCODE_CODABAR, "A123456B", ""}, "Codabar: A123456B"},
    {"Itf", {BARCODE_C25INTER, "12345678", ""}, "ITF: 12345678"},
    {"Qr", {BARCODE_QRCODE, "page 1", ""}, "QR Code: page 1"},
    {"Gs1OnQr",
     {BARCODE_QRCODE, "[10]ABC123[17]140704", "", -1, 0, GS1_MODE},
     "QR Code: 10ABC123\x1d"
     "17140704"},
    {"MicroQr", {BARCODE_MICROQR, "12345", ""}, "Micro QR Code: 12345"},
    {"DataMatrix", {BARCODE_DATAMATRIX, "Matrix 1", ""}, "Data Matrix: Matrix 1"},
    {"Gs1OnDataMatrix",
     {BARCODE_DATAMATRIX, "[10]ABC123[17]140704", "", -1, 0, GS1_MODE},
     "Data Matrix: 10ABC123\x1d"
     "17140704"},
    {"Aztec", {BARCODE_AZTEC, "Aztec code", ""}, "Aztec: Aztec code"},
    {"Pdf417", {BARCODE_PDF417, "PDF 417", ""}, "PDF417: PDF 417"},
    {"MaxiCode", {BARCODE_MAXICODE, "Maxi", ""}, "MaxiCode: Maxi"},
};

class EverySymbology : public testing::TestWithParam<Sample> {};

std::string nameOf(const testing::TestParamInfo<Sample>& sample) {
    return sample.param.name;
}

cv::Mat seen(const Code& code, double angle) {
    View view;
    view.angle = angle;
    view.module = 3;
    cv::Mat blueFirst;
    cv::cvtColor(photograph({code}, view), blueFirst, cv::COLOR_RGB2BGR);
    return blueFirst;
}

TEST_P(EverySymbology, IsRead) {
    EXPECT_THAT(readTexts(seen(GetParam().code, 0)), ElementsAre(GetParam().read));
}

TEST_P(EverySymbology, IsReadUpsideDown) {
    if (GetParam().code.symbology == BARCODE_MAXICODE) {
        GTEST_SKIP() << "zxing reads upright MaxiCodes alone";
    }
    EXPECT_THAT(readTexts(seen(GetParam().code, 180)), ElementsAre(GetParam().read));
}

// No reader alone reads all of them.
TEST_P(EverySymbology, IsReadAtAnyAngle) {
    if (GetParam().code.symbology == BARCODE_MAXICODE) {
        GTEST_SKIP() << "zxing reads upright MaxiCodes alone";
    }
    for (const double angle : {-67.0, -33.0, 24.0, 45.0, 81.0}) {
        EXPECT_THAT(readTexts(seen(GetParam().code, angle)), ElementsAre(GetParam().read)) << angle;
    }
}

INSTANTIATE_TEST_SUITE_P(Drawn, EverySymbology, testing::ValuesIn(kSamples), nameOf);

TEST(TextsOfCodes, AreUtf8BesideTheBytesOfShiftJis) {
    const Code japanese{BARCODE_QRCODE, "\u65e5\u672c\u8a9e\u30c6\u30b9\u30c8", ""};
    Code unicode = japanese;
    unicode.inputMode = UNICODE_MODE;
    const PictureRead read = readPicture(drawCode(unicode, 4));
    ASSERT_EQ(read.codes.size(), 1U);
    EXPECT_EQ(read.codes[0].text, japanese.payload);
    EXPECT_EQ(read.codes[0].bytes, "\x93\xfa\x96{\x8c\xea\x83"
                                   "e\x83X\x83g");
}

TEST(TextsOfCodes, KeepBinaryBytes) {
    const std::string bytes("\x00\x01\xff\xfe\x80"
                            "abc\xe9",
                            9);
    const PictureRead read = readPicture(drawCode(qrCode(bytes), 4));
    ASSERT_EQ(read.codes.size(), 1U);
    EXPECT_EQ(read.codes[0].bytes, bytes);
    EXPECT_EQ(read.codes[0].text.substr(0, 2), bytes.substr(0, 2));
}

TEST(Places, FollowTheCodesOwnTop) {
    for (const Code& code : {code128("Doc 128"), qrCode("page 1")}) {
        const PictureRead read = readPicture(seen(code, 90)); // counter-clockwise
        ASSERT_EQ(read.codes.size(), 1U);
        const auto& corners = read.codes[0].corners;
        EXPECT_GT(corners[0].y, corners[1].y + 20);
        EXPECT_LT(corners[0].x, corners[3].x - 20);
    }
}

cv::Mat sideBySide(const cv::Mat& one, const cv::Mat& other) {
    cv::Mat both(std::max(one.rows, other.rows), one.cols + other.cols + 40, CV_8UC1,
                 cv::Scalar(255));
    one.copyTo(both(cv::Rect({0, 0}, one.size())));
    other.copyTo(both(cv::Rect({one.cols + 40, 0}, other.size())));
    return both;
}

// zxing ends the process when it is left to compare them.
TEST(SeveralCodes, MayBeEqual) {
    const cv::Mat bars = drawCode(code128("SAME"), 2);
    EXPECT_THAT(readTexts(sideBySide(bars, bars)), ElementsAre("Code 128: SAME", "Code 128: SAME"));
    const cv::Mat matrix = drawCode(qrCode("same"), 3);
    EXPECT_THAT(readTexts(sideBySide(matrix, matrix)),
                ElementsAre("QR Code: same", "QR Code: same"));
    const cv::Mat stacked = drawCode(
        {BARCODE_DBAR_EXPSTK, "[01]90012345678908[3103]001750[10]AB", "", -1, 0, GS1_MODE}, 2);
    readTexts(sideBySide(stacked, stacked));
}

TEST(SeveralCodes, OfTheSameSymbologyAreAllRead) {
    for (const int symbology : {BARCODE_DATAMATRIX, BARCODE_AZTEC, BARCODE_PDF417}) {
        const cv::Mat one = drawCode({symbology, "first code", ""}, 3);
        const cv::Mat other = drawCode({symbology, "second code", ""}, 3);
        EXPECT_EQ(readTexts(sideBySide(one, other)).size(), 2U) << symbology;
    }
}

// zbar makes a composite of them.
TEST(Addons, AreNotTakenFromElsewhere) {
    const cv::Mat with = drawCode({BARCODE_EANX, "978020137962+51234", ""}, 2);
    const cv::Mat without = drawCode({BARCODE_EANX, "400638133393", ""}, 2);
    EXPECT_THAT(readTexts(sideBySide(with, without)),
                ElementsAre("EAN-13: 4006381333931", "EAN-13: 9780201379624 + 51234"));
}

TEST(Addons, AreNotReadAlone) {
    const cv::Mat both = drawCode({BARCODE_EANX, "978020137962+51234", ""}, 3);
    const int right = both.cols * 2 / 3;
    EXPECT_THAT(readTexts(both.colRange(right, both.cols).clone()), IsEmpty());
}

// Nothing in these checks that all of it was read.
TEST(PartsOfCodes, AreNotRead) {
    for (const Code& code :
         {Code{BARCODE_C25INTER, "12345678901234", ""}, Code{BARCODE_CODE39, "DOCUMENT 39", ""}}) {
        const cv::Mat whole = drawCode(code, 3);
        for (const double part : {0.5, 0.7, 0.85}) {
            const auto columns = static_cast<int>(whole.cols * part);
            EXPECT_THAT(readTexts(whole.colRange(0, columns).clone()), IsEmpty());
            EXPECT_THAT(readTexts(whole.colRange(whole.cols - columns, whole.cols).clone()),
                        IsEmpty());
        }
    }
}

TEST(HardCodes, AreReadAsTextOnAPage) {
    View view;
    view.textured = true;
    view.angle = 30;
    cv::Mat page;
    cv::cvtColor(photograph({code128("ON A PAGE")}, view), page, cv::COLOR_RGB2BGR);
    const PictureRead read = readPicture(page);
    EXPECT_TRUE(read.complete);
    EXPECT_THAT(readTexts(page), ElementsAre("Code 128: ON A PAGE"));
}

TEST(HardCodes, AreReadWhiteOnBlack) {
    cv::Mat inverted;
    cv::bitwise_not(drawCode({BARCODE_DATAMATRIX, "white", ""}, 4), inverted);
    EXPECT_THAT(readTexts(inverted), ElementsAre("Data Matrix: white"));
}

TEST(HardCodes, AreReadInPicturesOfManyPixels) {
    cv::Mat large(6000, 8000, CV_8UC1, cv::Scalar(250));
    const cv::Mat one = drawCode(qrCode("far left"), 3);
    const cv::Mat other = drawCode(code128("FAR RIGHT"), 3);
    one.copyTo(large(cv::Rect({100, 100}, one.size())));
    other.copyTo(large(cv::Rect({7000, 5500}, other.size())));
    EXPECT_THAT(readTexts(large, DOCCAM_SYMBOLOGIES_ALL, 60),
                UnorderedElementsAre("QR Code: far left", "Code 128: FAR RIGHT"));
}

// What looks like a code costs more passes, for which there may be no time.
TEST(TimeForCodes, IsKept) {
    cv::Mat noise(1200, 1600, CV_8UC1);
    cv::RNG random(1);
    random.fill(noise, cv::RNG::UNIFORM, 0, 256);
    cv::Mat blocks;
    cv::resize(noise, blocks, cv::Size(), 3, 3, cv::INTER_NEAREST);
    EXPECT_FALSE(readPicture(blocks, DOCCAM_SYMBOLOGIES_MATRIX, 0).complete);
    EXPECT_TRUE(readPicture(cv::Mat(600, 800, CV_8UC1, cv::Scalar(255)), DOCCAM_SYMBOLOGIES_ALL, 0)
                    .complete);
}

} // namespace
} // namespace doccam::test
