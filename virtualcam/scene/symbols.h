// QR codes and Code 128 as pictures.
#pragma once

#include <opencv2/core.hpp>

#include <string>

namespace doccam::virtualcam {

// A black and white symbol with its quiet zone and modules of moduleSize pixels, blue first. Throws
// std::runtime_error for a text that the symbol cannot hold.
cv::Mat drawQrCode(const std::string& text, int moduleSize);
cv::Mat drawCode128(const std::string& text, int moduleSize);

} // namespace doccam::virtualcam
