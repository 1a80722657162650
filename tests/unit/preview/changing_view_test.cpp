// A host that changes the view at any moment while frames are shown at full speed.
#include "frames.h"
#include "preview/preview_stage.h"

#include <doccam/doccam.hpp>

#include <atomic>
#include <limits>
#include <random>
#include <thread>

namespace doccam::test {
namespace {

constexpr FrameSize kFrame{320, 240};
constexpr int kActions = 10'000;

class ChangingView : public Preview {
  protected:
    static void changeAnything(std::mt19937& random) {
        const auto between = [&](int least, int most) {
            return std::uniform_int_distribution<int>(least, most)(random);
        };
        switch (between(0, 9)) {
        case 0:
            SetWebFormSize(between(-2, 260), between(-2, 200));
            break;
        case 1:
            SetWebFormSize(between(1, 4000), between(1, 4000));
            break;
        case 2:
            Web_RotateL();
            break;
        case 3:
            Web_RotateR();
            break;
        case 4:
            SetRotate(between(-1, 4));
            break;
        case 5:
            Web_TrueSize();
            break;
        case 6:
            Web_ZoomOut();
            break;
        case 7:
            Web_SetMoveOffet(between(-500, 500), between(-500, 500));
            break;
        case 8:
            Web_SetMoveOffet(between(std::numeric_limits<int>::min(), 0),
                             between(0, std::numeric_limits<int>::max()));
            break;
        default:
            Web_ZoomIn();
            break;
        }
    }

    // The picture as the host draws it: every byte is read.
    static unsigned bytesSum(const PreviewPicture& picture) {
        unsigned sum = 0;
        for (int at = 0; at < picture.width * picture.height * 3; ++at) {
            sum += picture.pixels[at];
        }
        return sum;
    }
};

TEST_F(ChangingView, NeverEndsTheHostNorOverrunsItsBuffer) {
    stream(kFrame);
    SetWebFormSize(260, 200);
    const cv::Mat upright = noisyFrame(kFrame);
    const cv::Mat upended = noisyFrame({kFrame.height, kFrame.width});

    std::atomic<bool> done{false};
    std::thread host([&] {
        std::mt19937 random(11);
        for (int action = 0; action < kActions; ++action) {
            changeAnything(random);
            std::this_thread::yield();
        }
        SetRotate(0);
        SetWebFormSize(260, 200);
        done = true;
    });

    unsigned pictures = 0;
    unsigned sum = 0;
    for (bool last = false; !last;) {
        last = done;
        const int angle = state().RotateAngle;
        const cv::Mat* const frame = angle == 0 || angle == 2   ? &upright
                                     : angle == 1 || angle == 3 ? &upended
                                                                : nullptr;
        showPreview(state(), frame, [&](const PreviewPicture& picture) {
            EXPECT_GE(picture.width, 4);
            EXPECT_GE(picture.height, 4);
            EXPECT_EQ(picture.width % 4, 0);
            EXPECT_EQ(picture.height % 4, 0);
            EXPECT_LE(picture.width * picture.height, 260 * 200);
            sum += bytesSum(picture);
            ++pictures;
            return true;
        });
    }
    host.join();
    EXPECT_GT(pictures, 0U);
    EXPECT_GT(sum, 0U);
}

} // namespace
} // namespace doccam::test
