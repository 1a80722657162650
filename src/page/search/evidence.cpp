#include "page/search/evidence.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace doccam::page {
namespace {

constexpr int kReducedSide = 640;
// Fainter changes are noise, in levels per pixel.
constexpr float kFaintest = 0.8F;

cv::Mat reduced(const cv::Mat& picture, int factor) {
    const cv::Size size(std::max(1, picture.cols / factor), std::max(1, picture.rows / factor));
    cv::Mat small;
    // Without the last incomplete blocks, every pixel is a plain mean.
    cv::resize(picture(cv::Rect({}, size * factor) & cv::Rect({}, picture.size())), small, size, 0,
               0, cv::INTER_AREA);
    return small;
}

// Paper differs from a desk in lightness, or, on a bright desk, in colour.
cv::Mat opponentColours(const cv::Mat& small) {
    cv::Mat colour(small.size(), CV_32FC3);
    for (int y = 0; y < small.rows; ++y) {
        const unsigned char* from = small.ptr(y);
        auto* to = colour.ptr<cv::Vec3f>(y);
        for (int x = 0; x < small.cols; ++x, from += small.channels()) {
            if (small.channels() == 1) {
                to[x] = {static_cast<float>(*from), 0, 0};
                continue;
            }
            const float blue = from[0];
            const float green = from[1];
            const float red = from[2];
            to[x] = {0.114F * blue + 0.587F * green + 0.299F * red, red - green,
                     blue - (red + green) / 2};
        }
    }
    cv::GaussianBlur(colour, colour, {5, 5}, 1.0);
    return colour;
}

struct Slopes {
    cv::Mat x, y;      // of the channel that changes most
    cv::Mat magnitude; // in levels per pixel
};

Slopes slopesOf(const cv::Mat& colour) {
    cv::Mat across;
    cv::Mat down;
    constexpr double kPerPixel = 1.0 / 32; // of Scharr's weights
    cv::Scharr(colour, across, CV_32F, 1, 0, kPerPixel);
    cv::Scharr(colour, down, CV_32F, 0, 1, kPerPixel);
    Slopes slopes{cv::Mat(colour.size(), CV_32F), cv::Mat(colour.size(), CV_32F),
                  cv::Mat(colour.size(), CV_32F)};
    for (int y = 0; y < colour.rows; ++y) {
        const auto* acrossRow = across.ptr<cv::Vec3f>(y);
        const auto* downRow = down.ptr<cv::Vec3f>(y);
        for (int x = 0; x < colour.cols; ++x) {
            float most = -1;
            for (int c = 0; c < 3; ++c) {
                const float square =
                    acrossRow[x][c] * acrossRow[x][c] + downRow[x][c] * downRow[x][c];
                if (square > most) {
                    most = square;
                    slopes.x.at<float>(y, x) = acrossRow[x][c];
                    slopes.y.at<float>(y, x) = downRow[x][c];
                }
            }
            slopes.magnitude.at<float>(y, x) = std::sqrt(most);
        }
    }
    return slopes;
}

// The larger of the magnitudes on both sides of the edge, one step away.
float besides(const Slopes& slopes, int x, int y) {
    const float stepX = slopes.x.at<float>(y, x);
    const float stepY = slopes.y.at<float>(y, x);
    int dx = std::abs(stepX) > 0.4F * std::abs(stepY) ? 1 : 0;
    const int dy = std::abs(stepY) > 0.4F * std::abs(stepX) ? 1 : 0;
    if (stepX * stepY < 0) {
        dx = -dx;
    }
    return std::max(slopes.magnitude.at<float>(y + dy, x + dx),
                    slopes.magnitude.at<float>(y - dy, x - dx));
}

void collectEdges(const Slopes& slopes, Evidence& evidence) {
    evidence.angles = cv::Mat(slopes.magnitude.size(), CV_32F, cv::Scalar(-1));
    constexpr int kBorder = 2;
    for (int y = kBorder; y < slopes.magnitude.rows - kBorder; ++y) {
        for (int x = kBorder; x < slopes.magnitude.cols - kBorder; ++x) {
            const float strength = slopes.magnitude.at<float>(y, x);
            if (strength < kFaintest || strength < besides(slopes, x, y)) {
                continue;
            }
            constexpr float kDegrees = 180 / std::numbers::pi_v<float>;
            float angle = std::atan2(slopes.y.at<float>(y, x), slopes.x.at<float>(y, x)) * kDegrees;
            angle = angle < 0 ? angle + 180 : angle;
            angle = angle >= 180 ? angle - 180 : angle;
            evidence.angles.at<float>(y, x) = angle;
            evidence.edges.push_back(
                {{static_cast<float>(x), static_cast<float>(y)}, angle, strength});
        }
    }
}

} // namespace

Evidence evidenceOf(const cv::Mat& picture) {
    Evidence evidence;
    const int longest = std::max(picture.cols, picture.rows);
    evidence.factor = std::max(1, (longest + kReducedSide / 2) / kReducedSide);
    evidence.colour = opponentColours(reduced(picture, evidence.factor));
    collectEdges(slopesOf(evidence.colour), evidence);
    return evidence;
}

} // namespace doccam::page
