// One scan of a grey picture for codes.
#pragma once

#include <opencv2/core/mat.hpp>

#include <string>

namespace doccam {

enum class CodeKind { kBar, kQr };

// A host's mode: 0 a bar code, anything else a QR code.
constexpr CodeKind codeKind(int mode) {
    return mode == 0 ? CodeKind::kBar : CodeKind::kQr;
}

struct CodeScan {
    bool anySymbol = false; // of any kind
    std::string text;       // of the first symbol of the wanted kind, byte for byte
};

// Scans an 8-bit grey picture. Finds nothing in an empty one or one of another type.
CodeScan scanForCode(const cv::Mat& grey, CodeKind wanted);

} // namespace doccam
