#include "page/search/evidence/evidence.h"

#include "page/search/evidence/reduced_colours.h"
#include "page/search/evidence/roughness.h"

#include <opencv2/core/utility.hpp>
#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cmath>

namespace doccam::page {
namespace {

constexpr int kReducedSide = 640;
// Fainter changes are noise, in levels per pixel.
constexpr float kFaintest = 0.8F;

struct Slopes {
    cv::Mat x, y;      // of the channel that changes most
    cv::Mat magnitude; // in levels per pixel
};

void slopesOfRow(const cv::Mat& across, const cv::Mat& down, int y, Slopes& slopes) {
    const auto* acrossRow = across.ptr<cv::Vec3f>(y);
    const auto* downRow = down.ptr<cv::Vec3f>(y);
    auto* const slopeX = slopes.x.ptr<float>(y);
    auto* const slopeY = slopes.y.ptr<float>(y);
    auto* const magnitude = slopes.magnitude.ptr<float>(y);
    for (int x = 0; x < across.cols; ++x) {
        float most = -1;
        for (int c = 0; c < 3; ++c) {
            const float square = acrossRow[x][c] * acrossRow[x][c] + downRow[x][c] * downRow[x][c];
            if (square > most) {
                most = square;
                slopeX[x] = acrossRow[x][c];
                slopeY[x] = downRow[x][c];
            }
        }
        magnitude[x] = std::sqrt(most);
    }
}

Slopes slopesOf(const cv::Mat& colour) {
    cv::Mat across;
    cv::Mat down;
    constexpr double kPerPixel = 1.0 / 32; // of Scharr's weights
    cv::Scharr(colour, across, CV_32F, 1, 0, kPerPixel);
    cv::Scharr(colour, down, CV_32F, 0, 1, kPerPixel);
    Slopes slopes{cv::Mat(colour.size(), CV_32F), cv::Mat(colour.size(), CV_32F),
                  cv::Mat(colour.size(), CV_32F)};
    cv::parallel_for_({0, colour.rows}, [&](const cv::Range& rows) {
        for (int y = rows.start; y < rows.end; ++y) {
            slopesOfRow(across, down, y, slopes);
        }
    });
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
    evidence.directions = cv::Mat(slopes.magnitude.size(), CV_16S, cv::Scalar(kNoEdge));
    constexpr float kEnough = 6; // steeper edges count no more
    constexpr int kBorder = 2;
    for (int y = kBorder; y < slopes.magnitude.rows - kBorder; ++y) {
        const auto* const magnitude = slopes.magnitude.ptr<float>(y);
        for (int x = kBorder; x < slopes.magnitude.cols - kBorder; ++x) {
            const float strength = magnitude[x];
            if (strength < kFaintest || strength < besides(slopes, x, y)) {
                continue;
            }
            const float direction =
                cv::fastAtan2(slopes.y.at<float>(y, x), slopes.x.at<float>(y, x));
            evidence.directions.at<short>(y, x) = static_cast<short>(cvRound(direction) % 360);
            evidence.edges.push_back({{static_cast<float>(x), static_cast<float>(y)},
                                      direction,
                                      0.3F + 0.7F * std::min(strength / kEnough, 1.0F)});
        }
    }
}

// A side of a sheet stands alone on most of its way, other than the rows of a page's print.
void weighByCrowd(Evidence& evidence) {
    constexpr int kWindow = 15;
    constexpr float kCrowded = 0.20F; // part of the pixels; a lone line has 1 in 15
    cv::Mat isEdge = evidence.directions != kNoEdge;
    cv::Mat density;
    cv::boxFilter(isEdge, density, CV_32F, {kWindow, kWindow}, {-1, -1}, true);
    for (EdgePixel& edge : evidence.edges) {
        const float crowd = density.at<float>(edge.place) / 255 / kCrowded;
        edge.weight /= 1 + crowd * crowd;
    }
}

} // namespace

void Evidence::forgetWithin(const Corners& corners) {
    constexpr int kBeside = 3; // pixels, to where the sides' own edges reach
    std::vector<cv::Point> outline;
    for (const cv::Point2d corner : corners) {
        outline.emplace_back(cvRound(corner.x), cvRound(corner.y));
    }
    cv::Mat within(directions.size(), CV_8U, cv::Scalar(0));
    cv::fillConvexPoly(within, outline, cv::Scalar(255));
    cv::polylines(within, outline, true, cv::Scalar(255), 2 * kBeside + 1);
    directions.setTo(kNoEdge, within);
    edges.erase(std::remove_if(edges.begin(), edges.end(),
                               [&](const EdgePixel& edge) {
                                   return within.at<unsigned char>(edge.place) != 0;
                               }),
                edges.end());
}

Evidence evidenceOf(const cv::Mat& picture) {
    Evidence evidence;
    const int longest = std::max(picture.cols, picture.rows);
    evidence.factor = std::max(1, (longest + kReducedSide / 2) / kReducedSide);
    cv::GaussianBlur(reducedColours(picture, evidence.factor), evidence.colour, {5, 5}, 1.0);
    evidence.roughness = roughnessOf(evidence.colour);
    collectEdges(slopesOf(evidence.colour), evidence);
    weighByCrowd(evidence);
    return evidence;
}

} // namespace doccam::page
