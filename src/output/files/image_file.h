// Writing a picture as a file whose type follows from its name.
#pragma once

#include <opencv2/core/mat.hpp>

#include <optional>
#include <string>

namespace doccam {

// Writes picture at path, complete or not at all, by the encoder that path's extension names, a
// JPEG with the given quality. False when the file could not be encoded or written. Throws
// cv::Exception, and writes nothing, for an extension without encoder (an empty path too) and for a
// picture that is empty or has neither 1, 3 nor 4 channels.
bool writeImage(const std::string& path, const cv::Mat& picture,
                std::optional<int> jpegQuality = std::nullopt);

} // namespace doccam
