// Whitening the dark margins of image files in place.
#pragma once

namespace doccam {

// Everything that is not nearly black counts as sheet. A file that cannot be written stays as it
// is. Throws cv::Exception for one that cannot be read.
void whitenMarginsOfFile(const char* path);

// The same, but the sheet is what the picture's own brightness separates from the rest; the turn
// that a JPEG's EXIF data asks for is left out.
void whitenMarginsOfFileByBrightness(const char* path);

} // namespace doccam
