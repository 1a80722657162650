#include "scene/desks/desk.h"

#include "scene/desks/textures.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cmath>
#include <map>

namespace doccam::virtualcam {

namespace {

// Matt lacquer: nearly one colour, cloudy, with fine grain.
cv::Mat lacquer(cv::Size pixels, double scale, const cv::Scalar& colour, double clouds,
                double grain, cv::RNG& random) {
    const cv::Mat pattern = clouds * smoothNoise(pixels, {60 * scale, 60 * scale}, random) +
                            grain * smoothNoise(pixels, {0.4 * scale, 0.4 * scale}, random);
    return coloured(pattern, colour, cv::Scalar::all(1));
}

cv::Scalar tinted(double level, double spread, cv::RNG& random) {
    cv::Scalar colour;
    for (int i = 0; i < 3; ++i) {
        colour[i] = level + random.uniform(-spread, spread);
    }
    return colour;
}

cv::Mat speckledGrey(cv::Size pixels, double scale, cv::RNG& random) {
    cv::Mat picture =
        lacquer(pixels, scale, tinted(random.uniform(100.0, 165.0), 8, random), 1.5, 3, random);
    const int spots = static_cast<int>(pixels.area() / (scale * scale) / 20);
    for (int i = 0; i < spots; ++i) {
        const cv::Point at(random.uniform(0, pixels.width), random.uniform(0, pixels.height));
        const cv::Scalar colour = cv::Scalar::all(random.uniform(70.0, 200.0));
        cv::circle(picture, at, std::max(1, cvRound(random.uniform(0.1, 0.35) * scale)), colour,
                   cv::FILLED, cv::LINE_AA);
    }
    return picture;
}

} // namespace

std::optional<Desk> deskNamed(const std::string& name) {
    static const std::map<std::string, Desk> kNames{{"dark", Desk::kDark},
                                                    {"wood", Desk::kWood},
                                                    {"grey", Desk::kGrey},
                                                    {"white", Desk::kNearlyWhite},
                                                    {"cloth", Desk::kCloth}};
    const auto found = kNames.find(name);
    return found == kNames.end() ? std::nullopt : std::optional(found->second);
}

cv::Mat drawDesk(Desk desk, cv::Size pixels, double pixelsPerMillimetre, cv::RNG& random) {
    const double scale = pixelsPerMillimetre;
    switch (desk) {
    case Desk::kDark:
        return lacquer(pixels, scale, tinted(random.uniform(22.0, 62.0), 9, random), 1.5, 1.5,
                       random);
    case Desk::kWood:
        return drawWood(pixels, scale, random);
    case Desk::kGrey:
        return speckledGrey(pixels, scale, random);
    case Desk::kNearlyWhite:
        return lacquer(pixels, scale, tinted(random.uniform(208.0, 231.0), 4, random), 0.8, 0.8,
                       random);
    case Desk::kCloth:
        return drawCloth(pixels, scale, random);
    }
    return {};
}

} // namespace doccam::virtualcam
