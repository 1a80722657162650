// The sheet's content.
#include "scene/scene.h"
#include "scene/sheet_change.h"
#include "scene/symbols.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <iterator>

namespace doccam::virtualcam {

namespace {

const cv::Size kSheet(1654, 2339);
const cv::Scalar kPaper(244, 247, 248);
const cv::Scalar kInk(42, 36, 34);
const cv::Scalar kStampRed(44, 36, 196);
constexpr std::size_t kSkippedLines = 4;

void writeLine(cv::Mat& sheet, const std::string& text, cv::Point origin, double scale,
               int thickness) {
    cv::putText(sheet, text, origin, cv::FONT_HERSHEY_COMPLEX, scale, kInk, thickness, cv::LINE_AA);
}

// Each sheet's text starts with a different line.
void writeText(cv::Mat& sheet, int number) {
    static const char* const kLines[] = {
        "This sheet lies under a document camera. It has been",
        "put down in a hurry, so it is a little tilted, and the",
        "desk around it is dark.",
        "",
        "A page wants straight edges, even light and black ink",
        "on white paper. Letters of this size should be easy to",
        "read at any offered resolution from 1280 x 960 up.",
        "",
        "   Item                         Pieces        Price",
        "   Paper, white, A4                500         4.90",
        "   Ink, black, one bottle            2        11.80",
        "   Stamp pad, red                    1         3.45",
        "",
        "The quick brown fox jumps over the lazy dog while",
        "0123456789 sphinxes of black quartz judge its vow.",
    };
    writeLine(sheet, countedUp("Receipt No. 42", number), {150, 260}, 2.6, 5);
    cv::line(sheet, {150, 310}, {1504, 310}, kInk, 4, cv::LINE_AA);
    int y = 430;
    constexpr std::size_t kCount = std::size(kLines);
    for (std::size_t i = 0; i < kCount; ++i) {
        const std::size_t line = (i + kSkippedLines * static_cast<std::size_t>(number)) % kCount;
        writeLine(sheet, kLines[line], {150, y}, 1.3, 2);
        y += 74;
    }
}

// The one line in which the sheets of a form differ, in print of 10 points.
void fillIn(cv::Mat& sheet, int number) {
    static const char* const kNames[] = {"Ada Mill", "Bruno Castell", "Carla Winterfeld",
                                         "Dev Okafor", "Emil Brandt"};
    const std::string name = kNames[static_cast<std::size_t>(number) % std::size(kNames)];
    writeLine(sheet, name + ", customer " + countedUp("1000", 37 * number), {150, 1560}, 0.93, 2);
}

void pressStamp(cv::Mat& sheet, cv::Point centre) {
    cv::circle(sheet, centre, 170, kStampRed, 12, cv::LINE_AA);
    cv::circle(sheet, centre, 140, kStampRed, 4, cv::LINE_AA);
    cv::putText(sheet, "PAID", centre + cv::Point(-108, 26), cv::FONT_HERSHEY_DUPLEX, 2.7,
                kStampRed, 8, cv::LINE_AA);
}

// Prints a symbol as large as its field allows, up to the given module size.
void printSymbol(cv::Mat& sheet, cv::Mat (*draw)(const std::string&, int), const std::string& text,
                 cv::Rect field, int moduleSize) {
    cv::Mat symbol = draw(text, moduleSize);
    while (moduleSize > 1 && (symbol.cols > field.width || symbol.rows > field.height)) {
        symbol = draw(text, --moduleSize);
    }
    const cv::Size part(std::min(symbol.cols, field.width), std::min(symbol.rows, field.height));
    cv::Mat target = sheet(cv::Rect(field.tl(), part));
    cv::min(target, symbol(cv::Rect({0, 0}, part)), target);
}

} // namespace

cv::Mat flatSheet(const SceneSettings& settings) {
    cv::Mat sheet(kSheet, CV_8UC3, kPaper);
    const int number = settings.unrest.form ? 0 : settings.sheet;
    writeText(sheet, number);
    if (settings.unrest.form) {
        fillIn(sheet, settings.sheet);
    }
    printSymbol(sheet, drawQrCode, countedUp(settings.qrText, number), {150, 1720, 480, 480}, 12);
    printSymbol(sheet, drawCode128, countedUp(settings.code128Text, number), {640, 2060, 1000, 240},
                5);
    pressStamp(sheet, {1290, 1800});
    return sheet;
}

} // namespace doccam::virtualcam
