// Writing a picture as a file of the type of its extension.
#pragma once

#include <opencv2/core/mat.hpp>

#include <optional>
#include <string>

namespace doccam {

// Writes picture at path, completely or not at all, with the encoder for path's extension, a JPEG
// with the given quality. Returns false if the file could not be encoded or written. Throws
// cv::Exception, writing nothing, for an extension without an encoder (including an empty path) and
// for a picture that is empty or has neither 1, 3 nor 4 channels.
bool writeImage(const std::string& path, const cv::Mat& picture,
                std::optional<int> jpegQuality = std::nullopt);

} // namespace doccam
