#include "documents/text/orientation.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <filesystem>
#include <sstream>

namespace doccam::host {
namespace {

// Print of seven points is often taken for another way up at less; more makes no difference.
constexpr double kDpi = 250;

// Pages of print get 5.6 and more, mostly over 12, notes of twenty words 4.7 to 9; photographs and
// desks get up to 3.1.
constexpr double kSure = 5;

constexpr int kQuarter = 90; // degrees

struct Opinion {
    int turns = 0;
    double confidence = 0;
};

// "Rotate: 270" and "Orientation confidence: 12.25", each on a line.
Opinion opinionIn(const std::string& said) {
    Opinion opinion;
    std::istringstream lines(said);
    lines.imbue(std::locale::classic());
    for (std::string name; std::getline(lines, name, ':');) {
        std::string value;
        std::getline(lines, value);
        std::istringstream number(value);
        number.imbue(std::locale::classic());
        if (name == "Rotate") {
            int degrees = 0;
            number >> degrees;
            opinion.turns = (degrees / kQuarter) % 4;
        } else if (name == "Orientation confidence") {
            number >> opinion.confidence;
        }
    }
    return opinion;
}

// At kDpi, so far as that is of a usual size; empty if there is no room for print.
cv::Mat resized(const cv::Mat& grey, double dpi) {
    constexpr double kMaximumSide = 8000; // of what is enlarged
    constexpr double kMinimumSide = 32;
    const double wanted = dpi > 0 ? kDpi / dpi : 1;
    const double scale =
        std::min(wanted, std::max(1.0, kMaximumSide / std::max(grey.cols, grey.rows)));
    cv::Mat picture;
    if (scale * std::min(grey.cols, grey.rows) >= kMinimumSide) {
        cv::resize(grey, picture, {}, scale, scale, scale < 1 ? cv::INTER_AREA : cv::INTER_CUBIC);
    }
    return picture;
}

} // namespace

int quarterTurnsOf(const cv::Mat& grey, double dpi, const Tesseract& tesseract,
                   const std::string& stem) {
    const cv::Mat picture = resized(grey, dpi);
    if (picture.empty()) {
        return 0;
    }
    const std::string file = stem + "-looked-at.pgm";
    writeGrey(file, picture);
    const Opinion opinion = opinionIn(tesseract.orientation({file, kDpi}));
    std::error_code ignored;
    std::filesystem::remove(file, ignored);
    return opinion.confidence >= kSure ? opinion.turns : 0;
}

} // namespace doccam::host
