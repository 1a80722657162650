// Any sequence of forms, zooms, drags and turns, rendering the picture after each.
#include "fuzz_target.h"
#include "input.h"
#include "preview/picture.h"
#include "preview/view_state.h"
#include "state/library_state.h"

#include <doccam/doccam.hpp>

#include <limits>
#include <numeric>

namespace {

using namespace doccam;

constexpr int kMaximumSide = 160;
constexpr int kMaximumFormSide = 512;
constexpr std::int64_t kMaximumPixels = kMaximumFormSide * kMaximumFormSide;

// A streaming session of that frame size, without a camera.
class Session {
  public:
    Session(int width, int height) {
        setGrabSize(width, height);
        library_.session.bKeep = true;
    }

    ~Session() {
        library_.session.bKeep = false;
        library_.view.WEB_BUF = nullptr;
        library_.session.frames->preview.reset();
        library_.view.previewBytes = 0;
        library_.settings.RotateAngle = 0;
        library_.settings.RotateFlag = 0;
        library_.view.FormWidth = 0;
        library_.view.FormHeight = 0;
        storeBestFit(library_.view, {});
    }

    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

  private:
    LibraryState& library_ = state();
};

// Large valid forms would take gigabytes.
void declareAnyForm(int width, int height) {
    const std::int64_t pixels = std::int64_t{width} * height;
    const bool possible = width > 0 && height > 0 && pixels <= std::numeric_limits<int>::max() / 3;
    if (!possible || pixels <= kMaximumPixels) {
        SetWebFormSize(width, height);
    }
}

void drag(int dx, int dy) {
    Web_SetMoveOffet(dx, dy);
}

void changeView(test::Input& input) {
    switch (input.byte() % 13) {
    case 0:
        return SetWebFormSize(input.side(kMaximumFormSide), input.side(kMaximumFormSide));
    case 1:
        return declareAnyForm(input.number(), input.number());
    case 2:
        return FuncSuitableSize(input.side(kMaximumFormSide), input.side(kMaximumFormSide));
    case 3:
        return FuncSuitableSize(input.number(), input.number());
    case 4:
        return drag(static_cast<signed char>(input.byte()), static_cast<signed char>(input.byte()));
    case 5:
        return drag(input.number(), input.number());
    case 6:
        return static_cast<void>(Web_ZoomIn());
    case 7:
        return static_cast<void>(Web_ZoomOut());
    case 8:
        return static_cast<void>(Web_TrueSize());
    case 9:
        return static_cast<void>(Web_BestSize());
    case 10:
        return static_cast<void>(Web_RotateL());
    case 11:
        return static_cast<void>(Web_RotateR());
    default:
        return FuncCalculateShowWH();
    }
}

// Reads every byte that a host is told to draw.
bool draw(const PreviewPicture& picture) {
    const auto bytes =
        static_cast<std::size_t>(picture.width) * static_cast<std::size_t>(picture.height) * 3;
    volatile unsigned sum = std::accumulate(picture.pixels, picture.pixels + bytes, 0U);
    static_cast<void>(sum);
    return true;
}

void showPicture() {
    const FrameSize shown = shownFrameSize(state());
    const cv::Mat frame(shown.height, shown.width, CV_8UC3, cv::Scalar(1, 2, 3));
    showPreview(state().view, state().session.frames->zoomimage, &frame, draw);
    const std::size_t bytes = pictureBytes(loadView(state().view));
    if (bytes <= kMaximumPixels * 3) {
        test::Bytes pixels(bytes);
        test::allowImageErrors([&] { VideoZoomToWeb(frame, pixels.data()); });
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    test::Input input(data, size);
    const int width = input.side(kMaximumSide);
    const Session session(width, input.side(kMaximumSide));
    while (!input.empty()) {
        changeView(input);
        showPicture();
    }
    return 0;
}
