// The frames of a session with everything switched on, from the camera's buffer to both callbacks,
// including the loop's own pause of 3 ms.
#include "live_session.h"
#include "plain_codec.h"
#include "row.h"

#include <doccam/doccam.hpp>

#include <opencv2/core.hpp>
#include <opencv2/videoio.hpp>

#include <algorithm>
#include <functional>
#include <memory>
#include <stdexcept>
#include <vector>

namespace doccam::bench {
namespace {

// The expected frame: turned by a quarter, with the sheet's outline.
cv::Mat plainlyPrepared(const cv::Mat& frame) {
    cv::Mat turned;
    cv::transpose(frame, turned);
    cv::flip(turned, turned, 1);
    DrawingEdge(turned.data, turned.cols, turned.rows, 1);
    return turned;
}

bool isMadeFromOneOf(const std::vector<virtualcam::FrameBytes>& jpegs, const cv::Mat& frame,
                     PlainCodec& codec) {
    return std::any_of(jpegs.begin(), jpegs.end(), [&](const virtualcam::FrameBytes& jpeg) {
        codec.take(jpeg);
        codec.run();
        return samePixels(frame, plainlyPrepared(codec.pixels()));
    });
}

// Consecutive frames: work on one begins while the previous one is shown.
constexpr int kFrames = 8;

// A session needs two idle processors at once, which a busy machine seldom has.
constexpr int kRounds = 100;

void repeat(const std::function<void()>& run) {
    for (int frame = 0; frame < kFrames; ++frame) {
        run();
    }
}

Contest againstCodec(const Picture& picture) {
    const auto session = std::make_shared<LiveSession>(picture);
    const auto codec = std::make_shared<PlainCodec>();
    return {
        .ours = [session] { session->waitForFrames(kFrames); },
        .peer = [codec] { repeat([&] { codec->run(); }); },
        .same = [=] { return isMadeFromOneOf(session->jpegs(), session->frameView(), *codec); },
        .beforeOurs = [session] { session->start(); },
        .beforePeer =
            [=] {
                session->stop();
                codec->take(session->jpegs().back());
            },
        .frames = kFrames,
    };
}

std::shared_ptr<cv::VideoCapture> capturing(const std::string& node) {
    const auto capture = std::make_shared<cv::VideoCapture>(node, cv::CAP_V4L2);
    capture->set(cv::CAP_PROP_FOURCC, cv::VideoWriter::fourcc('M', 'J', 'P', 'G'));
    capture->set(cv::CAP_PROP_FRAME_WIDTH, kWidth);
    capture->set(cv::CAP_PROP_FRAME_HEIGHT, kHeight);
    return capture;
}

bool isOfTheSameKind(const cv::VideoCapture& capture, const cv::Mat& frame) {
    const int code = static_cast<int>(capture.get(cv::CAP_PROP_FOURCC));
    return code == cv::VideoWriter::fourcc('M', 'J', 'P', 'G') &&
           frame.size() == cv::Size(kWidth, kHeight);
}

Contest againstVideoCapture(const Picture& picture) {
    const auto session = std::make_shared<LiveSession>(picture);
    const auto capture = capturing(session->otherCamera());
    const auto frame = std::make_shared<cv::Mat>();
    const auto read = [=] {
        if (!capture->read(*frame)) {
            throw std::runtime_error("no frame from OpenCV's capture");
        }
    };
    return {
        .ours = [session] { session->waitForFrames(kFrames); },
        .peer = [read] { repeat(read); },
        .same = [=] { return isOfTheSameKind(*capture, *frame); },
        .beforeOurs = [session] { session->start(); },
        .beforePeer = [session] { session->stop(); },
        .frames = kFrames,
    };
}

const Entry codecEntry({.name = "whole loop",
                        .peer = "codec decode + convert",
                        .bound = 1.5,
                        .contest = againstCodec,
                        .rounds = kRounds});

const Entry captureEntry({.name = "whole loop (2)",
                          .peer = "cv::VideoCapture, decode only",
                          .bound = 1.0,
                          .contest = againstVideoCapture,
                          .rounds = kRounds});

} // namespace
} // namespace doccam::bench
