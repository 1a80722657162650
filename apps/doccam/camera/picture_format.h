// Pixel formats and frame sizes, and their textual forms.
#pragma once

#include <optional>
#include <string>

namespace doccam::host {

enum class Format { kMjpeg = 0, kYuyv = 1 }; // the values that SetVideoFormat takes

struct Size {
    int width = 0;
    int height = 0;

    bool operator==(const Size&) const = default;
};

inline long long area(Size size) {
    return static_cast<long long>(size.width) * size.height;
}

// "mjpeg" and "yuyv".
std::string nameOf(Format format);

// "1280x960".
std::string textOf(Size size);

// Parses WIDTHxHEIGHT, both 1 to 99999; none for any other text.
std::optional<Size> parseSize(const std::string& text);

} // namespace doccam::host
