#include "barcode/recognition.h"

#include "base/pause.h"
#include "base/pictures/picture_file.h"
#include "state/session.h"

#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

#include <array>
#include <cstdio>
#include <mutex>
#include <string>
#include <utility>

namespace doccam {
namespace {

constexpr int kMaximumWaitsForCode = 199;

bool isPending(const record::Session& session) {
    return session.IsRecogBarQr.load(std::memory_order_acquire) != record::kNoCodeRequest ||
           session.reportingFaults.load(std::memory_order_acquire);
}

// Empty when there is no readable image at path.
cv::Mat readPicture(const char* path) {
    if (path == nullptr) {
        return {};
    }
    try {
        return readPictureFile(path, cv::IMREAD_COLOR);
    } catch (const cv::Exception&) {
        // A header may announce more pixels than OpenCV accepts.
        return {};
    }
}

// Keeps the texts last read from files. Never destroyed: a host may read one at process exit.
const char* keptText(std::string text) {
    constexpr std::size_t kKept = 16;
    static std::mutex mutex;
    static auto& texts = *new std::array<std::string, kKept>;
    static std::size_t next = 0;
    const std::lock_guard lock(mutex);
    std::string& slot = texts[next];
    next = (next + 1) % kKept;
    slot = std::move(text);
    return slot.c_str();
}

} // namespace

const char* requestCode(record::Session& session, int mode) {
    session.IsRecogBarQr.store(mode, std::memory_order_release);
    pollWhile([&] { return isPending(session); }, kMaximumWaitsForCode);
    return session.BarQrContent.current();
}

const char* readCodeFromFile(const char* path, CodeKind wanted) {
    std::puts("RecogBarQrCodeFromFile start\r");
    const cv::Mat picture = readPicture(path);
    if (picture.empty()) {
        std::puts("read image file error!!\r");
        return nullptr;
    }
    // A file's pixels are blue first, so red and blue swap their weights.
    cv::Mat grey;
    cv::cvtColor(picture, grey, cv::COLOR_RGB2GRAY);
    CodeScan scan = scanForCode(grey, wanted);
    if (!scan.anySymbol) {
        std::puts("No BarQrCode!!\r");
        return nullptr;
    }
    std::printf("resultStr:%s\r\n", scan.text.c_str());
    std::puts("RecogBarQrCodeFromFile end\r");
    return keptText(std::move(scan.text));
}

} // namespace doccam
