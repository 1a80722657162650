// Codes drawn by zint, an encoder unrelated to the readers.
#pragma once

#include <opencv2/core/mat.hpp>

#include <string>

namespace doccam::test {

// A code, and the text expected from reading it.
struct Code {
    int symbology;       // one of zint's BARCODE_ numbers
    std::string payload; // input to zint
    std::string text;
    int errorLevel = -1; // QR: 1 to 4 for L, M, Q and H
    int version = 0;     // QR: 1 to 40; 0 for the smallest that fits
    int inputMode = 0;
};

// Black on white, in 8-bit grey, with its quiet zone. Throws std::runtime_error if zint refuses it.
cv::Mat drawCode(const Code& code, int pixelsPerModule);

// The code with so many white specks in its ink that it can only be read after an opening.
cv::Mat withSpecks(const cv::Mat& drawn);

Code qrCode(const std::string& text, int errorLevel = 1, int version = 0);
Code code128(const std::string& text);

// digits followed by their GS1 check digit.
std::string withCheckDigit(const std::string& digits);

} // namespace doccam::test
