// Writing a density into a picture file that has been made here.
#pragma once

#include "documents/paper/page_size.h"

#include <vector>

namespace doccam::host {

// Lets the bytes of a file that encodePicture() or pngOfBits() made, and thus has none, carry the
// density: a JPEG in whole pixels per inch and, if these are not exact, in Exif data too; a PNG in
// whole pixels per metre; a TIFF in thousandths of pixels per inch.
// Files of other types stay as they are.
void stampDensity(std::vector<unsigned char>& file, Density density);

// The same of the page's density, unless it is a guess.
void stampDensity(std::vector<unsigned char>& file, cv::Size pixels, const SizedPage& page);

} // namespace doccam::host
