#include "capture/grab_size.h"

#include "state/library_state.h"

#include <cstdint>

namespace doccam {

void setGrabSize(LibraryState& library, FrameSize size) {
    constexpr auto kRelaxed = std::memory_order_relaxed;
    library.nWidth.store(size.width, kRelaxed);
    library.nHeight.store(size.height, kRelaxed);
    const auto bytes =
        static_cast<std::uint32_t>(size.width) * static_cast<std::uint32_t>(size.height) * 3U;
    library.nSize.store(static_cast<int>(bytes), kRelaxed);
}

} // namespace doccam
