// The camera session: its node, its buffers, its frames, its thread, and the requests it serves.
//
// "Host" below is any thread of the host, "stream" the streaming thread; what both touch is atomic.
#pragma once

#include "base/unique_fd.h"
#include "state/frames.h"
#include "state/shared_text.h"

#include <linux/videodev2.h>
#include <sys/types.h>

#include <array>
#include <atomic>
#include <cstddef>
#include <memory>
#include <mutex>

namespace doccam {

struct MjpegDecoder;
class StreamingThread;

} // namespace doccam

namespace doccam::record {

inline constexpr int kNoCodeRequest = -99;
inline constexpr pid_t kNoProcess = 0;
inline constexpr int kBufferCount = 5;

using BufferPointer = unsigned char*;

// Host writes while no streaming thread runs, stream reads, except where noted.
struct Session {
    UniqueFd cam_fd;                 // getCameraName may take it away in mid-stream
    std::atomic<bool> bKeep{false};  // a session is streaming
    int buffer_count = kBufferCount; // never changes
    std::unique_ptr<BufferPointer[]> video_buffer_ptr{new BufferPointer[kBufferCount]{}};
    std::array<std::size_t, kBufferCount> mappedLength{}; // bytes mapped at each of these pointers
    char pix_format[64] = {};
    std::atomic<int> nWidth{0};
    std::atomic<int> nHeight{0};
    std::atomic<int> nSize{0};
    std::atomic<bool> isInsert1000M{false};
    std::atomic<MjpegDecoder*> pdecode{nullptr};
    std::mutex framesMutex; // held to replace frames, and to publish a preview buffer in them
    std::shared_ptr<Frames> frames = std::make_shared<Frames>();
    std::shared_ptr<StreamingThread> streamingThread;
    pid_t sessionProcess = kNoProcess; // the process that opened it, not a forked child

    // Host only. ctrl keeps the control used last.
    v4l2_queryctrl qctrl{};
    v4l2_control ctrl{};

    // Handshakes: the host sets with release, the stream clears with release.
    std::atomic<bool> isShootPhoto{false};
    SharedPath imgSavePath;
    std::atomic<int> IsRecogBarQr{kNoCodeRequest};
    PublishedText BarQrContent;
    std::atomic<bool> reportingFaults{false}; // a failed request is answered after its report
};

} // namespace doccam::record
