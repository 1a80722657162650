#include "docimage/turn/quarter_turn.h"

#include <opencv2/core.hpp>

#include <functional>

namespace doccam {
namespace {

enum class Mirror { kUpsideDown = 0, kLeftRight = 1 };

void mirror(cv::Mat& image, Mirror how) {
    cv::flip(image, image, static_cast<int>(how));
}

bool shareMemory(const cv::Mat& left, const cv::Mat& right) {
    const std::less<> before;
    return before(left.datastart, right.dataend) && before(right.datastart, left.dataend);
}

// For images of other types than frames.
void transposeAndMirror(const cv::Mat& source, Quarter quarter, cv::Mat& turned) {
    cv::transpose(source, turned);
    mirror(turned, quarter == Quarter::kClockwise ? Mirror::kLeftRight : Mirror::kUpsideDown);
}

} // namespace

void turnIntoFrame(const cv::Mat& source, Quarter quarter, cv::Mat& turned) {
    if (turned.empty()) {
        return;
    }
    if (!canTurn(source)) {
        transposeAndMirror(source, quarter, turned);
        return;
    }
    turned.create(source.cols, source.rows, source.type());
    if (shareMemory(source, turned)) {
        transposeAndMirror(source, quarter, turned);
    } else {
        turnQuarter(source, quarter, turned);
    }
}

void turnByHalf(cv::Mat& image) {
    if (canTurn(image)) {
        turnHalf(image);
    } else {
        mirror(image, Mirror::kUpsideDown);
        mirror(image, Mirror::kLeftRight);
    }
}

} // namespace doccam
