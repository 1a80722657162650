// Saving a finished page in the set colour mode and the path's file type.
#pragma once

#include "state/parts.h"

#include <opencv2/core/mat.hpp>

#include <optional>
#include <string>

namespace doccam {

// Saves the blue-first page in the set colour mode, nothing in an invalid one, as the type given by
// target's last three characters. Reports a fault if it cannot be written. Throws std::out_of_range
// for a shorter target, and like writeImage().
void savePage(const std::string& target, const cv::Mat& page, const record::Settings& settings);

// The same, of a picture that is in its colour mode already.
void savePicture(const std::string& target, const cv::Mat& picture,
                 const record::Settings& settings);

// The blue-first page in a colour mode, none for an invalid one. Throws like cv::cvtColor.
std::optional<cv::Mat> pictureInMode(const cv::Mat& page, int colorMode);

// Writes picture as a one-page PDF at target, through a JPEG that remains in the home directory.
// False if the document could not be made; throws like writeImage().
bool writeOnePagePdf(const std::string& target, const cv::Mat& picture,
                     const record::Settings& settings);

} // namespace doccam
