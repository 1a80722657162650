#include "documents/layers/background.h"

#include "base/pictures/jpeg_writer.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>

namespace doccam::host {
namespace {

constexpr double kPaleAsPaper = 247; // paler is paper
constexpr float kSeen = 0.15F;       // of a cell, enough to know its colour
constexpr int kLeastQuality = 40;
constexpr int kQualityStep = 10;

// Fills the cells without weight from those around: each level of a pyramid from the next.
void fillHoles(cv::Mat& colour, cv::Mat& weight) {
    if (std::max(colour.cols, colour.rows) <= 1 || cv::countNonZero(weight == 0) == 0) {
        return;
    }
    const cv::Size half((colour.cols + 1) / 2, (colour.rows + 1) / 2);
    cv::Mat smallColour;
    cv::Mat smallWeight;
    cv::resize(colour, smallColour, half, 0, 0, cv::INTER_AREA);
    cv::resize(weight, smallWeight, half, 0, 0, cv::INTER_AREA);
    fillHoles(smallColour, smallWeight);
    cv::Mat filled;
    cv::resize(smallColour, filled, colour.size(), 0, 0, cv::INTER_LINEAR);
    cv::Mat filledWeight;
    cv::resize(smallWeight, filledWeight, colour.size(), 0, 0, cv::INTER_LINEAR);
    filled.copyTo(colour, weight == 0);
    filledWeight.copyTo(weight, weight == 0);
}

cv::Mat inChannels(const cv::Mat& weight, int channels) {
    cv::Mat all;
    cv::merge(std::vector<cv::Mat>(static_cast<std::size_t>(channels), weight), all);
    return all;
}

} // namespace

cv::Mat groundOf(const cv::Mat& page, const cv::Mat& hidden, cv::Size size) {
    cv::Mat seen = page.clone();
    seen.setTo(cv::Scalar::all(0), hidden);
    cv::Mat colour;
    cv::resize(seen, colour, size, 0, 0, cv::INTER_AREA);
    colour.convertTo(colour, CV_32F);
    cv::Mat weight;
    cv::resize(hidden == 0, weight, size, 0, 0, cv::INTER_AREA);
    weight.convertTo(weight, CV_32F, 1 / 255.0);
    const cv::Mat unseen = weight < kSeen;
    weight.setTo(0, unseen);
    colour.setTo(cv::Scalar::all(0), unseen);
    fillHoles(colour, weight);
    cv::divide(colour, inChannels(weight, page.channels()), colour);
    cv::Mat ground;
    colour.convertTo(ground, page.type());
    return ground;
}

void removeRemains(cv::Mat& ground, int side, const cv::Mat& pictures) {
    cv::Mat clean;
    cv::medianBlur(ground, clean, side);
    cv::Mat paper;
    cv::inRange(clean, cv::Scalar::all(kPaleAsPaper), cv::Scalar::all(255), paper);
    clean.setTo(cv::Scalar::all(255), paper);
    cv::Mat elsewhere;
    cv::resize(pictures, elsewhere, ground.size(), 0, 0, cv::INTER_NEAREST);
    clean.copyTo(ground, elsewhere == 0);
}

bool isWhite(const cv::Mat& ground) {
    return cv::countNonZero(ground.reshape(1) != 255) == 0;
}

std::vector<unsigned char> encodedGround(const cv::Mat& ground, int quality,
                                         std::size_t maximumBytes) {
    auto file = jpegOf(ground, quality, JpegCoding::kSmallest);
    while (file && file->size() > maximumBytes && quality - kQualityStep >= kLeastQuality) {
        quality -= kQualityStep;
        file = jpegOf(ground, quality, JpegCoding::kSmallest);
    }
    return file.value_or(std::vector<unsigned char>());
}

} // namespace doccam::host
