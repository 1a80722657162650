// Finding the sheet in a frame, against decoding the frame: live pictures must not wait for it.
#include "desk_frames.h"
#include "row.h"

#include <opencv2/imgcodecs.hpp>

#include <memory>

namespace doccam::bench {
namespace {

constexpr double kBound = 1.5;
constexpr double kLiveBound = 0.4;

Contest finding(const DeskFrame& frame, bool live) {
    const auto found = std::make_shared<DoccamSheet>();
    const auto last = std::make_shared<DoccamSheet>(frame.sheet());
    const auto decoded = std::make_shared<cv::Mat>();
    return {
        .ours =
            [=, &frame] {
                const DoccamImage image = frame.image();
                *found = {};
                doccam_find_sheets(&image, live ? last.get() : nullptr, found.get(), 1);
            },
        .peer = [=, &frame] { *decoded = cv::imdecode(frame.jpeg, cv::IMREAD_COLOR); },
        .same = [=, &frame] { return frame.shows(*found) && samePixels(*decoded, frame.pixels); },
    };
}

Row row(DeskKind kind, bool live) {
    return {.name = (live ? "find the sheet again, " : "find the sheet, ") + nameOf(kind),
            .peer = "decoding the frame",
            .bound = live ? kLiveBound : kBound,
            .contest = [kind, live](const Picture& /*picture*/) {
                return finding(deskFrame(kind), live);
            }};
}

struct Entries {
    Entries() {
        for (const DeskKind kind : kDeskKinds) {
            const Entry first(row(kind, false));
            const Entry again(row(kind, true));
        }
    }
};

const Entries entries;

} // namespace
} // namespace doccam::bench
