#include "docimage/pixels/bright_regions.h"

#include "base/strips.h"

namespace doccam {
namespace {

void markRow(uchar* row, int width, uchar level) {
    for (int x = 0; x < width; ++x) {
        row[x] = row[x] > level ? 1 : 0;
    }
}

void clearFrame(cv::Mat& regions) {
    regions.row(0).setTo(0);
    regions.row(regions.rows - 1).setTo(0);
    regions.col(0).setTo(0);
    regions.col(regions.cols - 1).setTo(0);
}

} // namespace

void markBrightRegions(cv::Mat& grey, const Levels& levels) {
    const auto level = static_cast<uchar>(otsuLevel(levels));
    forEachStrip(Strips(grey.rows), [&](cv::Range part, int /*number*/) {
        for (int y = part.start; y < part.end; ++y) {
            markRow(grey.ptr(y), grey.cols, level);
        }
    });
    clearFrame(grey);
}

} // namespace doccam
