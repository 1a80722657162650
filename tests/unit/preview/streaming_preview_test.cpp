// The preview of a stream: what the callbacks of a running loop receive. A stand-in for the driver
// answers the three requests that the loop makes.
#include "base/slack_image.h"
#include "busy_host.h"
#include "frames.h"
#include "support/printed_text.h"

#include <doccam/doccam.hpp>

#include <linux/videodev2.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <cstring>
#include <functional>

namespace {

// Whether the driver has another frame.
std::function<bool()> nextFrame;

} // namespace

// NOLINTBEGIN(bugprone-reserved-identifier): the linker chooses the name
extern "C" int __wrap_ioctl(int descriptor, unsigned long request, ...);

extern "C" int __wrap_ioctl(int /*descriptor*/, unsigned long request, ...) {
    // NOLINTEND(bugprone-reserved-identifier)
    va_list arguments;
    va_start(arguments, request);
    void* const argument = va_arg(arguments, void*);
    va_end(arguments);
    if (request == VIDIOC_DQBUF && !nextFrame()) {
        errno = ENODEV;
        return -1;
    }
    if (request == VIDIOC_DQBUF) {
        static_cast<v4l2_buffer*>(argument)->index = 0;
        static_cast<v4l2_buffer*>(argument)->length = 320 * 240 * 2;
    }
    return 0;
}

namespace doccam::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr FrameSize kFrame{320, 240};
constexpr std::ptrdiff_t kPictureBytes = std::ptrdiff_t{160} * 120 * 3;

// Two are dropped; the third is shown.
constexpr int kFramesToSeeATurn = 3;

struct Call {
    const unsigned char* pixels;
    int width, height, startX, startY;

    bool operator==(const Call&) const = default;
};

std::vector<Call> calls;

void recordFrame(unsigned char* data, int width, int height) {
    calls.push_back({data, width, height, -1, -1});
}

void recordPicture(unsigned char* data, int width, int height, int startX, int startY) {
    calls.push_back({data, width, height, startX, startY});
}

unsigned drawn = 0;

// Reads every byte, as a host does that draws the picture.
void draw(unsigned char* data, int width, int height, int /*startX*/, int /*startY*/) {
    for (int at = 0; at < width * height * 3; ++at) {
        drawn += data[at];
    }
}

class StreamingPreview : public Preview {
  protected:
    void SetUp() override {
        Preview::SetUp();
        raw_.resize(static_cast<std::size_t>(kFrame.area()) * 2);
        for (std::size_t at = 0; at < raw_.size(); ++at) {
            raw_[at] = static_cast<unsigned char>(at * 31 + at / 640);
        }
        LibraryState& library = state();
        stream(kFrame);
        std::strcpy(library.session.pix_format, "YUYV");
        library.session.video_buffer_ptr[0] = raw_.data();
        library.session.mappedLength[0] = raw_.size();
        library.session.frames->srcimage = makeSlackImage(kFrame.height, kFrame.width);
        library.session.frames->roimage.create(kFrame.width, kFrame.height, CV_8UC3);
        library.settings.pGetVideoWebStream = recordPicture;
        calls.clear();
        drawn = 0;
    }

    void TearDown() override {
        LibraryState& library = state();
        library.settings.pGetVideoStream = nullptr;
        library.session.video_buffer_ptr[0] = nullptr;
        library.session.mappedLength[0] = 0;
        library.session.pix_format[0] = '\0';
        library.session.frames->srcimage.release();
        library.session.frames->roimage.release();
        nextFrame = nullptr;
        Preview::TearDown();
    }

    // Runs the loop for that many frames and returns what it printed before its end.
    static std::string streamFrames(int count) {
        nextFrame = [count]() mutable { return count-- > 0; };
        PrintedText printed;
        VideoStreamPro(nullptr);
        const std::string text = printed.take();
        return text.substr(0, text.find("ioctl"));
    }

    static Call formPicture() {
        const PreviewFields fields = currentFields();
        return {state().view.WEB_BUF, fields.ShowWidth, fields.ShowHeight, fields.FormStartX,
                fields.FormStartY};
    }

    std::vector<unsigned char> raw_;
};

TEST_F(StreamingPreview, IsSilentWithoutAFormAndAPreparedImage) {
    streamFrames(3);
    EXPECT_THAT(calls, IsEmpty());
}

