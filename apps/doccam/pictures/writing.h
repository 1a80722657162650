// Writing pictures into a work folder.
#pragma once

#include "host/output_file.h"

#include <opencv2/core.hpp>

#include <string>
#include <vector>

namespace doccam::host {

// Writes the picture at path, a part of target, as the type of path's extension; quality is for
// JPEG. Throws Failure if not all of it could be written.
void writePicture(const OutputFile& target, const std::string& path, const cv::Mat& picture,
                  int quality);

// The same, of a file's bytes.
void writeBytes(const OutputFile& target, const std::string& path,
                const std::vector<unsigned char>& bytes);

// The same, anywhere. Return false if not all of it could be written.
bool writeBytes(const std::string& path, const std::vector<unsigned char>& bytes);
bool writePicture(const std::string& path, const cv::Mat& picture, int quality);

} // namespace doccam::host
