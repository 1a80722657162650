#include "codes/passes/likely_codes.h"

#include "codes/corners.h"
#include "codes/passes/code_cells.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace doccam::codes {
namespace {

constexpr std::size_t kMaximumCodes = 32;
constexpr double kLargestPicture = 4e6; // pixels; larger ones are reduced

// Cells of one pattern that touch each other.
struct Patch {
    Pattern pattern = Pattern::kNone;
    std::vector<cv::Point> cells;
    double cosine = 0; // of twice the angle across the bars, summed
    double sine = 0;
    double ink = 0; // summed
};

bool isAlike(const Cell& one, const Cell& other) {
    constexpr float kTurn = 0.35F; // radians
    if (one.pattern != other.pattern) {
        return false;
    }
    const float apart = std::abs(one.angle - other.angle);
    return one.pattern == Pattern::kMatrix ||
           std::min(apart, static_cast<float>(CV_PI) - apart) < kTurn;
}

// Takes the cells off the picture.
Patch patchFrom(CodeCells& all, cv::Point start) {
    Patch patch;
    patch.pattern = all.at(start.x, start.y).pattern;
    std::vector<std::pair<cv::Point, Cell>> open{{start, all.at(start.x, start.y)}};
    all.at(start.x, start.y).pattern = Pattern::kNone;
    while (!open.empty()) {
        const auto [place, cell] = open.back();
        open.pop_back();
        patch.cells.push_back(place);
        patch.ink += cell.ink;
        patch.cosine += std::cos(2.0 * cell.angle);
        patch.sine += std::sin(2.0 * cell.angle);
        for (int y = std::max(place.y - 1, 0); y <= std::min(place.y + 1, all.rows - 1); ++y) {
            for (int x = std::max(place.x - 1, 0); x <= std::min(place.x + 1, all.columns - 1);
                 ++x) {
                Cell& next = all.at(x, y);
                if (next.pattern != Pattern::kNone && isAlike(cell, next)) {
                    open.emplace_back(cv::Point(x, y), next);
                    next.pattern = Pattern::kNone;
                }
            }
        }
    }
    return patch;
}

void leaveOut(CodeCells& all, const Sightings& read, double scale) {
    for (const Sighting& code : read) {
        Corners reduced = code.corners;
        for (cv::Point2d& corner : reduced) {
            corner *= scale;
        }
        const cv::Rect2d bounds = boundsOf(reduced);
        constexpr int kSide = CodeCells::kSide;
        const auto cellAt = [](double place, int count) {
            return std::clamp(static_cast<int>(place / kSide), 0, std::max(count - 1, 0));
        };
        for (int y = cellAt(bounds.y - 2 * kSide, all.rows);
             y <= cellAt(bounds.br().y + 2 * kSide, all.rows) && y < all.rows; ++y) {
            for (int x = cellAt(bounds.x - 2 * kSide, all.columns);
                 x <= cellAt(bounds.br().x + 2 * kSide, all.columns) && x < all.columns; ++x) {
                const cv::Point2d middle((x + 0.5) * kSide, (y + 0.5) * kSide);
                if (contains(reduced, middle, 1.5 * kSide)) {
                    all.at(x, y).pattern = Pattern::kNone;
                }
            }
        }
    }
}

// The rectangle around the cells' squares, in the given direction.
Corners rectangleOf(const Patch& patch, cv::Point2d across) {
    const cv::Point2d along(-across.y, across.x);
    double low[2] = {1e300, 1e300};
    double high[2] = {-1e300, -1e300};
    for (const cv::Point cell : patch.cells) {
        const cv::Point2d middle =
            (cv::Point2d(cell) + cv::Point2d(0.5, 0.5)) * double{CodeCells::kSide};
        const double places[2] = {middle.dot(across), middle.dot(along)};
        for (std::size_t i = 0; i < 2; ++i) {
            low[i] = std::min(low[i], places[i]);
            high[i] = std::max(high[i], places[i]);
        }
    }
    constexpr double kHalf = CodeCells::kSide / 2.0;
    const auto corner = [&](double place, double below) { return across * place + along * below; };
    return {corner(low[0] - kHalf, low[1] - kHalf), corner(high[0] + kHalf, low[1] - kHalf),
            corner(high[0] + kHalf, high[1] + kHalf), corner(low[0] - kHalf, high[1] + kHalf)};
}

// Text is in lines, drawings are thin; codes fill rectangles.
bool looksLikeCode(const Patch& patch, const Corners& place) {
    constexpr double kFilled = 0.5;
    constexpr double kLeastInk = 0.34; // letters have less
    constexpr double kMostInk = 0.75;
    const double width = cv::norm(place[1] - place[0]);
    const double height = cv::norm(place[3] - place[0]);
    const double area =
        static_cast<double>(patch.cells.size()) * CodeCells::kSide * CodeCells::kSide;
    const double ink = patch.ink / static_cast<double>(patch.cells.size());
    if (area < kFilled * width * height || ink < kLeastInk || ink > kMostInk) {
        return false;
    }
    if (patch.pattern == Pattern::kBars) {
        return width >= 40 && height >= 12;
    }
    constexpr double kLongest = 6; // times as long as high
    return std::min(width, height) >= 20 &&
           std::max(width, height) <= kLongest * std::min(width, height);
}

Corners placeOf(const Patch& patch) {
    if (patch.pattern == Pattern::kBars) {
        const double angle = 0.5 * std::atan2(patch.sine, patch.cosine);
        return rectangleOf(patch, {std::cos(angle), std::sin(angle)});
    }
    std::vector<cv::Point2d> squares;
    for (const cv::Point cell : patch.cells) {
        for (const cv::Point corner : {cv::Point(0, 0), {1, 0}, {0, 1}, {1, 1}}) {
            squares.emplace_back((cell + corner) * CodeCells::kSide);
        }
    }
    return rectangleAround(squares, {1, 0});
}

double areaOf(const LikelyCode& code) {
    return cv::norm(code.place[1] - code.place[0]) * cv::norm(code.place[3] - code.place[0]);
}

void sortBySize(std::vector<LikelyCode>& codes) {
    std::sort(codes.begin(), codes.end(), [](const LikelyCode& one, const LikelyCode& other) {
        return areaOf(one) > areaOf(other);
    });
}

// The patches that look like codes; takes them off the cells.
std::vector<LikelyCode> likelyIn(CodeCells all) {
    constexpr std::size_t kFewest = 4; // cells
    std::vector<LikelyCode> found;
    for (int y = 0; y < all.rows; ++y) {
        for (int x = 0; x < all.columns; ++x) {
            if (all.at(x, y).pattern == Pattern::kNone) {
                continue;
            }
            const Patch patch = patchFrom(all, {x, y});
            if (patch.cells.size() < kFewest) {
                continue;
            }
            const Corners place = placeOf(patch);
            if (looksLikeCode(patch, place)) {
                found.push_back({place, patch.pattern == Pattern::kBars});
            }
        }
    }
    return found;
}

// The bars of a PDF417 and what is between them make one code: the same patterns taken together,
// where that makes larger patches.
std::vector<LikelyCode> likelyTogether(CodeCells all, const std::vector<LikelyCode>& apart) {
    constexpr double kLarger = 1.2;
    for (Cell& cell : all.cells) {
        cell.pattern = cell.pattern == Pattern::kNone ? Pattern::kNone : Pattern::kMatrix;
    }
    std::vector<LikelyCode> found = likelyIn(std::move(all));
    const auto isKnown = [&](const LikelyCode& code) {
        return std::any_of(apart.begin(), apart.end(), [&](const LikelyCode& other) {
            return contains(other.place, middleOf(code.place)) &&
                   areaOf(code) < kLarger * areaOf(other);
        });
    };
    found.erase(std::remove_if(found.begin(), found.end(), isKnown), found.end());
    return found;
}

} // namespace

std::vector<LikelyCode> likelyCodes(const cv::Mat& grey, const Sightings& read) {
    cv::Mat reduced = grey;
    const double scale =
        std::min(1.0, std::sqrt(kLargestPicture / (static_cast<double>(grey.cols) * grey.rows)));
    if (scale < 1) {
        cv::resize(grey, reduced, cv::Size(), scale, scale, cv::INTER_AREA);
    }
    CodeCells all = codeCells(reduced);
    leaveOut(all, read, scale);
    std::vector<LikelyCode> found = likelyIn(all);
    std::vector<LikelyCode> together = likelyTogether(std::move(all), found);
    sortBySize(found);
    sortBySize(together);
    std::stable_partition(found.begin(), found.end(),
                          [](const LikelyCode& code) { return code.bars; });
    found.insert(found.end(), together.begin(), together.end());
    for (LikelyCode& code : found) {
        for (cv::Point2d& corner : code.place) {
            corner /= scale;
        }
    }
    found.resize(std::min(found.size(), kMaximumCodes));
    return found;
}

} // namespace doccam::codes
