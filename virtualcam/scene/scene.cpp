#include "scene/scene.h"

#include "scene/desk_picture.h"

#include <opencv2/imgproc.hpp>

#include <cmath>
#include <map>
#include <mutex>
#include <utility>

namespace doccam::virtualcam {

namespace {

const cv::Scalar kDesk(38, 42, 46);
constexpr double kSheetRatio = 210.0 / 297.0;
constexpr int kNoiseTile = 512;

cv::Mat drawnNoise(double deviation, int pattern) {
    cv::RNG random(0x5eed0000ULL + static_cast<std::uint64_t>(pattern));
    cv::Mat tile(kNoiseTile, kNoiseTile, CV_16SC3);
    random.fill(tile, cv::RNG::NORMAL, cv::Scalar::all(0), cv::Scalar::all(deviation));
    return tile;
}

// Drawing a tile takes longer than adding it to a small picture.
cv::Mat noiseTile(double deviation, int pattern) {
    static std::mutex mutex;
    static auto& tiles = *new std::map<std::pair<double, int>, cv::Mat>;
    constexpr std::size_t kKept = 8;
    const std::lock_guard lock(mutex);
    if (tiles.size() > kKept) {
        tiles.clear();
    }
    cv::Mat& tile = tiles[{deviation, pattern}];
    if (tile.empty()) {
        tile = drawnNoise(deviation, pattern);
    }
    return tile;
}

} // namespace

std::array<cv::Point2f, 4> sheetCorners(const SceneSettings& settings, cv::Size picture) {
    if (!isPlain(settings)) {
        return cornersOnDesk(settings, picture);
    }
    const double height = settings.sheetHeight * picture.height;
    const double width = height * kSheetRatio;
    const double radians = settings.angle * CV_PI / 180.0;
    const double cosine = std::cos(radians);
    const double sine = std::sin(radians);
    const cv::Point2d centre(settings.centreX * picture.width, settings.centreY * picture.height);
    const auto corner = [&](double x, double y) {
        return cv::Point2f(static_cast<float>(centre.x + x * cosine - y * sine),
                           static_cast<float>(centre.y + x * sine + y * cosine));
    };
    return {corner(-width / 2, -height / 2), corner(width / 2, -height / 2),
            corner(width / 2, height / 2), corner(-width / 2, height / 2)};
}

cv::Mat drawScene(const SceneSettings& settings, cv::Size picture) {
    if (!isPlain(settings)) {
        return drawOnDesk(settings, picture);
    }
    cv::Mat sheet = flatSheet(settings);
    // The warp samples single points, so a sheet much larger than its image is shrunk first.
    const double ratio = settings.sheetHeight * picture.height / sheet.rows;
    if (ratio < 0.75) {
        cv::resize(sheet, sheet, {}, ratio, ratio, cv::INTER_AREA);
    }
    const auto corners = sheetCorners(settings, picture);
    const auto right = static_cast<float>(sheet.cols) - 0.5F;
    const auto bottom = static_cast<float>(sheet.rows) - 0.5F;
    const cv::Point2f from[3] = {{-0.5F, -0.5F}, {right, -0.5F}, {right, bottom}};
    const cv::Mat placing = cv::getAffineTransform(from, corners.data());
    cv::Mat scene(picture, CV_8UC3, kDesk);
    cv::warpAffine(sheet, scene, placing, picture, cv::INTER_LINEAR, cv::BORDER_TRANSPARENT);
    return scene;
}

void addSensorNoise(cv::Mat& picture, double deviation, int pattern) {
    if (deviation <= 0) {
        return;
    }
    const cv::Mat tile = noiseTile(deviation, pattern);
    for (int y = 0; y < picture.rows; y += kNoiseTile) {
        for (int x = 0; x < picture.cols; x += kNoiseTile) {
            const cv::Size part(std::min(kNoiseTile, picture.cols - x),
                                std::min(kNoiseTile, picture.rows - y));
            cv::Mat target = picture(cv::Rect({x, y}, part));
            cv::add(target, tile(cv::Rect({0, 0}, part)), target, cv::noArray(), CV_8U);
        }
    }
}

} // namespace doccam::virtualcam
