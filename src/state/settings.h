// What the host sets, and the callbacks it registers.
//
// "Host" below is any thread of the host, "stream" the streaming thread; what both touch is atomic.
#pragma once

#include <doccam/types.h>

#include <atomic>

namespace doccam::record {

// Of pageEngine: what finds the sheet and makes stills.
inline constexpr int kContractEngine = 0;
inline constexpr int kPageEngine = 1;

// Single relaxed values that take effect at their next use. Host writes, stream reads.
struct Settings {
    std::atomic<int> CameraFormat{1}; // 0 MJPEG, else YUYV
    std::atomic<int> cutType{0};
    std::atomic<int> colorMode{0};
    std::atomic<int> fileFormat{0};
    std::atomic<int> jpgQuality{85};
    std::atomic<int> isDelBlackedge{0};
    std::atomic<int> isDelBcakColor{0};
    std::atomic<int> RotateAngle{0};
    std::atomic<int> RotateFlag{0}; // frames still to drop after a turn
    std::atomic<int> pageEngine{kContractEngine};

    // Host sets the first two once, the third at any time; stream calls.
    std::atomic<FrameCallback> pGetVideoStream{nullptr};
    std::atomic<WebFrameCallback> pGetVideoWebStream{nullptr};
    std::atomic<FaultCallback> faultCallback{nullptr};
};

inline constexpr int kCropToSheet = 1; // of cutType

} // namespace doccam::record
