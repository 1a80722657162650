#include "documents/layers/local_contrast.h"

#include "documents/layers/dark_grounds.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>

namespace doccam::host {
namespace {

constexpr double kNeighbourhood = 1.6; // millimetres: as far as the depth of ink is alike
constexpr double kGroundWindow = 6;    // millimetres: what is mostly light there has dark print
constexpr double kInkShare = 0.24;     // of the way from the ground to the ink
constexpr int kFaintest = 20;          // levels from the ground
constexpr int kReverses = 60;          // levels from a dark ground to its light print
constexpr int kFillEdge = 7;           // cells, from outside of a fill to its plain inside
constexpr int kDarkerPrint = 30;       // levels, than the fill it is on
constexpr int kNoLight = 255;
constexpr double kLightShare = 0.4;    // of the pixels between light and dark
constexpr double kReversedReach = 2.4; // millimetres, across
constexpr double kPlainShare = 0.08;   // of the cells nearby

// How far ink is from the ground around each cell, to where it begins.
cv::Mat depthOfBegin(const CoarsePage& coarse, const cv::Mat& contrast) {
    const int side = oddCells(coarse, kNeighbourhood);
    cv::Mat depth;
    cv::dilate(contrast, depth, squareKernel(side));
    cv::blur(depth, depth, {3, 3});
    depth.convertTo(depth, CV_8U, kInkShare);
    return cv::max(depth, kFaintest);
}

// 255 where light print stands on a dark ground: most pixels are dark, and some of the ground is
// without print.
cv::Mat reversed(const cv::Mat& grey, const CoarsePage& coarse) {
    const cv::Mat between = (coarse.bright - coarse.dark > kReverses) & (coarse.dark < kDarkGround);
    cv::Mat plain = coarse.bright < kDarkGround;
    if (cv::countNonZero(plain) == 0) {
        return plain;
    }
    cv::Mat middle;
    cv::addWeighted(coarse.bright, 0.5, coarse.dark, 0.5, 0, middle);
    cv::Mat light;
    cv::resize(grey > stretched(middle, coarse, grey.size(), 1), light, between.size(), 0, 0,
               cv::INTER_AREA);
    light.setTo(0, ~between);
    const int side = oddCells(coarse, kGroundWindow);
    const auto mean = [&](const cv::Mat& values) {
        cv::Mat means;
        cv::boxFilter(values, means, CV_32F, {side, side});
        return means;
    };
    cv::Mat found =
        between & (mean(light) < kLightShare * mean(between)) & (mean(plain) > 255 * kPlainShare);
    cv::dilate(found, found, squareKernel(oddCells(coarse, kReversedReach)));
    return found & (coarse.dark < kDarkGround);
}

} // namespace

InkLevels inkLevels(const cv::Mat& grey, const CoarsePage& coarse, const cv::Mat& pictures) {
    InkLevels levels;
    // At the edge of a fill, the ground is the darker of both sides, so that the edge is no ink.
    cv::Mat ground;
    cv::erode(coarse.bright, ground, squareKernel(3));
    levels.darkBelow = ground - depthOfBegin(coarse, ground - coarse.darkest);
    const cv::Mat light = reversed(grey, coarse);
    cv::dilate(coarse.dark, ground, squareKernel(3));
    levels.onDarkGround = ground + depthOfBegin(coarse, coarse.lightest - ground);
    levels.onDarkGround.setTo(kNoLight, pictures);
    levels.lightAbove = levels.onDarkGround.clone();
    levels.lightAbove.setTo(kNoLight, ~light);
    levels.darkBelow.setTo(0, light | pictures);
    const cv::Mat dark = darkGrounds(coarse, pictures);
    levels.onDarkGround.copyTo(levels.lightAbove, dark);
    // Dark print on them is darker still.
    cv::morphologyEx(coarse.dark, ground, cv::MORPH_CLOSE,
                     squareKernel(oddCells(coarse, kThickestStroke)));
    cv::Mat(ground - kDarkerPrint).copyTo(levels.darkBelow, dark);
    levels.anyLight = cv::countNonZero(levels.lightAbove < kNoLight) > 0;
    return levels;
}

void adaptToFills(InkLevels& levels, const cv::Mat& ground, const cv::Mat& covered,
                  const cv::Mat& inside) {
    cv::Mat grey = ground;
    if (ground.channels() == 3) {
        cv::cvtColor(ground, grey, cv::COLOR_BGR2GRAY);
    }
    // At the edge, the fill itself is the darkest.
    cv::erode(grey, grey, squareKernel(kFillEdge));
    const cv::Mat darker = cv::min(levels.darkBelow, grey - kDarkerPrint);
    darker.copyTo(levels.darkBelow, covered);
    levels.onDarkGround.copyTo(levels.lightAbove, inside);
    levels.anyLight = levels.anyLight || cv::countNonZero(inside) > 0;
}

} // namespace doccam::host
