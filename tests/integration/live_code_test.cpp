// Codes read from a live stream.
#include "integration/session_fixture.h"
#include "state/library_state.h"
#include "support/printed_text.h"
#include "support/scratch_folder.h"
#include "unit/barcode/code_pictures.h"
#include "unit/barcode/read_rates.h"

#include <doccam/doccam.hpp>

#include <gmock/gmock.h>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

#include <cctype>
#include <thread>

namespace doccam::test {
namespace {

using testing::HasSubstr;
using testing::Not;

constexpr int kBar = 0;
constexpr int kQr = 1;

class LiveCode : public SessionTest {
  protected:
    LiveCode() {
        virtualcam::setSleepScale(1);
        state().session.BarQrContent.publish("of before");
        const virtualcam::SceneSettings drawn = virtualcam::scene(earlier_);
        qrText_ = drawn.qrText;
        barText_ = drawn.code128Text;
    }

    // Opens camera 0 at a size in which the sheet's codes are readable.
    static void openLarge(int format) {
        SetVideoFormat(format);
        ASSERT_EQ(openCamera(kIndexOfEarlier, 1600, 1200), 0);
    }

    // Lets the one frame that the loop waits for arrive.
    void letOneFrameThrough() {
        addFrameFault(virtualcam::FaultKind::kStall, 1);
        virtualcam::resume(earlier_);
    }

    // Opens the camera and holds its first frame back until the loop waits for it.
    void openWithoutAFrame(int format) {
        addFrameFault(virtualcam::FaultKind::kStall, 1);
        openLarge(format);
        waitUntilSilent();
    }

    void waitUntilSilent() const {
        while (!virtualcam::waitedFor(earlier_)) {
            std::this_thread::yield();
        }
    }

    // Requests a code on another thread, and returns once the request is made.
    static std::thread ask(int mode, std::string& answer) {
        std::thread host([mode, &answer] { answer = RecogBarQrCode(mode); });
        while (state().session.IsRecogBarQr == kNoCodeRequest) {
            std::this_thread::yield();
        }
        return host;
    }

    // This thread's waits during one request, in microseconds.
    static std::vector<long> waitsOf(int mode, std::string& answer) {
        virtualcam::clearSleeps();
        answer = RecogBarQrCode(mode);
        std::vector<long> waits;
        for (const virtualcam::Sleep& sleep : virtualcam::sleeps()) {
            if (sleep.thread == gettid()) {
                waits.push_back(sleep.microseconds);
            }
        }
        return waits;
    }

