// Bar codes and QR codes in images.
#pragma once

#include "doccam.h"

#include <opencv2/core/mat.hpp>

#include <string>

// Each returns the bytes of one symbol, or an empty text if none was found. mode 0 selects the
// first symbol that is not a QR code, any other value the first QR code. Any thread. The image's
// pixels are not changed.

// Scans an 8-bit grey image once. Finds nothing in an empty image or one of another type.
DOCCAM_API std::string ZbarDecoder(cv::Mat gray, int mode);

// Scans a binary image, and if that finds nothing, once more after an opening by 3 x 3 pixels.
// Throws cv::Exception for an empty image.
DOCCAM_API std::string GetQRInBinImg(cv::Mat bin, int mode);

// Binarizes an 8-bit grey image in one way after another until a scan finds a text: by Otsu's
// threshold, by an adaptive one, then by Otsu's raised in steps of 20 up to 239. Throws
// cv::Exception for an image of another type.
DOCCAM_API std::string GetQR(cv::Mat gray, int mode);

// Reads a code from a red-first frame: GetQR on its grey image. Throws cv::Exception for an empty
// frame.
DOCCAM_API std::string BarQrDecodePro(cv::Mat frame, int mode);
