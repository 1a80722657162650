// Every kind of code, under the mildest form of every difficulty.
#include "code_drawing.h"
#include "code_pictures.h"
#include "read_rates.h"
#include "support/printed_text.h"

#include <doccam/doccam.hpp>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <ostream>
#include <string_view>

namespace doccam::test {

struct Cell {
    Kind kind;
    Difficulty difficulty;
};

void PrintTo(const Cell& cell, std::ostream* out) {
    *out << cell.kind.name << ", " << cell.difficulty.name;
}

namespace {

// What the reader does not manage: it has no PDF417, takes a part of a tilted ITF for the whole,
// and a QR code of 177 modules gets too small beside another code.
bool isBeyondTheReader(const std::string& kind, const std::string& difficulty) {
    return kind == "PDF417" ||
           (kind == "ITF" && (difficulty == "rotated" || difficulty == "two codes")) ||
           (kind == "QR, version 40" && difficulty == "two codes");
}

// Large frames take long; the table of read rates holds the other kinds.
bool isLeftToTheTable(const std::string& kind, const std::string& difficulty) {
    constexpr std::array<std::string_view, 3> kInLargeFrames = {"QR, level M", "Code 128",
                                                                "EAN-13"};
    return difficulty == "8 megapixels" &&
           std::find(kInLargeFrames.begin(), kInLargeFrames.end(), kind) == kInLargeFrames.end();
}

std::vector<Cell> readableCells() {
    std::vector<Cell> cells;
    for (const Kind& kind : kinds()) {
        for (const Difficulty& difficulty : difficulties()) {
            if (!isBeyondTheReader(kind.name, difficulty.name) &&
                !isLeftToTheTable(kind.name, difficulty.name)) {
                cells.push_back({kind, difficulty});
            }
        }
    }
    return cells;
}

std::string lettersOf(const std::string& text) {
    std::string letters;
    std::copy_if(text.begin(), text.end(), std::back_inserter(letters),
                 [](unsigned char letter) { return std::isalnum(letter) != 0; });
    return letters;
}

class CodeKinds : public testing::TestWithParam<Cell> {};

TEST_P(CodeKinds, AreReadFromAFrameAndFromAFile) {
    const Reading reading = readSample(GetParam().kind, GetParam().difficulty, 0);
    EXPECT_EQ(reading.frame, reading.text);
    EXPECT_EQ(reading.file, reading.text.c_str());
}

INSTANTIATE_TEST_SUITE_P(All, CodeKinds, testing::ValuesIn(readableCells()), [](const auto& cell) {
    return lettersOf(cell.param.kind.name) + "_" + lettersOf(cell.param.difficulty.name);
});

TEST(QrCodes, AreReadInAllErrorLevelsAndManyVersions) {
    for (int level = 1; level <= 4; ++level) {
        for (const int version : {1, 2, 4, 6, 7, 10, 14, 20, 27, 33, 40}) {
            const cv::Mat grey = drawCode(qrCode("0123456", level, version), 3);
            EXPECT_EQ(ZbarDecoder(grey, 1), "0123456") << level << ", version " << version;
        }
    }
}

TEST(Pdf417, YieldsNoText) {
    const auto pdf417 = std::find_if(kinds().begin(), kinds().end(),
                                     [](const Kind& kind) { return kind.name == "PDF417"; });
    ASSERT_NE(pdf417, kinds().end());
    const Reading reading = readSample(*pdf417, difficulties().front(), 0);
    EXPECT_EQ(reading.frame, "");
    EXPECT_EQ(reading.file, "");
}

} // namespace
} // namespace doccam::test