    std::string qrText_, barText_;
};

TEST_F(LiveCode, OfTheDrawnSheetIsReadInEitherKindAndFormat) {
    for (const int format : {kMjpegFormat, kYuyvFormat}) {
        openLarge(format);
        EXPECT_EQ(RecogBarQrCode(kQr), qrText_) << format;
        EXPECT_EQ(RecogBarQrCode(kBar), barText_) << format;
        closeCamera();
    }
}

TEST_F(LiveCode, IsReadFromEightMegapixels) {
    SetVideoFormat(kMjpegFormat);
    ASSERT_EQ(openCamera(kIndexOfEarlier, 3264, 2448), 0);
    EXPECT_EQ(RecogBarQrCode(kQr), qrText_);
    EXPECT_EQ(RecogBarQrCode(kBar), barText_);
}

TEST_F(LiveCode, IsReadFromTheNextFrame) {
    watchFrames();
    openWithoutAFrame(kYuyvFormat);
    for (int request = 1; request <= 4; ++request) {
        const int mode = request % 2;
        std::string answer;
        std::thread host = ask(mode, answer);
        letOneFrameThrough();
        host.join();
        EXPECT_EQ(answer, mode == kQr ? qrText_ : barText_);
        waitForFrames(request);
        waitUntilSilent();
        EXPECT_EQ(framesSeen(), request);
    }
}

TEST_F(LiveCode, IsReadAsOftenAsRequested) {
    openLarge(kMjpegFormat);
    for (const int mode : {kQr, kBar, kBar, 2, -1, kQr, kBar, kQr}) {
        EXPECT_EQ(RecogBarQrCode(mode), mode == kBar ? barText_ : qrText_) << mode;
    }
}

TEST_F(LiveCode, IsThatOfTheCurrentSheet) {
    openLarge(kYuyvFormat);
    virtualcam::SceneSettings sheet = virtualcam::scene(earlier_);
    for (const char* text : {"sheet 1", "sheet 2"}) {
        sheet.qrText = text;
        virtualcam::setScene(earlier_, sheet);
        RecogBarQrCode(kQr); // the loop may still have had a frame of the previous sheet
        EXPECT_STREQ(RecogBarQrCode(kQr), text);
    }
}

TEST_F(LiveCode, IsReadInEveryTurn) {
    for (const int angle : {1, 2, 3}) {
        SetRotate(angle);
        openLarge(kYuyvFormat);
        EXPECT_EQ(RecogBarQrCode(kQr), qrText_) << angle;
        EXPECT_EQ(RecogBarQrCode(kBar), barText_) << angle;
        closeCamera();
    }
}

TEST_F(LiveCode, IsTheEmptyTextWhenTheFrameShowsNone) {
    virtualcam::moveSheet(earlier_, 3, 0, 0);
    openSmall(kYuyvFormat);
    for (const int mode : {kBar, kQr}) {
        state().session.BarQrContent.publish("of before");
        EXPECT_STREQ(RecogBarQrCode(mode), "");
    }
}

TEST_F(LiveCode, StaysTheOldOneForAnInvalidRotation) {
    SetRotate(7);
    openLarge(kMjpegFormat);
    PrintedText printed;
    EXPECT_STREQ(RecogBarQrCode(kQr), "of before");
    EXPECT_EQ(state().session.IsRecogBarQr, kNoCodeRequest);
    EXPECT_THAT(printed.take(), Not(HasSubstr("BarQr")));
}

TEST_F(LiveCode, IsPrintedForMjpegStreamsOnly) {
    for (const int format : {kMjpegFormat, kYuyvFormat}) {
        openLarge(format);
        PrintedText printed;
        RecogBarQrCode(kQr);
        const std::string lines = printed.take();
        const std::string result = "BarQrContent:" + qrText_ + "\n";
        EXPECT_THAT(lines, HasSubstr("BarQrDecodePro start\r\n"));
        EXPECT_THAT(lines, HasSubstr("BarQrDecodePro end\r\n"));
        EXPECT_EQ(lines.find("BarQrDecodePro end\r\n" + result) != std::string::npos,
                  format == kMjpegFormat);
        EXPECT_EQ(lines.find("BarQrContent:") != std::string::npos, format == kMjpegFormat);
        closeCamera();
    }
}

TEST_F(LiveCode, IsReadAfterTheStillOfTheSameFrame) {
    openWithoutAFrame(kYuyvFormat);
    const ScratchFolder folder;
    PrintedText printed;
    std::thread photographer([&] { captureImage(folder.file("page.jpg").c_str()); });
    while (!state().session.isShootPhoto) {
        std::this_thread::yield();
    }
    std::string answer;
    std::thread host = ask(kQr, answer);
    letOneFrameThrough();
    host.join();
    photographer.join();
    EXPECT_EQ(answer, qrText_);
    const std::string lines = printed.take();
    const auto still = lines.find("capture->04");
    const auto code = lines.find("BarQrDecodePro start");
    ASSERT_NE(still, std::string::npos);
    ASSERT_NE(code, std::string::npos);
    EXPECT_LT(still, code);
}

TEST_F(LiveCode, IsAvailableWhenTheCallbackSeesTheFrame) {
    static std::atomic<int> requestSeen;
    requestSeen = 0;
    SetDataCallback(
        [](unsigned char*, int, int) { requestSeen = state().session.IsRecogBarQr.load(); });
    openWithoutAFrame(kYuyvFormat);
    std::string answer;
    std::thread host = ask(kQr, answer);
    letOneFrameThrough();
    host.join();
    waitUntilSilent();
    EXPECT_EQ(requestSeen, kNoCodeRequest);
}

TEST_F(LiveCode, IsNotReadFromTheFramesDroppedAfterATurn) {
    watchFrames();
    openWithoutAFrame(kYuyvFormat);
    state().settings.RotateFlag = 2;
    std::string answer;
    PrintedText printed;
    std::thread host = ask(kQr, answer);
    virtualcam::resume(earlier_);
    host.join();
    EXPECT_EQ(answer, qrText_);
    EXPECT_THAT(printed.take(), HasSubstr("RotateFlag--\nRotateFlag--\nBarQrDecodePro start\r\n"));
}

TEST_F(LiveCode, IsTheOldOneAfterTheFullWaitWithoutACamera) {
    virtualcam::setSleepScale(0.01);
    std::string answer;
    EXPECT_EQ(waitsOf(kQr, answer), std::vector<long>(199, 50000));
    EXPECT_EQ(answer, "of before");
    EXPECT_EQ(state().session.IsRecogBarQr, kQr);
}

TEST_F(LiveCode, IsReadFromALaterFrameWhenTheWaitWasTooShort) {
    openWithoutAFrame(kYuyvFormat);
    virtualcam::setSleepScale(0.001);
    std::string answer;
    EXPECT_EQ(waitsOf(kQr, answer).size(), 199U);
    EXPECT_EQ(answer, "of before");
    EXPECT_EQ(state().session.IsRecogBarQr, kQr);

    letOneFrameThrough();
    waitUntilSilent();
    while (state().session.IsRecogBarQr != kNoCodeRequest) {
        std::this_thread::yield();
    }
    EXPECT_EQ(RecogBarQrCode(kNoCodeRequest), qrText_);
}

TEST_F(LiveCode, IsTheLastOneImmediatelyForTheIdleRequest) {
    openLarge(kYuyvFormat);
    PrintedText printed;
    std::string answer;
    EXPECT_TRUE(waitsOf(kNoCodeRequest, answer).empty());
    EXPECT_EQ(answer, "of before");
    EXPECT_THAT(printed.take(), Not(HasSubstr("BarQrDecodePro")));
}

TEST_F(LiveCode, IsTheSameForThreadsThatAskAtOnce) {
    openWithoutAFrame(kYuyvFormat);
    std::string first, second;
    std::thread one = ask(kQr, first);
    std::thread two([&] { second = RecogBarQrCode(kQr); });
    letOneFrameThrough();
    one.join();
    virtualcam::resume(earlier_); // in case the second request came after the first was served
    two.join();
    EXPECT_EQ(first, qrText_);
    EXPECT_EQ(second, qrText_);
}

TEST_F(LiveCode, KeepsItsMemoryUntilTheNextRequest) {
    openLarge(kMjpegFormat);
    watchFrames();
    const char* text = RecogBarQrCode(kQr);
    waitForFrames(10);
    EXPECT_EQ(text, qrText_);
}

TEST_F(LiveCode, ReadTooLateIsReturnedByTheNextRequestThatTimesOut) {
    openWithoutAFrame(kYuyvFormat);
    virtualcam::setSleepScale(0.001);
    RecogBarQrCode(kQr);
    letOneFrameThrough();
    waitUntilSilent();
    while (state().session.IsRecogBarQr != kNoCodeRequest) {
        std::this_thread::yield();
    }
    EXPECT_EQ(RecogBarQrCode(kBar), qrText_);
}

// Every kind of code, shown to the camera as a photograph.
class LiveCodeKinds : public LiveCode, public testing::WithParamInterface<int> {};

TEST_P(LiveCodeKinds, AreReadInEitherFormat) {
    const Kind& kind = kinds()[static_cast<std::size_t>(GetParam())];
    const Code code = kind.make(0);
    View view;
    view.frame = {1280, 960};
    cv::Mat picture = photograph({code}, view);
    cv::cvtColor(picture, picture, cv::COLOR_RGB2BGR);
    const ScratchFolder folder;
    cv::imwrite(folder.file("code.png"), picture);
    bed_.remove(earlier_);
    virtualcam::CameraDescription camera = secondCamera();
    camera.picture = folder.file("code.png");
    bed_.add(camera);
    const PrintedText complaints(PrintedText::Stream::kError);
    for (const int format : {kMjpegFormat, kYuyvFormat}) {
        SetVideoFormat(format);
        ASSERT_EQ(openCamera(kIndexOfEarlier, 1280, 960), 0);
        // For the host a text ends at its first zero byte.
        EXPECT_STREQ(RecogBarQrCode(kind.isQr ? kQr : kBar),
                     kind.name == "PDF417" ? "" : code.text.c_str());
        closeCamera();
    }
}

INSTANTIATE_TEST_SUITE_P(
    All, LiveCodeKinds, testing::Range(0, static_cast<int>(kinds().size())), [](const auto& kind) {
        std::string letters;
        for (const char c : kinds()[static_cast<std::size_t>(kind.param)].name) {
            letters += std::isalnum(static_cast<unsigned char>(c)) != 0 ? std::string(1, c) : "";
        }
        return letters;
    });

} // namespace
} // namespace doccam::test
