#include "output/still/still_request.h"

#include "base/pause.h"
#include "output/files/files.h"
#include "state/library_state.h"

#include <cstdio>

namespace doccam {
namespace {

constexpr int kMostWaitsForStill = 79;
constexpr int kMostWaitsForFile = 3;

bool isPending() {
    return state().session.isShootPhoto.load(std::memory_order_acquire) ||
           state().session.reportingFaults.load(std::memory_order_acquire);
}

bool hasStill() {
    return fileExists(state().session.imgSavePath.load().data());
}

} // namespace

int requestStill(const char* path) {
    if (!state().session.bKeep.load(std::memory_order_acquire)) {
        return -1;
    }
    if (path == nullptr || !SharedPath::fits(path)) {
        std::puts("captureImage->path missing or too long");
        return -1;
    }
    state().session.imgSavePath.store(path);
    if (fileExists(path)) {
        std::remove(path);
    }
    state().session.isShootPhoto.store(true, std::memory_order_release);
    pollWhile(isPending, kMostWaitsForStill);
    // Deliberately while the file is there, not until it is.
    pollWhile(hasStill, kMostWaitsForFile);
    return 0;
}

} // namespace doccam
