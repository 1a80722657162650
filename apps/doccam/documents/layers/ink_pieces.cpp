#include "documents/layers/ink_pieces.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <unordered_map>

namespace doccam::host {
namespace {

constexpr double kInchInMillimetres = 25.4;
constexpr double kLargeStroke = 6; // millimetres: wider or higher than most letters
constexpr double kTile = 2;        // millimetres: a part of such a stroke
constexpr double kSpeck = 0.14;    // millimetres: the side of the largest speck

constexpr double kGrain = 0.6;    // millimetres: the side of the largest grain of paper
constexpr float kFaint = 14;      // lightness, from the ground
constexpr float kPaleGround = 60; // lightness

constexpr int kNone = -1;
constexpr int kInTiles = -2;

// Gives the strokes of a mask numbers, and large ones a number for each tile that they cross.
class Numbering {
  public:
    Numbering(const cv::Mat& stats, double dotsPerMillimetre)
      : tile_(std::max(1, cvRound(kTile * dotsPerMillimetre))) {
        const double large = kLargeStroke * dotsPerMillimetre;
        const double speck = kSpeck * kSpeck * dotsPerMillimetre * dotsPerMillimetre;
        numbers_.push_back(kNone);
        for (int label = 1; label < stats.rows; ++label) {
            const auto stat = [&](int which) { return stats.at<int>(label, which); };
            const int side = std::max(stat(cv::CC_STAT_WIDTH), stat(cv::CC_STAT_HEIGHT));
            if (stat(cv::CC_STAT_AREA) <= speck) {
                numbers_.push_back(kNone);
            } else {
                numbers_.push_back(side > large ? kInTiles : count_++);
            }
        }
    }

    int at(int label, int x, int y) {
        const int number = numbers_[static_cast<std::size_t>(label)];
        if (number != kInTiles) {
            return number;
        }
        const std::int64_t tile = (std::int64_t{label} << 32) | (y / tile_ << 16) | x / tile_;
        const auto [place, isNew] = tiles_.try_emplace(tile, count_);
        count_ += isNew ? 1 : 0;
        return place->second;
    }

    int count() const { return count_; }

  private:
    int tile_;
    int count_ = 0;
    std::vector<int> numbers_;
    std::unordered_map<std::int64_t, int> tiles_;
};

cv::Vec3b pixelAt(const cv::Mat& picture, int y, int x) {
    return picture.channels() == 1 ? cv::Vec3b::all(picture.at<unsigned char>(y, x))
                                   : picture.at<cv::Vec3b>(y, x);
}

// Over the pixels of a piece. The further a pixel is from white, or with light ink from black, the
// more it counts: those at the edges of strokes are mixed with the ground.
struct Sums {
    cv::Vec3d colour;
    cv::Vec3d ground;
    double weight = 0;
    int area = 0;

    void add(const cv::Vec3b& pixel, const cv::Vec3b& under, bool light) {
        const int level = (pixel[0] + 2 * pixel[1] + pixel[2]) / 4;
        const double depth = 1 + (light ? level : 255 - level);
        const double counts = depth * depth * depth * depth * depth;
        colour += counts * cv::Vec3d(pixel);
        ground += counts * cv::Vec3d(under);
        weight += counts;
        ++area;
    }
};

// The column or row of a picture for each of the mask.
std::vector<int> placesIn(int pictureCount, int count) {
    std::vector<int> places;
    places.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
        places.push_back(static_cast<int>((i + 0.5) * pictureCount / count));
    }
    return places;
}

// Reads a picture at the mask's pixels.
class PictureUnder {
  public:
    PictureUnder(const cv::Mat& picture, cv::Size mask)
      : picture_(picture)
      , columns_(placesIn(picture.cols, mask.width))
      , rows_(placesIn(picture.rows, mask.height)) {}

    cv::Vec3b at(int y, int x) const {
        return pixelAt(picture_, rows_[static_cast<std::size_t>(y)],
                       columns_[static_cast<std::size_t>(x)]);
    }

