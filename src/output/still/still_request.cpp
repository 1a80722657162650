#include "output/still/still_request.h"

#include "base/pause.h"
#include "output/files/files.h"
#include "state/session.h"

#include <cstdio>

namespace doccam {
namespace {

constexpr int kMaximumWaitsForStill = 79;
constexpr int kMaximumWaitsForFile = 3;

bool isPending(const record::Session& session) {
    return session.isShootPhoto.load(std::memory_order_acquire) ||
           session.reportingFaults.load(std::memory_order_acquire);
}

bool hasStill(const record::Session& session) {
    return fileExists(session.imgSavePath.load().c_str());
}

} // namespace

int requestStill(record::Session& session, const char* path) {
    if (!session.bKeep.load(std::memory_order_acquire)) {
        return -1;
    }
    if (path == nullptr || !SharedPath::fits(path)) {
        std::puts("captureImage->path missing or too long");
        return -1;
    }
    session.imgSavePath.store(path);
    if (fileExists(path)) {
        std::remove(path);
    }
    session.isShootPhoto.store(true, std::memory_order_release);
    pollWhile([&] { return isPending(session); }, kMaximumWaitsForStill);
    // Deliberately waits while the file exists, not until it does.
    pollWhile([&] { return hasStill(session); }, kMaximumWaitsForFile);
    return 0;
}

} // namespace doccam
