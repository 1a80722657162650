// Saving a finished page: the colour mode of the settings, the file type of the path.
#pragma once

#include "state/parts.h"

#include <opencv2/core/mat.hpp>

#include <string>

namespace doccam {

// Saves the blue-first page at target in the set colour mode, by the type that the last three
// characters of target name; nothing for a mode that is none. A file that could not be written is
// reported as a fault. Throws std::out_of_range for a target of fewer characters, and as
// writeImage().
void savePage(const std::string& target, const cv::Mat& page, const record::Settings& settings);

// Writes picture as the one page of a PDF at target, by way of a JPEG in the home directory, which
// stays. False when the document could not be made; throws as writeImage().
bool writeOnePagePdf(const std::string& target, const cv::Mat& picture,
                     const record::Settings& settings);

} // namespace doccam
