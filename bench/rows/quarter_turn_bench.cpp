// A frame turned by a quarter into the session's turned frame.
#include "row.h"
#include "state/library_state.h"

#include <doccam/doccam.hpp>

#include <opencv2/core.hpp>

namespace doccam::bench {
namespace {

Contest quarterTurn(const Picture& picture) {
    state().session.frames->roimage.create(kWidth, kHeight, CV_8UC3);
    const cv::Mat turned(kWidth, kHeight, CV_8UC3);
    const cv::Mat frame = picture.pixels;
    return {
        .ours = [frame] { CamdataRote90(frame); },
        .peer =
            [frame, turned]() mutable {
                cv::transpose(frame, turned);
                cv::flip(turned, turned, 1);
            },
        .same = [turned] { return samePixels(state().session.frames->roimage, turned); },
    };
}

const Entry entry({.name = "quarter turn",
                   .peer = "cv::transpose + cv::flip",
                   .bound = 0.4,
                   .contest = quarterTurn});

} // namespace
} // namespace doccam::bench
