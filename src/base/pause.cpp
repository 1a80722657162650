#include "base/pause.h"

#include <sys/select.h>

namespace doccam {

void pauseFor(int milliseconds) {
    timeval wait{.tv_sec = 0, .tv_usec = static_cast<suseconds_t>(milliseconds) * 1000};
    select(0, nullptr, nullptr, nullptr, &wait);
}

} // namespace doccam
