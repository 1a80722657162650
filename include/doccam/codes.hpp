// Bar codes and QR codes in images.
#pragma once

#include "doccam.h"

#include <opencv2/core/mat.hpp>

#include <string>

// Each returns the bytes of one symbol, and the empty text when none was found. mode 0 takes the
// first symbol that is no QR code, any other value the first QR code. Any thread. Images keep their
// pixels.

// Scans an 8-bit grey image once. An image of another type, or an empty one, shows no symbol.
DOCCAM_API std::string ZbarDecoder(cv::Mat gray, int mode);

// Scans a binary image, and once more after an opening by 3 x 3 pixels if that yields nothing.
// Throws cv::Exception for an empty image.
DOCCAM_API std::string GetQRInBinImg(cv::Mat bin, int mode);

// Scans an 8-bit grey image made binary in one way after the other until a text is found: Otsu's
// threshold, an adaptive one, then Otsu's raised by steps of 20 up to 239. Throws cv::Exception for
// an image of another type.
DOCCAM_API std::string GetQR(cv::Mat gray, int mode);

// Reads a code from a red-first frame: GetQR on its grey image. Throws cv::Exception for an empty
// frame.
DOCCAM_API std::string BarQrDecodePro(cv::Mat frame, int mode);
