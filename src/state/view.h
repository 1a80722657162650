// The preview's view and the buffer that its pictures are rendered into.
//
// "Host" below is any thread of the host, "stream" the streaming thread; what both touch is atomic.
#pragma once

#include <atomic>
#include <cstddef>

namespace doccam::record {

// Host writes, stream reads.
struct View {
    std::atomic<int> FormWidth{0}, FormHeight{0};
    std::atomic<int> FormStartX{0}, FormStartY{0};
    std::atomic<int> ShowWidth{0}, ShowHeight{0};
    std::atomic<int> ZoomWidth{0}, ZoomHeight{0};
    std::atomic<int> ZoomStartX{0}, ZoomStartY{0};
    std::atomic<int> VideoOffsetX{0}, VideoOffsetY{0};
    std::atomic<double> pZoomScale{50.0}; // percent
    std::atomic<double> pBestScale{50.0};

    std::atomic<unsigned char*> WEB_BUF{nullptr}; // the frames own the pixels
    std::atomic<std::size_t> previewBytes{0};     // their size; host sets it first
};

} // namespace doccam::record
