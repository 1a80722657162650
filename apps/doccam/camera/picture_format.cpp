#include "camera/picture_format.h"

#include <charconv>
#include <string_view>

namespace doccam::host {
namespace {

constexpr int kLargestSide = 99999;

std::optional<int> parseSide(std::string_view text) {
    int value = 0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    const bool sound = error == std::errc() && stop == end && value >= 1 && value <= kLargestSide;
    return sound ? std::optional(value) : std::nullopt;
}

} // namespace

std::string nameOf(Format format) {
    return format == Format::kMjpeg ? "mjpeg" : "yuyv";
}

std::string textOf(Size size) {
    return std::to_string(size.width) + "x" + std::to_string(size.height);
}

std::optional<Size> parseSize(const std::string& text) {
    const auto cross = text.find('x');
    if (cross == std::string::npos) {
        return std::nullopt;
    }
    const std::string_view whole = text;
    const auto width = parseSide(whole.substr(0, cross));
    const auto height = parseSide(whole.substr(cross + 1));
    return width && height ? std::optional(Size{*width, *height}) : std::nullopt;
}

} // namespace doccam::host
