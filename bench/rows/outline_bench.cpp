// Finding and drawing the sheet's outline in a frame.
#include "plain/outline.h"
#include "row.h"

#include <doccam/doccam.hpp>

#include <opencv2/core.hpp>

namespace doccam::bench {
namespace {

constexpr int kDraw = 1;

Contest outline(const Picture& picture) {
    const cv::Mat frame = picture.pixels;
    cv::Mat mine = frame.clone();
    cv::Mat theirs = frame.clone();
    return {
        .ours = [mine] { DrawingEdge(mine.data, mine.cols, mine.rows, kDraw); },
        .peer = [theirs]() mutable { plain::drawEdge(theirs, kDraw); },
        .same = [=] { return samePixels(mine, theirs); },
        .beforeOurs = [=] { frame.copyTo(mine); },
        .beforePeer = [=] { frame.copyTo(theirs); },
    };
}

const Entry entry(
    {.name = "DrawingEdge", .peer = "a plain transcription", .bound = 0.6, .contest = outline});

} // namespace
} // namespace doccam::bench
