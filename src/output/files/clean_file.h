// Whitening the dark margins of image files in place.
#pragma once

namespace doccam {

// Everything that is not nearly black counts as sheet. A file that cannot be written is left
// unchanged. Throws cv::Exception for one that cannot be read.
void whitenMarginsOfFile(const char* path);

// The same, but sheet and margins are separated by the picture's own brightness, and a JPEG's EXIF
// orientation is ignored.
void whitenMarginsOfFileByBrightness(const char* path);

} // namespace doccam
