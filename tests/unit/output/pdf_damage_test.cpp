// Damaged and unsuitable pictures as PDF pages.
#include "pdf_file.h"
#include "png_maker.h"
#include "support/peak_memory.h"
#include "support/printed_text.h"
#include "support/scratch_folder.h"

#include <doccam/doccam.hpp>

#include <gmock/gmock.h>
#include <opencv2/core.hpp>

#include <cstddef>
#include <filesystem>
#include <string>

namespace {

namespace fs = std::filesystem;
using namespace doccam::test;
using testing::HasSubstr;
using testing::MatchesRegex;

const std::string kBadPng = "ERROR: error_no=103B, detail_no=0\n";
const std::string kBadJpeg = "ERROR: error_no=1031, detail_no=0\n";
const std::string kOneError = "ERROR: error_no=10[0-9A-F]{2}, detail_no=0\n";
const std::string kBadSize = "ERROR: error_no=1054, detail_no=0\n";

class PdfDamage : public testing::Test {
  protected:
    // What a document prints that holds a sound page, the given file and another sound page. It
    // must not be saved.
    std::string printedFor(const std::string& name, const std::string& content) {
        writeText(scratch_.file(name), content);
        return printedFor(scratch_.file(name));
    }

    std::string printedFor(const std::string& path) {
        writeText(scratch_.file("sound.png"), makeRgbPng(20, 10));
        const std::string pdf = scratch_.file("out.pdf");
        PrintedText printed;
        pdf_start(pdf.c_str());
        pdf_addPage(scratch_.file("sound.png").c_str());
        EXPECT_EQ(pdf_addPage(path.c_str()), 0);
        pdf_addPage(scratch_.file("sound.png").c_str());
        pdf_end();
        EXPECT_FALSE(fs::remove(pdf)) << path;
        return printed.take();
    }

    std::string jpeg(int width, int height) {
        std::string path = scratch_.file("made.jpg");
        cv::Mat picture(height, width, CV_8UC3);
        cv::RNG random(1);
        random.fill(picture, cv::RNG::UNIFORM, 0, 256);
        SaveImage(path.data(), picture);
        return readText(path);
    }

