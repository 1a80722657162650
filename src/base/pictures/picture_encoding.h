// Encoding pictures as files of every type like OpenCV: JPEG and PNG here, the others in the module
// of formats.
#pragma once

#include <opencv2/core/mat.hpp>

#include <optional>
#include <string>
#include <vector>

namespace doccam {

// Like cv::imencode for name's extension, a JPEG with the given quality, if any. Throws
// cv::Exception for an extension without an encoder, for a picture that is empty or has neither 1,
// 3 nor 4 channels, and for one that cannot be encoded; and ModuleError.
std::vector<unsigned char> encodePicture(const std::string& name, const cv::Mat& picture,
                                         std::optional<int> jpegQuality = std::nullopt);

// Whether there is an encoder for name's extension. Throws ModuleError.
bool canEncode(const std::string& name);

} // namespace doccam
