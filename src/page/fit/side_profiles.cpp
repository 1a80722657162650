#include "page/fit/side_profiles.h"

#include <opencv2/core.hpp>

#include <algorithm>
#include <cmath>

namespace doccam::page {
namespace {

// The picture's colour between pixels.
cv::Vec3f colourBetween(const cv::Mat& picture, cv::Point2d place) {
    const int x = std::clamp(static_cast<int>(std::floor(place.x)), 0, picture.cols - 2);
    const int y = std::clamp(static_cast<int>(std::floor(place.y)), 0, picture.rows - 2);
    const auto right = static_cast<float>(std::clamp(place.x - x, 0.0, 1.0));
    const auto down = static_cast<float>(std::clamp(place.y - y, 0.0, 1.0));
    const int channels = picture.channels();
    const unsigned char* const top = picture.ptr(y) + std::ptrdiff_t{x} * channels;
    const unsigned char* const bottom = picture.ptr(y + 1) + std::ptrdiff_t{x} * channels;
    cv::Vec3f colour;
    for (int c = 0; c < 3; ++c) {
        const int i = std::min(c, channels - 1);
        const float above =
            static_cast<float>(top[i]) + right * static_cast<float>(top[i + channels] - top[i]);
        const float below = static_cast<float>(bottom[i]) +
                            right * static_cast<float>(bottom[i + channels] - bottom[i]);
        colour[c] = above + down * (below - above);
    }
    return colour;
}

} // namespace

SideProfiles::SideProfiles(const cv::Mat& picture, cv::Point2d from, cv::Point2d to)
  : picture_(picture)
  , from_(from)
  , along_(to - from)
  , inwards_(cv::Point2d(-along_.y, along_.x) / cv::norm(along_)) {}

cv::Point2d SideProfiles::placeOf(int profile) const {
    constexpr double kEnds = 0.02; // corners may be folded
    return from_ + along_ * (kEnds + (1 - 2 * kEnds) * (profile + 0.5) / kCount);
}

cv::Vec3f SideProfiles::colourAt(int profile, double offset) const {
    return colourBetween(picture_, placeOf(profile) + inwards_ * offset);
}

std::vector<cv::Vec3f> SideProfiles::coloursOf(int profile, int first, int last) const {
    // Means of three places along the side: an edge is longer than grain and noise.
    const cv::Point2d tangent = along_ * (1.5 / cv::norm(along_));
    const cv::Point2d foot = placeOf(profile);
    std::vector<cv::Vec3f> colours;
    colours.reserve(static_cast<std::size_t>(last - first) + 1);
    for (int offset = first; offset <= last; ++offset) {
        const cv::Point2d place = foot + inwards_ * static_cast<double>(offset);
        colours.push_back((colourBetween(picture_, place) +
                           colourBetween(picture_, place + tangent) +
                           colourBetween(picture_, place - tangent)) *
                          (1.0F / 3));
    }
    return colours;
}

cv::Vec3f SideProfiles::step(int reach) const {
    constexpr int kStride = 2; // half of the profiles tell
    cv::Vec3f sum;
    for (int i = 0; i < kCount; i += kStride) {
        const std::vector<cv::Vec3f> colours = coloursOf(i, -reach, reach);
        cv::Vec3f difference;
        for (int s = 1; s <= reach; ++s) {
            const auto middle = colours.begin() + reach;
            difference += middle[s] - middle[-s];
        }
        difference *= 1.0F / static_cast<float>(reach);
        sum += difference * (1 / (static_cast<float>(cv::norm(difference)) + 4));
    }
    const auto length = static_cast<float>(cv::norm(sum));
    return length > 0 ? sum * (1 / length) : cv::Vec3f(0.57F, 0.57F, 0.57F);
}

std::optional<SideProfiles::Edge> SideProfiles::edgeOf(int profile, const cv::Vec3f& step,
                                                       double expected, int reach) const {
    constexpr int kMargin = 3; // of the slope, and of its neighbours
    const int first = static_cast<int>(std::floor(expected)) - reach;
    const int last = static_cast<int>(std::ceil(expected)) + reach;
    const std::vector<cv::Vec3f> colours = coloursOf(profile, first - kMargin, last + kMargin);
    std::vector<double> slopes;
    for (std::size_t i = 2; i + 2 < colours.size(); ++i) {
        slopes.push_back(
            (2 * (colours[i + 1] - colours[i - 1]) + (colours[i + 2] - colours[i - 2])).dot(step) /
            8);
    }
    Edge best{0, 0};
    double bestValue = 0;
    for (int offset = first; offset <= last; ++offset) {
        const auto i = static_cast<std::size_t>(offset - first) + 1;
        const double distance = (offset - expected) / (reach + 1);
        const double value = slopes[i] * (1 - 0.5 * distance * distance);
        if (slopes[i] >= slopes[i - 1] && slopes[i] > slopes[i + 1] && value > bestValue) {
            const double bend = slopes[i - 1] - 2 * slopes[i] + slopes[i + 1];
            const double shift = bend < 0 ? 0.5 * (slopes[i - 1] - slopes[i + 1]) / bend : 0;
            best = {offset + shift, slopes[i]};
            bestValue = value;
        }
    }
    constexpr double kFaintest = 0.4;
    return best.strength > kFaintest ? std::optional(best) : std::nullopt;
}

} // namespace doccam::page
