// Whitening a page's margins and its background.
#include "plain/black_edge.h"
#include "row.h"

#include <doccam/doccam.hpp>

#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>

namespace doccam::bench {
namespace {

// Cleans in place, so each run starts with a fresh copy of the page.
Contest cleaning(const Picture& picture, void (*ours)(cv::Mat), void (*plain)(cv::Mat)) {
    cv::Mat page;
    cv::cvtColor(picture.pixels, page, cv::COLOR_RGB2BGR);
    const cv::Mat mine = page.clone();
    const cv::Mat theirs = page.clone();
    return {
        .ours = [=] { ours(mine); },
        .peer = [=] { plain(theirs); },
        .same = [=] { return samePixels(mine, theirs); },
        .beforeOurs = [=] { page.copyTo(mine); },
        .beforePeer = [=] { page.copyTo(theirs); },
    };
}

Contest blackEdge(const Picture& picture) {
    return cleaning(picture, FN_DeleteBlackEdge, plain::deleteBlackEdge);
}

Contest background(const Picture& picture) {
    return cleaning(picture, FN_DeleteBackcolor, plain::deleteBackcolor);
}

const Entry blackEdgeEntry({.name = "FN_DeleteBlackEdge",
                            .peer = "a plain transcription",
                            .bound = 0.4,
                            .contest = blackEdge});

const Entry backgroundEntry({.name = "FN_DeleteBackcolor",
                             .peer = "a plain transcription",
                             .bound = 0.4,
                             .contest = background});

} // namespace
} // namespace doccam::bench
