#include "frames.h"

#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>

#include <cstdlib>

namespace doccam::test {

cv::Mat noisyFrame(FrameSize size, int seed) {
    cv::Mat frame(size.height, size.width, CV_8UC3);
    cv::RNG random(static_cast<std::uint64_t>(seed));
    random.fill(frame, cv::RNG::UNIFORM, 0, 256);
    return frame;
}

std::vector<unsigned char> plainPicture(const cv::Mat& frame, const PreviewFields& fields) {
    const int sw = static_cast<int>((fields.ShowWidth * 100) / fields.pZoomScale);
    const int sh = static_cast<int>((fields.ShowHeight * 100) / fields.pZoomScale);
    int x = 0;
    int y = 0;
    if (fields.ZoomStartX < 0) {
        x = static_cast<int>((std::abs(fields.ZoomStartX) * 100) / fields.pZoomScale);
    }
    if (fields.ZoomStartY < 0) {
        y = static_cast<int>((std::abs(fields.ZoomStartY) * 100) / fields.pZoomScale);
    }
    const cv::Mat cut = frame(cv::Rect(x, y, sw, sh));
    cv::Mat scratch(fields.ShowHeight, fields.ShowWidth, frame.type());
    cv::resize(cut, scratch, cv::Size(fields.ShowWidth, fields.ShowHeight), 3.0, 0.0,
               cv::INTER_LINEAR);

    std::vector<unsigned char> out;
    for (int row = 0; row < scratch.rows; ++row) {
        for (int column = 0; column < scratch.cols; ++column) {
            for (int channel = 0; channel < 3; ++channel) {
                out.push_back(scratch.at<cv::Vec3b>(row, column)[channel]);
            }
        }
    }
    return out;
}

} // namespace doccam::test
