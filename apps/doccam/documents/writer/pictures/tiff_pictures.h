// TIFF files, which may have several pictures.
#pragma once

#include "documents/writer/pictures/picture_bytes.h"

#include <opencv2/core.hpp>

#include <string>
#include <vector>

namespace doccam::host {

// Whether bytes, or those of a file, begin a TIFF.
bool isTiff(const Bytes& bytes);
bool isTiffFile(const std::string& file);

// What the file says of each of its pictures, those of reduced size left out, all of which are
// decoded. Throws DocumentError for one that is damaged.
std::vector<PictureFacts> tiffPictures(const std::string& file);

// What it says of one of them. Throws DocumentError.
PictureFacts tiffPicture(const std::string& file, int part);

// One of them as stored, 8-bit, grey or blue first, on white paper; two colours as 0 and 255.
// Throws DocumentError.
cv::Mat readTiff(const std::string& file, int part);

// The same as an image, two colours as CCITT G4.
ImageStream tiffImage(const std::string& file, int part);

} // namespace doccam::host
