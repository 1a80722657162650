#include "codes/code_reading.h"

#include "host/failure.h"

#include <doccam/doccam.hpp>

#include <opencv2/imgcodecs.hpp>

namespace doccam::host {
namespace {

// One scan of the file is quick; the picture made binary in many ways is read where that fails.
std::string codeIn(const std::string& path, const cv::Mat& grey, CodeKind kind) {
    const int mode = static_cast<int>(kind);
    const char* text = RecogBarQrCodeFromFile(path.c_str(), mode);
    return text != nullptr && *text != '\0' ? text : GetQR(grey, mode);
}

} // namespace

std::string nameOf(CodeKind kind) {
    return kind == CodeKind::kQr ? "qr" : "bar";
}

std::vector<Code> codesInFile(const std::string& path, const std::vector<CodeKind>& kinds) {
    const cv::Mat grey = cv::imread(path, cv::IMREAD_GRAYSCALE);
    if (grey.empty()) {
        throw Failure(kUsage, "The file " + path +
                                  " is no readable picture; give JPEG, PNG, TIFF "
                                  "or BMP files.");
    }
    std::vector<Code> codes;
    for (const CodeKind kind : kinds) {
        if (std::string text = codeIn(path, grey, kind); !text.empty()) {
            codes.push_back({kind, std::move(text)});
        }
    }
    return codes;
}

std::string liveCode(CameraSession& session, CodeKind kind) {
    // A request that no frame answers would return the text of an earlier one.
    session.waitForFrames(1);
    return RecogBarQrCode(static_cast<int>(kind));
}

} // namespace doccam::host
