// One camera session: its node, its buffers, its frames, and the requests that its frames answer.
//
// "Host" below is any thread of the host, "stream" the streaming thread; what both touch is atomic.
#pragma once

#include "state/shared_text.h"

#include <linux/videodev2.h>
#include <opencv2/core/mat.hpp>
#include <sys/types.h>

#include <array>
#include <atomic>
#include <cstddef>
#include <memory>

namespace doccam {

struct MjpegDecoder;
class StreamingThread;

} // namespace doccam

namespace doccam::record {

inline constexpr int kNoCodeRequest = -99;
inline constexpr int kNoDescriptor = -1;
inline constexpr pid_t kNoProcess = 0;
inline constexpr int kBufferCount = 5;

using BufferPointer = unsigned char*;

// Host writes while no streaming thread runs, stream reads, but where said otherwise.
struct Session {
    std::atomic<int> cam_fd{kNoDescriptor}; // getCameraName may take it away in mid-stream
    std::atomic<bool> bKeep{false};         // a session is streaming
    int buffer_count = kBufferCount;        // never changes
    std::unique_ptr<BufferPointer[]> video_buffer_ptr{new BufferPointer[kBufferCount]{}};
    std::array<std::size_t, kBufferCount> mappedLength{}; // bytes mapped at each of these pointers
    char pix_format[64] = {};
    std::atomic<int> nWidth{0};
    std::atomic<int> nHeight{0};
    std::atomic<int> nSize{0};
    std::atomic<bool> isInsert1000M{false};
    std::atomic<MjpegDecoder*> pdecode{nullptr};
    std::shared_ptr<StreamingThread> streamingThread;
    pid_t sessionProcess = kNoProcess; // opened it; a forked child is another

    // Stream only, while its thread runs.
    cv::Mat srcimage;  // nWidth x nHeight
    cv::Mat roimage;   // the same turned by a quarter
    cv::Mat zoomimage; // a second preview; a destination prepared elsewhere

    // Host only. ctrl keeps the control used last.
    v4l2_queryctrl qctrl{};
    v4l2_control ctrl{};

    // Hand-shakes: host raises with release, stream answers with release.
    std::atomic<bool> isShootPhoto{false};
    SharedPath imgSavePath;
    std::atomic<int> IsRecogBarQr{kNoCodeRequest};
    PublishedText BarQrContent;
    std::atomic<bool> reportingFaults{false}; // a request that failed is answered after the report
};

} // namespace doccam::record
