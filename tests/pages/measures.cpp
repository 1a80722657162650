#include "measures.h"

#include "overlap.h"
#include "page_engine.h"
#include "print_on_page.h"

#include <opencv2/imgcodecs.hpp>

#include <algorithm>
#include <cmath>

namespace doccam::test {

namespace {

using virtualcam::DrawnFrame;
using virtualcam::Quad;
using virtualcam::TrueSheet;

constexpr double kSomeOverlap = 0.5; // less is another thing than the sheet
constexpr double kMillimetresPerInch = 25.4;
constexpr Reading kUnread{0, 0}; // of a page that was not found

struct Match {
    const DoccamSheet* found = nullptr;
    double overlap = 0;
};

// A sheet that lies alone must be the one found first, which is the one that hosts take.
Match bestMatch(const std::vector<DoccamSheet>& found, const TrueSheet& sheet, bool alone,
                cv::Size picture) {
    Match best;
    for (const DoccamSheet& candidate : found) {
        const double shared = overlap(cornersOf(candidate), sheet.corners, picture);
        if (shared > best.overlap) {
            best = {&candidate, shared};
        }
        if (alone) {
            break;
        }
    }
    return best;
}

cv::Mat turned(const cv::Mat& page, int turns) {
    cv::Mat upright = page;
    if (turns > 0) {
        static const int kTurns[] = {cv::ROTATE_90_CLOCKWISE, cv::ROTATE_180,
                                     cv::ROTATE_90_COUNTERCLOCKWISE};
        cv::rotate(page, upright, kTurns[turns - 1]);
    }
    return upright;
}

// The found corners in the truth's order.
Quad inTruthsOrder(const Quad& found, int turns) {
    Quad ordered;
    for (std::size_t i = 0; i < 4; ++i) {
        ordered[(i + static_cast<std::size_t>(turns)) % 4] = found[i];
    }
    return ordered;
}

void read(SheetMeasures& measures, const TrueSheet& sheet, const std::array<cv::Mat, 3>& looks) {
    Readings readings;
    for (std::size_t i = 0; i < looks.size(); ++i) {
        const cv::Mat& look = looks[i];
        const int resolution =
            cvRound(look.cols / sheet.page.millimetres.width * kMillimetresPerInch);
        readings[i] = compareWords(sheet.page, readWords(look, resolution), look.size(), i == 0);
    }
    measures.readings = readings;
}

void keepPages(const std::string& path, const cv::Mat& page, const std::array<cv::Mat, 3>& looks) {
    cv::imwrite(path + "-photo.png", page);
    cv::imwrite(path + "-colour.png", looks[DOCCAM_COLOUR]);
    cv::imwrite(path + "-grey.png", looks[DOCCAM_COLOUR_GREY]);
    cv::imwrite(path + "-black-white.png", looks[DOCCAM_COLOUR_BLACK_WHITE]);
}

// Proportions of the page, and where its content is measured, that of its looks.
void measurePage(SheetMeasures& measures, const TrueSheet& sheet, const DoccamSheet& found,
                 const cv::Mat& picture, bool reads, const std::string& keep) {
    const int turns = turnsToUpright(cornersOf(found), sheet.corners);
    const cv::Mat page = turned(rectified(picture, found), turns);
    const double truth = sheet.page.millimetres.width / sheet.page.millimetres.height;
    measures.proportions = std::abs(static_cast<double>(page.cols) / page.rows / truth - 1);
    if (!reads) {
        return;
    }
    std::array<cv::Mat, 3> looks;
    for (const DoccamColour colour :
         {DOCCAM_COLOUR, DOCCAM_COLOUR_GREY, DOCCAM_COLOUR_BLACK_WHITE}) {
        looks[colour] = paperLook(page, colour);
    }
    if (!keep.empty()) {
        keepPages(keep, page, looks);
    }
    read(measures, sheet, looks);
    const PrintOnPage print(sheet, inTruthsOrder(cornersOf(found), turns), page.size());
    measures.fills = print.fillDifferences(looks[DOCCAM_COLOUR]);
    measures.pictures = print.pictureLosses(page, looks[DOCCAM_COLOUR]);
}

int countExtra(const std::vector<DoccamSheet>& found, const DrawnFrame& frame, cv::Size picture) {
    return static_cast<int>(
        std::count_if(found.begin(), found.end(), [&](const DoccamSheet& sheet) {
            return std::none_of(
                frame.sheets.begin(), frame.sheets.end(), [&](const TrueSheet& truth) {
                    return overlap(cornersOf(sheet), truth.corners, picture) > kSomeOverlap;
                });
        }));
}

} // namespace

FrameMeasures measure(const DrawnFrame& frame, const cv::Mat& picture, bool reads,
                      const std::string& keep) {
    FrameMeasures measures;
    measures.name = frame.category + "-" + std::to_string(frame.seed);
    const std::vector<DoccamSheet> found = findSheets(picture);
    for (const TrueSheet& sheet : frame.sheets) {
        SheetMeasures one;
        one.kind = sheet.kind;
        const Match match = bestMatch(found, sheet, frame.sheets.size() == 1, picture.size());
        one.overlap = match.overlap;
        if (match.overlap > kSomeOverlap && !sheet.cut) {
            measurePage(one, sheet, *match.found, picture, reads,
                        keep.empty() ? keep : keep + "/" + measures.name);
        }
        if (reads && !one.readings) {
            one.readings = Readings{kUnread, kUnread, kUnread};
        }
        measures.sheets.push_back(one);
    }
    measures.extra = countExtra(found, frame, picture.size());
    return measures;
}

} // namespace doccam::test