    ScratchFolder scratch_;
};

TEST_F(PdfDamage, IsNoticedInATruncatedPngOfAnyLength) {
    const std::string png = makeRgbPng(40, 30);
    for (std::size_t length = 0; length < png.size(); ++length) {
        ASSERT_EQ(printedFor("a.png", png.substr(0, length)), kBadPng) << length;
    }
}

TEST_F(PdfDamage, IsNoticedInATruncatedInterlacedPng) {
    const std::string png =
        makePng(9, {.colour = PNG_COLOR_TYPE_GRAY, .interlace = PNG_INTERLACE_ADAM7},
                std::vector<std::string>(9, "abcdefghi"));
    for (std::size_t length = 0; length < png.size(); ++length) {
        ASSERT_EQ(printedFor("a.png", png.substr(0, length)), kBadPng) << length;
    }
}

TEST_F(PdfDamage, IsNoticedInAPngWithAWrongByteInItsData) {
    std::string png = makeRgbPng(40, 30);
    const std::size_t data = png.find("IDAT") + 8;
    png[data] = static_cast<char>(png[data] ^ 0x55);
    EXPECT_EQ(printedFor("a.png", png), kBadPng);
}

TEST_F(PdfDamage, NeverEndsTheProcessOverAWrongByteInAPng) {
    const std::string png =
        makePng(9, {.colour = PNG_COLOR_TYPE_PALETTE, .palette = {{1, 2, 3}}, .opacities = {7}},
                std::vector<std::string>(9, std::string(9, '\0')));
    for (std::size_t at = 0; at < png.size(); ++at) {
        std::string wrong = png;
        wrong[at] = static_cast<char>(wrong[at] ^ 0x21);
        writeText(scratch_.file("a.png"), wrong);
        const PrintedText printed;
        pdf_start(scratch_.file("out.pdf").c_str());
        EXPECT_EQ(pdf_addPage(scratch_.file("a.png").c_str()), 0) << at;
        pdf_end();
    }
}

TEST_F(PdfDamage, IsNoticedInAJpegWithoutAWholeHeader) {
    const std::string file = jpeg(40, 30);
    const std::size_t header = file.find("\xff\xc0") + 10; // through the number of components
    for (std::size_t length = 0; length < header; ++length) {
        ASSERT_THAT(printedFor("a.jpg", file.substr(0, length)), MatchesRegex(kOneError)) << length;
    }
}

TEST_F(PdfDamage, IsNotSeenInAJpegsPixels) {
    const std::string file = jpeg(400, 300);
    const std::size_t middle = file.size() / 2;
    const std::string early = file.substr(0, middle) + "\xff\xd9";
    for (const std::string& content :
         {file.substr(0, file.size() - 2), file.substr(0, file.size() * 9 / 10), early,
          early + file.substr(middle), file.substr(0, middle) + std::string(200, '\xff')}) {
        writeText(scratch_.file("a.jpg"), content);
        PrintedText printed;
        pdf_start(scratch_.file("out.pdf").c_str());
        pdf_addPage(scratch_.file("a.jpg").c_str());
        pdf_end();
        EXPECT_EQ(printed.take(), "") << content.size();
        EXPECT_THAT(outputOf("pdfinfo '" + scratch_.file("out.pdf") + "'"),
                    HasSubstr("400 x 300 pts"));
        fs::remove(scratch_.file("out.pdf"));
    }
}

TEST_F(PdfDamage, IsNoticedInFilesOfAnotherType) {
    EXPECT_EQ(printedFor("a.jpg", "This is text, and no picture at all."), kBadJpeg);
    EXPECT_EQ(printedFor("a.png", "This is text, and no picture at all."), kBadPng);
    EXPECT_EQ(printedFor("a.jpg", makeRgbPng(20, 10)), kBadJpeg);
    EXPECT_EQ(printedFor("a.png", jpeg(20, 10)), kBadPng);
}

TEST_F(PdfDamage, IsNoticedInAMissingFile) {
    EXPECT_EQ(printedFor(scratch_.file("missing.jpg")), "ERROR: error_no=1017, detail_no=2\n");
    EXPECT_EQ(printedFor(scratch_.file("missing.png")), "ERROR: error_no=1017, detail_no=2\n");
}

TEST_F(PdfDamage, IsNoticedInAFolder) {
    fs::create_directory(scratch_.file("a.jpg"));
    EXPECT_EQ(printedFor(scratch_.file("a.jpg")), "ERROR: error_no=1016, detail_no=21\n");
}

TEST_F(PdfDamage, IsReportedByLibharuForAPageOfAnUnfitSize) {
    constexpr int kLargest = 14400;
    const PngKind grey1{.colour = PNG_COLOR_TYPE_GRAY, .depth = 1};
    const auto row = [](int width) { return std::string(static_cast<std::size_t>(width), '\0'); };
    EXPECT_EQ(printedFor("a.png", makePng(kLargest + 1, grey1, std::vector(4, row(2000)))),
              kBadSize);
    EXPECT_EQ(printedFor("a.png", makePng(4, grey1, std::vector(kLargest + 1, row(1)))), kBadSize);
    EXPECT_EQ(printedFor("a.png", makeRgbPng(2, 10)), kBadSize);
    EXPECT_EQ(printedFor("a.jpg", jpeg(kLargest + 1, 8)), kBadSize);
    EXPECT_EQ(printedFor("a.jpg", jpeg(8, 2)), kBadSize);
}

TEST_F(PdfDamage, IsNotSeenInAPageOfTheLargestSize) {
    const PngKind grey1{.colour = PNG_COLOR_TYPE_GRAY, .depth = 1};
    writeText(scratch_.file("a.png"),
              makePng(14400, grey1, std::vector(3, std::string(1800, '\0'))));
    pdf_start(scratch_.file("out.pdf").c_str());
    pdf_addPage(scratch_.file("a.png").c_str());
    pdf_end();
    EXPECT_EQ(pageSizes(scratch_.file("out.pdf")), std::vector<std::string>{"14400x3"});
}

TEST_F(PdfDamage, IsNotSeenInBytesBetweenAJpegsMarkers) {
    const std::string file = jpeg(40, 30);
    writeText(scratch_.file("a.jpg"),
              file.substr(0, file.size() - 2) + "more" + "\xff\xd9" + std::string(100, '\0'));
    PrintedText printed;
    pdf_start(scratch_.file("out.pdf").c_str());
    pdf_addPage(scratch_.file("a.jpg").c_str());
    pdf_end();
    EXPECT_EQ(printed.take(), "");
    EXPECT_EQ(pageSizes(scratch_.file("out.pdf")), std::vector<std::string>{"40x30"});
}

TEST_F(PdfDamage, TakesNoMemoryForAChunkThatIsLongerThanItsFile) {
    constexpr unsigned kClaimed = 1U << 30;
    const PeakMemory memory;
    EXPECT_EQ(printedFor("bomb.png", withRemarkOfLength(makeRgbPng(3, 2), kClaimed)), kBadPng);
    EXPECT_LT(memory.growth(), long{kClaimed >> 10} / 2);
}

} // namespace
