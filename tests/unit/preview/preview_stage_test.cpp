// What the host receives for each frame.
#include "frames.h"
#include "preview/picture.h"

#include <doccam/doccam.hpp>

#include <opencv2/core.hpp>

#include <algorithm>

namespace doccam::test {
namespace {

class PreviewStage : public Preview {
  protected:
    // Shows frame and collects what is delivered.
    std::vector<PreviewPicture> shown(const cv::Mat& frame) { return shown(&frame); }

    std::vector<PreviewPicture> shown(const cv::Mat* frame) {
        std::vector<PreviewPicture> pictures;
        EXPECT_TRUE(showPreview(state().view, state().session.frames->zoomimage, frame,
                                [&](const PreviewPicture& picture) {
                                    pictures.push_back(picture);
                                    return true;
                                }));
        return pictures;
    }

    static std::vector<unsigned char> bufferPixels() {
        return {state().session.frames->preview.get(),
                state().session.frames->preview.get() + state().view.previewBytes};
    }
};

TEST_F(PreviewStage, DeliversThePictureAndItsPlaceInTheForm) {
    stream({640, 480});
    SetWebFormSize(800, 600);
    Web_SetMoveOffet(10, -20);
    const cv::Mat frame = noisyFrame({640, 480});
    const std::vector<PreviewPicture> pictures = shown(frame);
    ASSERT_EQ(pictures.size(), 1U);
    EXPECT_EQ(pictures[0].pixels, state().view.WEB_BUF);
    EXPECT_EQ(pictures[0].width, 640);
    EXPECT_EQ(pictures[0].height, 480);
    EXPECT_EQ(pictures[0].startX, 90);
    EXPECT_EQ(pictures[0].startY, 40);
    const std::vector<unsigned char> expected = plainPicture(frame, currentFields());
    EXPECT_TRUE(std::equal(expected.begin(), expected.end(), pictures[0].pixels));
}

TEST_F(PreviewStage, LeavesTheBufferPastThePictureAlone) {
    stream({640, 480});
    SetWebFormSize(101, 77);
    unsigned char* const pixels = state().view.WEB_BUF;
    std::fill_n(pixels, state().view.previewBytes.load(), static_cast<unsigned char>(0xA5));
    ASSERT_EQ(shown(noisyFrame({640, 480})).size(), 1U);
    ASSERT_EQ(state().view.ShowWidth, 100);
    ASSERT_EQ(state().view.ShowHeight, 72);
    const std::vector<unsigned char> buffer = bufferPixels();
    EXPECT_TRUE(std::all_of(buffer.begin() + std::ptrdiff_t{100} * 72 * 3, buffer.end(),
                            [](int byte) { return byte == 0xA5; }));
}

TEST_F(PreviewStage, WithoutAnyDestinationDeliversNothing) {
    stream({640, 480});
    EXPECT_TRUE(shown(noisyFrame({640, 480})).empty());
}

TEST_F(PreviewStage, FillsAPreparedImageWithoutAForm) {
    stream({640, 480});
    SetWebFormSize(320, 240);
    state().view.WEB_BUF = nullptr;
    state().session.frames->zoomimage = cv::Mat::zeros(240, 320, CV_8UC3);
    const cv::Mat frame = noisyFrame({640, 480});
    const std::vector<PreviewPicture> pictures = shown(frame);
    ASSERT_EQ(pictures.size(), 1U);
    EXPECT_EQ(pictures[0].pixels, state().session.frames->zoomimage.data);
    const std::vector<unsigned char> expected = plainPicture(frame, currentFields());
    EXPECT_TRUE(std::equal(expected.begin(), expected.end(), pictures[0].pixels));
}

TEST_F(PreviewStage, DeliversTheFormsPictureBeforeThePreparedImage) {
    stream({640, 480});
    SetWebFormSize(320, 240);
    state().session.frames->zoomimage = cv::Mat::zeros(480, 640, CV_8UC3);
    const std::vector<PreviewPicture> pictures = shown(noisyFrame({640, 480}));
    ASSERT_EQ(pictures.size(), 2U);
    EXPECT_EQ(pictures[0].pixels, state().view.WEB_BUF);
    EXPECT_EQ(pictures[1].pixels, state().session.frames->zoomimage.data);
    EXPECT_EQ(pictures[1].width, 320);
    EXPECT_EQ(pictures[1].height, 240);
    EXPECT_NE(cv::countNonZero(state().session.frames->zoomimage.reshape(1)), 0);
}

TEST_F(PreviewStage, SkipsAPreparedImageSmallerThanReported) {
    stream({640, 480});
    SetWebFormSize(320, 240);
    state().session.frames->zoomimage = cv::Mat::zeros(239, 320, CV_8UC3);
    const std::vector<PreviewPicture> pictures = shown(noisyFrame({640, 480}));
    ASSERT_EQ(pictures.size(), 1U);
    EXPECT_EQ(pictures[0].pixels, state().view.WEB_BUF);
    EXPECT_EQ(cv::countNonZero(state().session.frames->zoomimage.reshape(1)), 0);
}

TEST_F(PreviewStage, EndsAtOnceWhenItNoLongerOwnsTheState) {
    stream({640, 480});
    SetWebFormSize(320, 240);
    state().session.frames->zoomimage = cv::Mat::zeros(240, 320, CV_8UC3);
    const cv::Mat frame = noisyFrame({640, 480});
    int delivered = 0;
    EXPECT_FALSE(showPreview(state().view, state().session.frames->zoomimage, &frame,
                             [&](const PreviewPicture&) {
                                 ++delivered;
                                 return false;
                             }));
    EXPECT_EQ(delivered, 1);
}

TEST_F(PreviewStage, WithoutAFrameRepeatsTheLastPicture) {
    stream({640, 480});
    SetWebFormSize(320, 240);
    state().session.frames->zoomimage = cv::Mat::zeros(240, 320, CV_8UC3);
    shown(noisyFrame({640, 480}));
    const std::vector<unsigned char> before = bufferPixels();
    const std::vector<PreviewPicture> pictures = shown(nullptr);
    ASSERT_EQ(pictures.size(), 2U);
    EXPECT_EQ(pictures[0].pixels, state().view.WEB_BUF);
    EXPECT_EQ(pictures[0].width, 320);
    EXPECT_EQ(bufferPixels(), before);
}

TEST_F(PreviewStage, SkipsAFrameTurnedWithoutANewForm) {
    stream({1920, 1080});
    SetWebFormSize(800, 600);
    const std::vector<unsigned char> before = bufferPixels();
    EXPECT_TRUE(shown(noisyFrame({1080, 1920})).empty());
    EXPECT_EQ(bufferPixels(), before);
    EXPECT_EQ(shown(noisyFrame({1920, 1080})).size(), 1U);
}

TEST_F(PreviewStage, SkipsAFrameWhileTheViewBelongsToAnother) {
    stream({1920, 1080});
    SetWebFormSize(800, 600);
    Web_TrueSize();
    state().view.ZoomStartX = -1121;
    EXPECT_TRUE(shown(noisyFrame({1920, 1080})).empty());
    state().view.ZoomStartX = -1120;
    EXPECT_EQ(shown(noisyFrame({1920, 1080})).size(), 1U);
    EXPECT_TRUE(shown(cv::Mat()).empty());
}

TEST_F(PreviewStage, SkipsPicturesLargerThanTheFirstForm) {
    stream({1920, 1080});
    SetWebFormSize(160, 100);
    const cv::Mat frame = noisyFrame({1920, 1080});
    EXPECT_EQ(shown(frame).size(), 1U);
    const std::vector<unsigned char> before = bufferPixels();
    SetWebFormSize(800, 600);
    EXPECT_TRUE(shown(frame).empty());
    EXPECT_TRUE(shown(nullptr).empty());
    EXPECT_EQ(bufferPixels(), before);
    SetWebFormSize(120, 120);
    EXPECT_EQ(shown(frame).size(), 1U);
}

TEST_F(PreviewStage, ShowsALargerFormWhosePictureStillFits) {
    stream({160, 100});
    SetWebFormSize(160, 100);
    SetWebFormSize(800, 600);
    const std::vector<PreviewPicture> pictures = shown(noisyFrame({160, 100}));
    ASSERT_EQ(pictures.size(), 1U);
    EXPECT_EQ(pictures[0].startX, 320);
}

TEST_F(PreviewStage, ShowsNothingInAnImpossibleForm) {
    stream({640, 480});
    SetWebFormSize(800, 600);
    const cv::Mat frame = noisyFrame({640, 480});
    for (const FrameSize form : {FrameSize{0, 600}, FrameSize{800, 0}, FrameSize{-5, -5},
                                 FrameSize{3, 600}, FrameSize{800, 3}}) {
        SetWebFormSize(form.width, form.height);
        EXPECT_TRUE(shown(frame).empty()) << form.width << 'x' << form.height;
    }
    SetWebFormSize(800, 600);
    EXPECT_EQ(shown(frame).size(), 1U);
}

TEST_F(PreviewStage, ShowsNothingUntilTheFormIsDeclaredWithTheCameraOpen) {
    SetWebFormSize(800, 600);
    const cv::Mat frame = noisyFrame({640, 480});
    EXPECT_TRUE(shown(frame).empty());
    stream({640, 480});
    EXPECT_TRUE(shown(frame).empty());
    SetWebFormSize(800, 600);
    EXPECT_EQ(shown(frame).size(), 1U);
}

// Four pixels of the form are less than one of the frame.
TEST_F(PreviewStage, SkipsACutWithoutPixels) {
    stream({640, 480});
    SetWebFormSize(4, 4);
    for (int times = 0; times < 200; ++times) {
        Web_ZoomIn();
    }
    ASSERT_EQ(state().view.ShowWidth, 4);
    EXPECT_TRUE(shown(noisyFrame({640, 480})).empty());
}

} // namespace
} // namespace doccam::test
