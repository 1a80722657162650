#include "documents/layers/background.h"

#include "base/pictures/jpeg_writer.h"
#include "documents/layers/coarse_page.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>

namespace doccam::host {
namespace {

constexpr double kPaleAsPaper = 247; // paler is paper
constexpr float kSeen = 0.15F;       // of a cell, enough to know its colour
constexpr int kFaintStep = 4;        // levels
constexpr int kFaintCells = 4;       // fewer are grain
constexpr int kFaintestPrint = 30;   // cells on a page: fewer are what ink left
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

cv::Mat dilated(const cv::Mat& mask) {
    cv::Mat wide;
    cv::dilate(mask, wide, squareKernel(3));
    return wide;
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

cv::Mat faintPrint(const cv::Mat& ground, const cv::Mat& hidden, int side) {
    cv::Mat under;
    cv::medianBlur(ground, under, side);
    cv::Mat apart;
    cv::absdiff(ground, under, apart);
    apart = largestChannel(apart);
    cv::Mat inked;
    cv::resize(hidden, inked, ground.size(), 0, 0, cv::INTER_AREA);
    const cv::Mat nearInk = dilated(dilated(inked > 0));
    cv::Mat labels;
    cv::Mat stats;
    cv::Mat centres;
    cv::Mat found = (apart >= kFaintStep) & ~nearInk;
    // At the page's edge, what lies beside the sheet shows.
    cv::rectangle(found, {0, 0, found.cols, found.rows}, cv::Scalar::all(0), 3);
    const int count = cv::connectedComponentsWithStats(found, labels, stats, centres, 8, CV_32S);
    cv::Mat strokes = cv::Mat::zeros(ground.size(), CV_8U);
    for (int label = 1; label < count; ++label) {
        if (stats.at<int>(label, cv::CC_STAT_AREA) >= kFaintCells) {
            const cv::Rect box(
                stats.at<int>(label, cv::CC_STAT_LEFT), stats.at<int>(label, cv::CC_STAT_TOP),
                stats.at<int>(label, cv::CC_STAT_WIDTH), stats.at<int>(label, cv::CC_STAT_HEIGHT));
            strokes(box).setTo(255, labels(box) == label);
        }
    }
    if (cv::countNonZero(strokes) < kFaintestPrint) {
        return cv::Mat::zeros(ground.size(), CV_8U);
    }
    return dilated(strokes) & ~nearInk;
}

void removeRemains(cv::Mat& ground, int side, const cv::Mat& kept) {
    cv::Mat clean;
    cv::medianBlur(ground, clean, side);
    cv::Mat paper;
    cv::inRange(clean, cv::Scalar::all(kPaleAsPaper), cv::Scalar::all(255), paper);
    clean.setTo(cv::Scalar::all(255), paper);
    clean.copyTo(ground, kept == 0);
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
