#include "capture/grab_size.h"

#include "state/session.h"

#include <cstdint>

namespace doccam {

void setGrabSize(record::Session& session, FrameSize size) {
    constexpr auto kRelaxed = std::memory_order_relaxed;
    session.nWidth.store(size.width, kRelaxed);
    session.nHeight.store(size.height, kRelaxed);
    const auto bytes =
        static_cast<std::uint32_t>(size.width) * static_cast<std::uint32_t>(size.height) * 3U;
    session.nSize.store(static_cast<int>(bytes), kRelaxed);
}

} // namespace doccam
