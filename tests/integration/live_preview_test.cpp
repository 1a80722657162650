// The preview of a streaming camera whose host never stops changing the view.
#include "integration/session_fixture.h"
#include "unit/preview/busy_host.h"
#include "unit/preview/preview_fixture.h"

#include <doccam/doccam.hpp>

#include <unistd.h>

#include <atomic>
#include <numeric>
#include <thread>

namespace doccam::test {
namespace {

std::atomic<int> frames{0};
std::atomic<int> shown{0};
std::atomic<unsigned> sum{0};

// Reads every pixel, so that a picture larger than its buffer is noticed.
void draw(unsigned char* pixels, int width, int height, int /*x*/, int /*y*/) {
    unsigned total = 0;
    for (const unsigned char* pixel = pixels; pixel != pixels + width * height * 3; ++pixel) {
        total += *pixel;
    }
    sum = total;
    ++shown;
    shown.notify_all();
}

class LivePreview : public SessionTest {};

TEST_F(LivePreview, SurvivesTenThousandChangesOfTheView) {
    SetWebDataCallback(draw);
    openSmall(kMjpegFormat);
    SetWebFormSize(BusyHost::kFormWidth, BusyHost::kFormHeight);
    {
        const BusyHost host(frames);
        while (!host.done()) {
            // Invalid turns keep frames from every callback.
            frames = virtualcam::callCount("DQBUF");
            std::this_thread::yield();
        }
    }
    // The last form is shown again.
    const int before = shown;
    for (int now = shown; now < before + 3; now = shown) {
        shown.wait(now);
    }
    EXPECT_GT(sum, 0U);
}

// The host turns the view before the first frame.
TEST_F(LivePreview, NeverShowsMemoryThatNoFrameHasFilled) {
    virtualcam::setSleepScale(1);
    SetDataCallback([](unsigned char*, int, int) {
        SetRotate(1);
        SetWebFormSize(200, 200);
    });
    SetWebDataCallback([](unsigned char* pixels, int width, int height, int, int) {
        if (shown == 0) {
            sum = std::accumulate(pixels, pixels + width * height * 3, 0U);
        }
        ++shown;
        shown.notify_all();
    });
    shown = 0;
    sum = 1;
    openSmall(kYuyvFormat);
    shown.wait(0);
    EXPECT_EQ(sum, 0U);
}

TEST_F(LivePreview, KeepsItsViewWhenStreamingStops) {
    openSmall(kMjpegFormat);
    SetWebFormSize(320, 240);
    Web_TrueSize();
    Web_SetMoveOffet(-20, -30);
    const PreviewFields before = currentFields();
    closeCamera();
    EXPECT_EQ(currentFields(), before);
    for (int (*const operation)() :
         {Web_ZoomIn, Web_ZoomOut, Web_TrueSize, Web_BestSize, Web_RotateL, Web_RotateR}) {
        EXPECT_EQ(operation(), -1);
    }
    EXPECT_EQ(Web_SetMoveOffet(1, 1), -1);
    EXPECT_EQ(currentFields(), before);
}

TEST_F(LivePreview, PausesOncePerFrameForAnyNumberOfPictures) {
    for (const bool prepared : {false, true}) {
        virtualcam::clearFaults(earlier_);
        virtualcam::resume(earlier_);
        addFrameFault(virtualcam::FaultKind::kStall, 1);
        SetWebDataCallback(draw);
        openSmall(kYuyvFormat);
        SetWebFormSize(320, 240);
        if (prepared) {
            state().session.frames->zoomimage.create(240, 320, CV_8UC3);
        }
        const int before = shown;
        const auto wait = [this] {
            while (!virtualcam::waitedFor(earlier_)) {
                std::this_thread::yield();
            }
        };
        wait();
        virtualcam::clearSleeps();
        addFrameFault(virtualcam::FaultKind::kStall, 1);
        virtualcam::resume(earlier_);
        while (shown < before + (prepared ? 2 : 1)) {
            std::this_thread::yield();
        }
        wait();
        const pid_t self = gettid();
        std::vector<long> pauses;
        for (const virtualcam::Sleep& sleep : virtualcam::sleeps()) {
            if (sleep.thread != self) {
                pauses.push_back(sleep.microseconds);
            }
        }
        EXPECT_EQ(pauses, std::vector<long>{3000});
        closeCamera();
    }
}

} // namespace
} // namespace doccam::test
