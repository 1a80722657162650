// One whole frame of a session with everything switched on, from the camera's buffer to both
// callbacks, the loop's own pause of 3 ms included.
#include "live_session.h"
#include "plain_codec.h"
#include "row.h"

#include <doccam/doccam.hpp>

#include <opencv2/core.hpp>
#include <opencv2/videoio.hpp>

#include <memory>
#include <stdexcept>

namespace doccam::bench {
namespace {

// What the loop must have made of a frame: turned by a quarter, with the sheet's outline.
cv::Mat plainlyPrepared(const cv::Mat& frame) {
    cv::Mat turned;
    cv::transpose(frame, turned);
    cv::flip(turned, turned, 1);
    DrawingEdge(turned.data, turned.cols, turned.rows, 1);
    return turned;
}

Contest againstCodec(const Picture& picture) {
    const auto session = std::make_shared<LiveSession>(picture);
    const auto codec = std::make_shared<PlainCodec>();
    return {
        .ours = [session] { session->nextFrame(); },
        .peer = [codec] { codec->run(); },
        .same = [=] { return samePixels(session->frameView(), plainlyPrepared(codec->pixels())); },
        .beforePeer = [=] { codec->take(session->jpeg()); },
    };
}

std::shared_ptr<cv::VideoCapture> capturing(const std::string& node) {
    const auto capture = std::make_shared<cv::VideoCapture>(node, cv::CAP_V4L2);
    capture->set(cv::CAP_PROP_FOURCC, cv::VideoWriter::fourcc('M', 'J', 'P', 'G'));
    capture->set(cv::CAP_PROP_FRAME_WIDTH, kWidth);
    capture->set(cv::CAP_PROP_FRAME_HEIGHT, kHeight);
    return capture;
}

Contest againstVideoCapture(const Picture& picture) {
    const auto session = std::make_shared<LiveSession>(picture);
    const auto capture = capturing(session->otherCamera());
    const auto frame = std::make_shared<cv::Mat>();
    return {
        .ours = [session] { session->nextFrame(); },
        .peer =
            [=] {
                if (!capture->read(*frame)) {
                    throw std::runtime_error("no frame from the image library's capture");
                }
            },
        .same = [=] { return frame->size() == cv::Size(kWidth, kHeight); },
    };
}

const Entry codecEntry({.name = "whole loop",
                        .peer = "codec decode + convert",
                        .bound = 1.5,
                        .contest = againstCodec});

const Entry captureEntry({.name = "whole loop (2)",
                          .peer = "cv::VideoCapture, decode only",
                          .bound = 1.0,
                          .contest = againstVideoCapture});

} // namespace
} // namespace doccam::bench
