// Every kind of PNG as a PDF page.
#include "pdf_file.h"
#include "png_maker.h"
#include "support/printed_text.h"
#include "support/scratch_folder.h"

#include <doccam/doccam.hpp>

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

namespace {

using namespace doccam::test;
using Texts = std::vector<std::string>;

constexpr int kSide = 16;

// The left half repeats the row's first pixel, the right half its last.
struct Case {
    const char* name;
    PngKind kind;
    std::string row; // kSide pixels
    Pixel left;
    Pixel right;
    Texts kinds;
    bool remark = false;

    // As the PDF holds it where libharu's own PNG reader cannot take the file.
    Texts expandedKinds() const {
        const bool grey = (kind.colour & PNG_COLOR_MASK_COLOR) == 0;
        Texts expanded{grey ? "gray 1 8" : "rgb 3 8"};
        expanded.insert(expanded.end(), kinds.begin() + 1, kinds.end());
        return expanded;
    }
};

std::string halves(const std::string& left, const std::string& right) {
    std::string row;
    for (int x = 0; x < kSide; ++x) {
        row += x < kSide / 2 ? left : right;
    }
    return row;
}

const std::vector<png_color> kPalette = {{10, 20, 30}, {200, 100, 50}};
const std::vector<png_byte> kOpacities = {0, 128};
const Pixel kFirst = {10, 20, 30};
const Pixel kSecond = {200, 100, 50};

std::vector<Case> makeCases() {
    using std::string;
    constexpr Pixel kBlack = {0, 0, 0};
    constexpr Pixel kWhite = {255, 255, 255};
    const PngKind rgb{};
    const PngKind rgb16{.colour = PNG_COLOR_TYPE_RGB, .depth = 16};
    const PngKind rgba{.colour = PNG_COLOR_TYPE_RGB_ALPHA};
    const PngKind rgba16{.colour = PNG_COLOR_TYPE_RGB_ALPHA, .depth = 16};
    const PngKind grey{.colour = PNG_COLOR_TYPE_GRAY};
    const PngKind grey1{.colour = PNG_COLOR_TYPE_GRAY, .depth = 1};
    const PngKind grey16{.colour = PNG_COLOR_TYPE_GRAY, .depth = 16};
    const PngKind greyAlpha{.colour = PNG_COLOR_TYPE_GRAY_ALPHA};
    const auto indexed = [](int depth, const std::vector<png_byte>& opacities) {
        return PngKind{PNG_COLOR_TYPE_PALETTE, depth, PNG_INTERLACE_NONE, kPalette, opacities};
    };
    const string rgbRow = halves("\x0a\x14\x1e", "\xc8\x64\x32");
    const string indices = halves(string(1, '\0'), "\1");
    return {
        {"Rgb", rgb, rgbRow, kFirst, kSecond, {"rgb 3 8"}},
        {"RgbWithAWarning", rgb, rgbRow, kFirst, kSecond, {"rgb 3 8"}, true},
        {"Rgb16",
         rgb16,
         halves("\x0a\x01\x14\x02\x1e\x03", "\xc8\x04\x64\x05\x32\x06"),
         kFirst,
         kSecond,
         {"rgb 3 8"}},
        {"Rgba",
         rgba,
         halves("\x0a\x14\x1e\xff", "\xc8\x64\x32\x80"),
         kFirst,
         kSecond,
         {"rgb 3 8", "gray 1 8"}},
        {"RgbaWithAWarning",
         rgba,
         halves("\x0a\x14\x1e\xff", "\xc8\x64\x32\x80"),
         kFirst,
         kSecond,
         {"rgb 3 8", "gray 1 8"},
         true},
        {"Rgba16",
         rgba16,
         halves("\x0a\x01\x14\x02\x1e\x03\xff\xff", "\xc8\x04\x64\x05\x32\x06\x80\x01"),
         kFirst,
         kSecond,
         {"rgb 3 8", "gray 1 8"}},
        {"Grey", grey, halves("\x0a", "\xc8"), {10, 10, 10}, {200, 200, 200}, {"gray 1 8"}},
        {"GreyWithAWarning",
         grey,
         halves("\x0a", "\xc8"),
         {10, 10, 10},
         {200, 200, 200},
         {"gray 1 8"},
         true},
        {"Grey1", grey1, string("\x00\xff", 2), kBlack, kWhite, {"gray 1 1"}},
        {"Grey1WithAWarning", grey1, string("\x00\xff", 2), kBlack, kWhite, {"gray 1 8"}, true},
        {"Grey16",
         grey16,
         halves("\x0a\x01", "\xc8\x02"),
         {10, 10, 10},
         {200, 200, 200},
         {"gray 1 8"}},
        {"GreyAlpha",
         greyAlpha,
         halves("\x0a\xff", "\xc8\x80"),
         {10, 10, 10},
         {200, 200, 200},
         {"gray 1 8", "gray 1 8"}},
        {"Palette", indexed(8, {}), indices, kFirst, kSecond, {"index 1 8"}},
        {"Palette1", indexed(1, {}), string("\x00\xff", 2), kFirst, kSecond, {"index 1 1"}},
        {"PaletteWithAWarning", indexed(8, {}), indices, kFirst, kSecond, {"rgb 3 8"}, true},
        {"TransparentPalette",
         indexed(8, kOpacities),
         indices,
         kFirst,
         kSecond,
         {"index 1 8", "gray 1 8"}},
        {"TransparentPalette1",
         indexed(1, kOpacities),
         string("\x00\xff", 2),
         kFirst,
         kSecond,
         {"rgb 3 8", "gray 1 8"}},
        {"TransparentPalette4",
         indexed(4, kOpacities),
         string("\0\0\0\0\x11\x11\x11\x11", 8),
         kFirst,
         kSecond,
         {"rgb 3 8", "gray 1 8"}},
    };
}

class PdfPng : public testing::TestWithParam<std::tuple<Case, int>> {};

TEST_P(PdfPng, ShowsThePixels) {
    auto [example, interlace] = GetParam();
    example.kind.interlace = interlace;
    const ScratchFolder scratch;
    const std::string path = scratch.file("a.png");
    const std::string png = makePng(kSide, example.kind, std::vector(kSide, example.row));
    writeText(path, example.remark ? withBadRemark(png) : png);

    PrintedText printed;
    const std::string pdf = scratch.file("out.pdf");
    ASSERT_EQ(AddImageFileToPDF(path.c_str()), 0);
    ASSERT_EQ(CombineToPDF(pdf.c_str(), false), 0);
    EXPECT_EQ(printed.take(), "");

    EXPECT_EQ(pageSizes(pdf), Texts{"16x16"});
    Texts kinds = interlace == PNG_INTERLACE_NONE ? example.kinds : example.expandedKinds();
    for (std::string& kind : kinds) {
        kind += " image";
    }
    EXPECT_EQ(pictureKinds(pdf), kinds);
    // A viewer would blend a transparent picture with the paper.
    const Decoded picture = kinds.size() == 1 ? drawPage(pdf) : extractPicture(pdf, 0);
    for (const int y : {0, 1, kSide - 1}) {
        EXPECT_EQ(picture.at(0, y), example.left) << y;
        EXPECT_EQ(picture.at(kSide - 1, y), example.right) << y;
    }
    if (kinds.size() == 2) {
        EXPECT_EQ(extractPicture(pdf, 1).at(kSide - 1, kSide - 1), (Pixel{128, 128, 128}));
    }
}

std::string nameOf(const testing::TestParamInfo<std::tuple<Case, int>>& test) {
    const auto& [example, interlace] = test.param;
    return std::string(example.name) + (interlace == PNG_INTERLACE_NONE ? "" : "Interlaced");
}

INSTANTIATE_TEST_SUITE_P(EachKind, PdfPng,
                         testing::Combine(testing::ValuesIn(makeCases()),
                                          testing::Values(PNG_INTERLACE_NONE, PNG_INTERLACE_ADAM7)),
                         nameOf);

} // namespace
