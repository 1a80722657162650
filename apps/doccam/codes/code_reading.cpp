#include "codes/code_reading.h"

#include "host/picture_file.h"

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
    const cv::Mat grey = readPicture(path, cv::IMREAD_GRAYSCALE);
    std::vector<Code> codes;
    for (const CodeKind kind : kinds) {
        if (std::string text = codeIn(path, grey, kind); !text.empty()) {
            codes.push_back({kind, std::move(text)});
        }
    }
    return codes;
}

// Asked for a code, the library would answer with an earlier text where no frame comes any more.
std::string liveCode(CameraSession& session, CodeKind kind) {
    return BarQrDecodePro(session.nextFrame(), static_cast<int>(kind));
}

} // namespace doccam::host