TEST_F(StreamingPreview, CallsWithTheFormsPictureOfEachFrame) {
    SetWebFormSize(160, 160);
    streamFrames(2);
    ASSERT_THAT(calls, ElementsAre(formPicture(), formPicture()));
    EXPECT_EQ(calls[0], (Call{state().view.WEB_BUF, 160, 120, 0, 20}));
    const std::vector<unsigned char> expected =
        plainPicture(state().session.frames->srcimage, currentFields());
    EXPECT_TRUE(std::equal(expected.begin(), expected.end(), calls[0].pixels));
}

TEST_F(StreamingPreview, CallsTwiceForAFrameWhenAnImageIsPreparedToo) {
    SetWebFormSize(160, 120);
    state().session.frames->zoomimage.create(240, 320, CV_8UC3);
    streamFrames(1);
    EXPECT_THAT(calls, ElementsAre(formPicture(),
                                   Call{state().session.frames->zoomimage.data, 160, 120, 0, 0}));
}

TEST_F(StreamingPreview, FollowsTheFrameItself) {
    SetWebFormSize(160, 120);
    state().settings.pGetVideoStream = recordFrame;
    streamFrames(1);
    EXPECT_THAT(calls, ElementsAre(Call{state().session.frames->srcimage.data, 320, 240, -1, -1},
                                   formPicture()));
}

TEST_F(StreamingPreview, IsSilentWithoutACallback) {
    SetWebFormSize(160, 120);
    state().settings.pGetVideoStream = recordFrame;
    state().settings.pGetVideoWebStream = nullptr;
    streamFrames(2);
    EXPECT_EQ(calls.size(), 2U);
    const unsigned char* const pixels = state().view.WEB_BUF;
    EXPECT_TRUE(std::all_of(pixels, pixels + kPictureBytes, [](int byte) { return byte == 0; }));
}

TEST_F(StreamingPreview, DropsTwoFramesAfterATurnAndShowsTheThird) {
    SetWebFormSize(160, 160);
    Web_RotateR();
    EXPECT_EQ(streamFrames(2), "RotateFlag--\nRotateFlag--\n");
    EXPECT_THAT(calls, IsEmpty());
    EXPECT_EQ(streamFrames(2), "");
    ASSERT_THAT(calls, ElementsAre(formPicture(), formPicture()));
    EXPECT_EQ(calls[0].width, 120);
    const std::vector<unsigned char> expected =
        plainPicture(state().session.frames->roimage, currentFields());
    EXPECT_TRUE(std::equal(expected.begin(), expected.end(), calls[0].pixels));
}

TEST_F(StreamingPreview, RepeatsTheLastPictureInAnInvalidTurn) {
    SetWebFormSize(160, 120);
    streamFrames(1);
    ASSERT_EQ(calls.size(), 1U);
    const std::vector<unsigned char> before(calls[0].pixels, calls[0].pixels + kPictureBytes);
    std::fill(raw_.begin(), raw_.end(), static_cast<unsigned char>(99));
    SetRotate(7);
    streamFrames(1);
    ASSERT_EQ(calls.size(), 2U);
    EXPECT_EQ(calls[1], calls[0]);
    EXPECT_TRUE(std::equal(before.begin(), before.end(), calls[1].pixels));
}

TEST_F(StreamingPreview, SkipsTurnedFramesUntilTheFormIsDeclaredAgain) {
    SetWebFormSize(160, 120);
    SetRotate(1);
    streamFrames(2);
    EXPECT_THAT(calls, IsEmpty());
    SetWebFormSize(160, 120);
    streamFrames(1);
    EXPECT_THAT(calls, ElementsAre(formPicture()));
}

TEST_F(StreamingPreview, OutlivesAHostThatNeverStopsChangingTheView) {
    SetWebFormSize(BusyHost::kFormWidth, BusyHost::kFormHeight);
    state().settings.pGetVideoWebStream = draw;
    std::atomic<int> frames{0};
    {
        BusyHost host(frames);
        const PrintedText printed;
        nextFrame = [&, framesAfter = kFramesToSeeATurn]() mutable {
            ++frames;
            return !host.done() || framesAfter-- > 0;
        };
        VideoStreamPro(nullptr);
    }
    EXPECT_GT(drawn, 0U);
    state().settings.RotateFlag = 0;
    state().settings.pGetVideoWebStream = recordPicture;
    streamFrames(1);
    EXPECT_THAT(calls, ElementsAre(formPicture()));
}

} // namespace
} // namespace doccam::test
