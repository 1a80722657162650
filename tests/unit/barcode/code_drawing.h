// Codes as an independent encoder draws them.
#pragma once

#include <opencv2/core/mat.hpp>

#include <string>

namespace doccam::test {

// A code, and the text that reading it yields.
struct Code {
    int symbology;       // one of the encoder's BARCODE_ numbers
    std::string payload; // what the encoder takes
    std::string text;
    int errorLevel = -1; // QR: 1 to 4 for L, M, Q and H
    int version = 0;     // QR: 1 to 40; 0 for the smallest that fits
    int inputMode = 0;
};

// Black on white, in 8-bit grey, with its quiet zone. Throws std::runtime_error for what cannot be
// encoded.
cv::Mat drawCode(const Code& code, int pixelsPerModule);

// The code with so many white specks in its ink that only an opened picture shows it.
cv::Mat withSpecks(const cv::Mat& drawn);

Code qrCode(const std::string& text, int errorLevel = 1, int version = 0);
Code code128(const std::string& text);

// digits and the check digit that GS1 numbers end in.
std::string withCheckDigit(const std::string& digits);

} // namespace doccam::test