  private:
    const cv::Mat& picture_;
    std::vector<int> columns_;
    std::vector<int> rows_;
};

// Thin strokes are seen mixed with their ground, as black ones on yellow: takes out its tint.
cv::Vec3f withoutTint(const cv::Vec3f& ink, const cv::Vec3f& ground) {
    if (ground[0] < kPaleGround && ink[0] < ground[0]) {
        return ink;
    }
    const float strength = ground[1] * ground[1] + ground[2] * ground[2];
    const float along = ink[1] * ground[1] + ink[2] * ground[2];
    const float share = strength > 0 ? std::clamp(along / strength, 0.0F, 1.0F) : 0.0F;
    return {ink[0], ink[1] - share * ground[1], ink[2] - share * ground[2]};
}

std::vector<InkPiece> piecesOf(const std::vector<Sums>& sums, double dotsPerMillimetre) {
    const double grain = kGrain * kGrain * dotsPerMillimetre * dotsPerMillimetre;
    std::vector<InkPiece> pieces;
    if (sums.empty()) {
        return pieces;
    }
    cv::Mat colours(2, static_cast<int>(sums.size()), CV_32FC3);
    for (int i = 0; i < colours.cols; ++i) {
        const Sums& sum = sums[static_cast<std::size_t>(i)];
        colours.at<cv::Vec3f>(0, i) = sum.colour / (255 * sum.weight);
        colours.at<cv::Vec3f>(1, i) = sum.ground / (255 * sum.weight);
    }
    cv::cvtColor(colours, colours, cv::COLOR_BGR2Lab);
    for (int i = 0; i < colours.cols; ++i) {
        const auto& ink = colours.at<cv::Vec3f>(0, i);
        const auto& ground = colours.at<cv::Vec3f>(1, i);
        const int area = sums[static_cast<std::size_t>(i)].area;
        const bool isGrain = area < grain && cv::norm(ink - ground) < kFaint;
        pieces.push_back({withoutTint(ink, ground), isGrain ? 0 : area});
    }
    return pieces;
}

} // namespace

InkPieces inkPieces(const cv::Mat& mask, const InkedPage& inked, bool light) {
    InkPieces found;
    cv::Mat stats;
    cv::Mat centres;
    cv::connectedComponentsWithStats(mask, found.numbers, stats, centres, 8, CV_32S);
    const double dotsPerMillimetre = inked.dpi * mask.cols / inked.page.cols / kInchInMillimetres;
    Numbering numbering(stats, dotsPerMillimetre);
    const PictureUnder page(inked.page, mask.size());
    const PictureUnder ground(inked.ground, mask.size());
    std::vector<Sums> sums(static_cast<std::size_t>(numbering.count()));
    for (int y = 0; y < mask.rows; ++y) {
        int* numbers = found.numbers.ptr<int>(y);
        for (int x = 0; x < mask.cols; ++x) {
            numbers[x] = numbers[x] == 0 ? kNone : numbering.at(numbers[x], x, y);
            if (numbers[x] != kNone) {
                sums.resize(static_cast<std::size_t>(numbering.count()));
                sums[static_cast<std::size_t>(numbers[x])].add(page.at(y, x), ground.at(y, x),
                                                               light);
            }
        }
    }
    found.pieces = piecesOf(sums, dotsPerMillimetre);
    return found;
}

cv::Mat withoutGrain(const cv::Mat& mask, const InkedPage& inked, bool light) {
    cv::Mat ink = cv::Mat::zeros(mask.size(), CV_8U);
    if (cv::countNonZero(mask) == 0) {
        return ink;
    }
    const InkPieces found = inkPieces(mask, inked, light);
    for (int y = 0; y < mask.rows; ++y) {
        const int* numbers = found.numbers.ptr<int>(y);
        auto* row = ink.ptr<unsigned char>(y);
        for (int x = 0; x < mask.cols; ++x) {
            const bool isInk =
                numbers[x] != kNone && found.pieces[static_cast<std::size_t>(numbers[x])].area > 0;
            row[x] = isInk ? 255 : 0;
        }
    }
    return ink;
}

} // namespace doccam::host
