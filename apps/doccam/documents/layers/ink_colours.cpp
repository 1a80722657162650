#include "documents/layers/ink_colours.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numeric>

namespace doccam::host {
namespace {

constexpr std::size_t kMaximumColours = 14;
constexpr float kAlike = 15;            // of the distances below
constexpr float kLightnessShare = 0.3F; // thin strokes are seen paler than thick ones of their ink
constexpr float kPale = 55;             // lightness: of paler ink, more of it counts
constexpr float kPaleShare = 1.3F;
constexpr int kRounds = 4;
constexpr int kFewPixels = 40;

float counted(float lightness) {
    return kLightnessShare * std::min(lightness, kPale) +
           kPaleShare * std::max(lightness - kPale, 0.0F);
}

float distance(const cv::Vec3f& a, const cv::Vec3f& b) {
    return std::hypot(counted(a[0]) - counted(b[0]), a[1] - b[1], a[2] - b[2]);
}

std::size_t nearest(const std::vector<cv::Vec3f>& palette, const cv::Vec3f& colour) {
    std::size_t best = 0;
    for (std::size_t i = 1; i < palette.size(); ++i) {
        if (distance(palette[i], colour) < distance(palette[best], colour)) {
            best = i;
        }
    }
    return best;
}

// A colour for each kind of piece, beginning with the largest.
std::vector<cv::Vec3f> firstPalette(const std::vector<InkPiece>& pieces) {
    std::vector<std::size_t> order(pieces.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::stable_sort(order.begin(), order.end(), [&](std::size_t one, std::size_t other) {
        return pieces[one].area > pieces[other].area;
    });
    std::vector<cv::Vec3f> palette;
    for (const std::size_t i : order) {
        const InkPiece& piece = pieces[i];
        const bool known = !palette.empty() &&
                           distance(palette[nearest(palette, piece.colour)], piece.colour) < kAlike;
        if (piece.area > 0 && (palette.empty() || (!known && piece.area >= kFewPixels))) {
            palette.push_back(piece.colour);
        }
        if (palette.size() == kMaximumColours) {
            break;
        }
    }
    return palette;
}

// Moves each colour to the mean of the pieces that are nearest to it, and drops those without any.
// The pieces furthest from the ground show their ink best.
std::vector<cv::Vec3f> settled(std::vector<cv::Vec3f> palette, const std::vector<InkPiece>& pieces,
                               bool light) {
    for (int round = 0; round < kRounds && !palette.empty(); ++round) {
        std::vector<cv::Vec4f> sums(palette.size());
        for (const InkPiece& piece : pieces) {
            const float depth = light ? piece.colour[0] : 100 - piece.colour[0];
            const float weight = static_cast<float>(piece.area) * depth * depth;
            const cv::Vec3f weighted = weight * piece.colour;
            sums[nearest(palette, piece.colour)] +=
                cv::Vec4f(weighted[0], weighted[1], weighted[2], weight);
        }
        palette.clear();
        for (const cv::Vec4f& sum : sums) {
            const cv::Vec3f mean = cv::Vec3f(sum[0], sum[1], sum[2]) / std::max(sum[3], 1.0F);
            if (sum[3] > 0 &&
                (palette.empty() || distance(palette[nearest(palette, mean)], mean) > kAlike / 2)) {
                palette.push_back(mean);
            }
        }
    }
    return palette;
}

cv::Vec3b inBytes(const cv::Vec3f& lab) {
    cv::Mat colour(1, 1, CV_32FC3, cv::Scalar(lab[0], lab[1], lab[2]));
    cv::cvtColor(colour, colour, cv::COLOR_Lab2BGR);
    colour.convertTo(colour, CV_8U, 255);
    return colour.at<cv::Vec3b>(0);
}

} // namespace

std::vector<Ink> inksByColour(const cv::Mat& mask, const InkedPage& inked, bool light) {
    const InkPieces found = inkPieces(mask, inked, light);
    std::vector<Ink> inks;
    const std::vector<cv::Vec3f> palette = settled(firstPalette(found.pieces), found.pieces, light);
    inks.reserve(palette.size());
    for (const cv::Vec3f& colour : palette) {
        inks.push_back({cv::Mat::zeros(mask.size(), CV_8U), inBytes(colour)});
    }
    std::vector<std::size_t> inkOf;
    inkOf.reserve(found.pieces.size());
    for (const InkPiece& piece : found.pieces) {
        inkOf.push_back(nearest(palette, piece.colour));
    }
    std::vector<unsigned char*> rows(inks.size());
    for (int y = 0; y < mask.rows; ++y) {
        const int* numbers = found.numbers.ptr<int>(y);
        std::transform(inks.begin(), inks.end(), rows.begin(),
                       [&](Ink& ink) { return ink.mask.ptr<unsigned char>(y); });
        for (int x = 0; x < mask.cols; ++x) {
            if (numbers[x] >= 0 && found.pieces[static_cast<std::size_t>(numbers[x])].area > 0) {
                rows[inkOf[static_cast<std::size_t>(numbers[x])]][x] = 255;
            }
        }
    }
    return inks;
}

} // namespace doccam::host
