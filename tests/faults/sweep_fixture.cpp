#include "faults/sweep_fixture.h"

#include "state/library_state.h"

#include <doccam/doccam.hpp>

#include <opencv2/core.hpp>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

#include <atomic>
#include <cstring>
#include <filesystem>
#include <mutex>
#include <utility>

namespace doccam::test {
namespace {

namespace fs = std::filesystem;

std::atomic<int> ends{0};
std::mutex reasonMutex;
std::string reason;

void onFault(int fault, const char* message) {
    if (fault == DOCCAM_FAULT_STREAM_ENDED) {
        {
            const std::lock_guard lock(reasonMutex);
            reason = message;
        }
        notifyStreamEnded();
        ends.fetch_add(1);
        ends.notify_all();
    }
}

// Not the library's: the memory a virtual camera delivers into, and the event descriptors that the
// mocked device tree's thread creates at its own pace.
bool belongsToTheMock(const fs::path& descriptor) {
    std::error_code gone;
    const std::string target = fs::read_symlink(descriptor, gone).string();
    return target.starts_with("/memfd:virtual camera") || target == "anon_inode:[eventfd]";
}

int descriptors() {
    int count = 0;
    for (const fs::directory_entry& entry : fs::directory_iterator("/proc/self/fd")) {
        count += belongsToTheMock(entry.path()) ? 0 : 1;
    }
    return count;
}

std::vector<virtualcam::FormatDescription> oneSmallSize(virtualcam::Size size) {
    std::vector<virtualcam::FormatDescription> formats = virtualcam::documentCameraFormats();
    for (virtualcam::FormatDescription& format : formats) {
        format.sizes = {size};
    }
    return formats;
}

// Another scene, so that no earlier session's picture passes for one of this session.
virtualcam::SceneSettings otherScene() {
    virtualcam::SceneSettings scene;
    scene.angle = 40;
    scene.sheetHeight = 0.5;
    return scene;
}

void expectSameMjpeg(const cv::Mat& seen, const virtualcam::DeliveredFrame& sent) {
    cv::Mat decoded = cv::imdecode(*sent.bytes, cv::IMREAD_COLOR);
    cv::cvtColor(decoded, decoded, cv::COLOR_BGR2RGB);
    ASSERT_EQ(seen.size(), decoded.size());
    // Two decoders differ where they interpolate chroma.
    EXPECT_GT(cv::PSNR(seen, decoded), 30);
}

void expectSameYuyv(const cv::Mat& seen, const virtualcam::DeliveredFrame& sent) {
    constexpr int kSlackRows = 1;
    std::vector<unsigned char> source(*sent.bytes);
    source.resize(source.size() + 4);
    cv::Mat converted(sent.size.height + kSlackRows, sent.size.width, CV_8UC3);
    yuyv_to_rgb888(source.data(), converted.data, sent.size.width, sent.size.height);
    const cv::Mat expected = converted.rowRange(0, sent.size.height);
    ASSERT_EQ(seen.size(), expected.size());
    EXPECT_EQ(cv::norm(seen, expected, cv::NORM_INF), 0);
}

} // namespace

std::string described(const CallFault& fault) {
    return fault.request + " " + errorName(fault.error) + " at " + std::to_string(fault.at);
}

std::string shortName(const std::string& request) {
    return request.starts_with("VIDIOC_") ? request.substr(7) : request;
}

std::string errorName(int error) {
    return strerrorname_np(error);
}

SweepTest::SweepTest()
  : SessionTest(oneSmallSize({kWidth, kHeight}))
  , descriptorsBefore_(descriptors()) {
    virtualcam::setSleepScale(0);
    ends = 0;
    SetFaultCallback(onFault);
    watchFrames();
}

SweepTest::~SweepTest() {
    SetFaultCallback(nullptr);
}

int SweepTest::open(int format) {
    SetVideoFormat(format);
    return openCamera(kIndexOfEarlier, kWidth, kHeight);
}

int SweepTest::openForOneFrame(int format) {
    addFrameFault(virtualcam::FaultKind::kStall, 2);
    watchFrames();
    return open(format);
}

void SweepTest::expectTheFrameSent(int format) const {
    ASSERT_TRUE(waitForFrames(1));
    const auto sent = virtualcam::lastFrame(earlier_);
    ASSERT_TRUE(sent);
    if (format == kMjpegFormat) {
        expectSameMjpeg(lastSeen(), *sent);
    } else {
        expectSameYuyv(lastSeen(), *sent);
    }
}

void SweepTest::inject(const CallFault& fault) {
    virtualcam::clearCalls();
    addCallFault(fault.request, fault.error, fault.at);
}

void SweepTest::expectStruck(const CallFault& fault) {
    int at = 0;
    for (const virtualcam::Call& call : virtualcam::calls()) {
        if (call.request == shortName(fault.request) && ++at == fault.at) {
            EXPECT_EQ(call.result, -1);
            EXPECT_EQ(call.error, fault.error);
            return;
        }
    }
    ADD_FAILURE() << "there were only " << at << " such calls";
}

std::string SweepTest::reasonOfTheEnd() {
    ends.wait(0);
    ends = 0;
    const std::lock_guard lock(reasonMutex);
    return std::exchange(reason, {});
}

void SweepTest::expectHeld(int nodes, int mappings) const {
    EXPECT_EQ(virtualcam::openHandles(), nodes);
    EXPECT_EQ(virtualcam::liveMappings(), mappings);
    EXPECT_EQ(descriptors(), descriptorsBefore_ + nodes);
}

void SweepTest::expectHealthySession(int format) {
    SCOPED_TRACE(format == kMjpegFormat ? "healthy, MJPEG" : "healthy, YUYV");
    virtualcam::clearFaults(earlier_);
    const virtualcam::SceneSettings usual = virtualcam::scene(earlier_);
    virtualcam::setScene(earlier_, otherScene());
    ASSERT_EQ(openForOneFrame(format), 0);
    expectTheFrameSent(format);
    EXPECT_EQ(closeCamera(), 0);
    expectHeld(0, 0);
    EXPECT_EQ(state().session.cam_fd.get(), UniqueFd::kNone);
    virtualcam::clearFaults(earlier_);
    virtualcam::resume(earlier_);
    virtualcam::setScene(earlier_, usual);
}

} // namespace doccam::test
