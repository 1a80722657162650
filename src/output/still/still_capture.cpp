// Taking a still: the host's request, and the streaming thread's answer.
#include "api/boundary.h"
#include "api/library_state.h"
#include "api/poll.h"
#include "output/files/files.h"
#include "output/still/still.h"

#include <doccam/doccam.hpp>

#include <cstdio>

namespace {

using doccam::fileExists;
using doccam::pollWhile;
using doccam::SharedPath;
using doccam::state;

constexpr int kMostWaitsForStill = 79;
constexpr int kMostWaitsForFile = 3;

bool isPending() {
    return state().isShootPhoto.load(std::memory_order_acquire) ||
           state().tellingFaults.load(std::memory_order_acquire);
}

bool hasStill() {
    return fileExists(state().imgSavePath.load().data());
}

int requestStill(const char* path) {
    if (!state().bKeep.load(std::memory_order_acquire)) {
        return -1;
    }
    if (path == nullptr || !SharedPath::fits(path)) {
        std::puts("captureImage->path missing or too long");
        return -1;
    }
    state().imgSavePath.store(path);
    if (fileExists(path)) {
        std::remove(path);
    }
    state().isShootPhoto.store(true, std::memory_order_release);
    pollWhile(isPending, kMostWaitsForStill);
    // Deliberately while the file is there, not until it is.
    pollWhile(hasStill, kMostWaitsForFile);
    return 0;
}

} // namespace

int captureImage(const char* path) {
    return doccam::guarded("captureImage", -1, [path] { return requestStill(path); });
}

int capture(char* path, int /*format*/, int cropMode, cv::Mat img) {
    doccam::saveStill(doccam::prepareStill(path != nullptr ? path : "", cropMode, img));
    return 0;
}
