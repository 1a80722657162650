// A host that changes the view at any moment while frames are shown at full speed.
#include "busy_host.h"
#include "frames.h"
#include "preview/picture.h"

#include <doccam/doccam.hpp>

#include <atomic>
#include <thread>

namespace doccam::test {
namespace {

constexpr FrameSize kFrame{320, 240};

class ChangingView : public Preview {
  protected:
    // Reads every byte, as a host does that draws the picture.
    static unsigned bytesSum(const PreviewPicture& picture) {
        unsigned sum = 0;
        for (int at = 0; at < picture.width * picture.height * 3; ++at) {
            sum += picture.pixels[at];
        }
        return sum;
    }
};

TEST_F(ChangingView, NeverCrashesTheHostNorOverrunsItsBuffer) {
    stream(kFrame);
    SetWebFormSize(BusyHost::kFormWidth, BusyHost::kFormHeight);
    const cv::Mat level = noisyFrame(kFrame);
    const cv::Mat turned = noisyFrame({kFrame.height, kFrame.width});

    std::atomic<int> frames{0};
    BusyHost host(frames);

    unsigned pictures = 0;
    unsigned sum = 0;
    for (bool last = false; !last;) {
        last = host.done();
        ++frames;
        const int angle = state().settings.RotateAngle;
        const cv::Mat* const frame = angle == 0 || angle == 2   ? &level
                                     : angle == 1 || angle == 3 ? &turned
                                                                : nullptr;
        showPreview(state().view, state().session.frames->zoomimage, frame,
                    [&](const PreviewPicture& picture) {
                        EXPECT_GE(picture.width, 4);
                        EXPECT_GE(picture.height, 4);
                        EXPECT_EQ(picture.width % 4, 0);
                        EXPECT_EQ(picture.height % 4, 0);
                        EXPECT_LE(picture.width * picture.height,
                                  BusyHost::kFormWidth * BusyHost::kFormHeight);
                        sum += bytesSum(picture);
                        ++pictures;
                        return true;
                    });
    }
    EXPECT_GT(pictures, 0U);
    EXPECT_GT(sum, 0U);
}

TEST_F(ChangingView, DoesNotUndoTheFormThatAnotherThreadDeclares) {
    stream(kFrame);
    SetWebFormSize(BusyHost::kFormWidth, BusyHost::kFormHeight);
    std::atomic<bool> stop{false};
    std::thread navigating([&stop] {
        while (!stop) {
            Web_ZoomIn();
            Web_SetMoveOffet(3, -2);
            Web_RotateR();
            Web_ZoomOut();
            Web_BestSize();
        }
    });
    int undone = 0;
    for (int round = 0; round < 100000; ++round) {
        const int width = 100 + round % 2;
        const int height = 90 + round % 3;
        SetWebFormSize(width, height);
        undone += state().view.FormWidth != width || state().view.FormHeight != height ? 1 : 0;
    }
    stop = true;
    navigating.join();
    EXPECT_EQ(undone, 0);
}

} // namespace
} // namespace doccam::test
