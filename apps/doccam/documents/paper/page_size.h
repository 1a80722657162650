// The true size of a page, and how it is known.
#pragma once

#include <opencv2/core/types.hpp>

namespace doccam::host {

inline constexpr double kInch = 25.4; // millimetres

struct Millimetres {
    double width = 0; // as shown
    double height = 0;

    bool operator==(const Millimetres&) const = default;
};

// The surest first.
enum class DpiSource { kOption, kPaper, kCalibration, kFile, kGuess };

// In JSON.
constexpr const char* nameOf(DpiSource source) {
    constexpr const char* kNames[] = {"option", "paper", "calibration", "file", "guess"};
    return kNames[static_cast<int>(source)];
}

// Pixels per inch, which differ for both ways in faxes.
struct Density {
    double across = 0;
    double down = 0;
};

struct SizedPage {
    Millimetres size;
    double dpi = 0; // of its pixels, the mean of both ways
    DpiSource from = DpiSource::kGuess;
    Millimetres picture{}; // what its pixels cover, centred; the rest of the page is white

    // Whether somebody knows the size; a guess written into a picture would pass for it later.
    bool isKnown() const { return from != DpiSource::kGuess; }
};

inline Millimetres turned(Millimetres size, int quarters) {
    return quarters % 2 == 0 ? size : Millimetres{size.height, size.width};
}

inline Density densityOf(cv::Size pixels, Millimetres size) {
    return {pixels.width * kInch / size.width, pixels.height * kInch / size.height};
}

inline Millimetres sizeAt(cv::Size pixels, Density density) {
    return {pixels.width * kInch / density.across, pixels.height * kInch / density.down};
}

} // namespace doccam::host
