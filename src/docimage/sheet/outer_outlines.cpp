#include "docimage/sheet/outer_outlines.h"

#include <opencv2/core.hpp>

#include <array>
#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace doccam {
namespace {

// Labels of pixels. To the right of a pixel where an outline ends there is background, which tells
// the search, walking along rows, whether it is inside an outlined region.
constexpr unsigned char kUntouched = 1;
constexpr unsigned char kOutlined = 2;
constexpr unsigned char kOutlineEnds = 130;

bool isOutlined(unsigned char pixel) {
    return pixel > kUntouched;
}

constexpr int kDirections = 8;
constexpr int kWest = 4;

// From east, counter-clockwise as displayed.
constexpr std::array<std::array<int, 2>, kDirections> kSteps = {
    {{1, 0}, {1, -1}, {0, -1}, {-1, -1}, {-1, 0}, {-1, 1}, {0, 1}, {1, 1}}};

constexpr int inCircle(int direction) {
    return direction & (kDirections - 1);
}

// The distances of neighbours in memory.
class Neighbours {
  public:
    explicit Neighbours(std::ptrdiff_t step) {
        for (std::size_t i = 0; i < kSteps.size(); ++i) {
            offsets_[i] = kSteps[i][1] * step + kSteps[i][0];
        }
    }

    unsigned char* of(unsigned char* pixel, int direction) const {
        return pixel + offsets_[static_cast<std::size_t>(inCircle(direction))];
    }

  private:
    std::array<std::ptrdiff_t, kDirections> offsets_{};
};

// The first position from x on, up to end, whose pixel is not value.
int firstOther(const unsigned char* row, int x, int end, unsigned char value) {
    const std::uint64_t same = 0x0101010101010101U * value;
    for (std::uint64_t word = 0; x + int{sizeof word} <= end; x += int{sizeof word}) {
        std::memcpy(&word, row + x, sizeof word);
        if (word != same) {
            break;
        }
    }
    while (x < end && row[x] == value) {
        ++x;
    }
    return x;
}

// Adds the points of an outline whose last pixel lies in that direction of its first.
void followFurther(const Neighbours& neighbours, unsigned char* const first, int direction,
                   cv::Point at, std::vector<cv::Point>& points) {
    const unsigned char* const last = neighbours.of(first, direction);
    for (unsigned char* pixel = first;;) {
        const int cameFrom = direction;
        unsigned char* next = nullptr;
        do {
            next = neighbours.of(pixel, ++direction);
        } while (*next == 0);
        direction = inCircle(direction);
        const bool passedEast = direction != 0 && direction <= cameFrom;
        if (passedEast) {
            *pixel = kOutlineEnds;
        } else if (*pixel == kUntouched) {
            *pixel = kOutlined;
        }
        points.push_back(at);
        if (next == first && pixel == last) {
            return;
        }
        const auto& [dx, dy] = kSteps[static_cast<std::size_t>(direction)];
        at += cv::Point(dx, dy);
        pixel = next;
        direction = inCircle(direction + kWest);
    }
}

} // namespace

void OuterOutlines::search(cv::Mat& binary) {
    points_.clear();
    ends_.clear();
    const auto step = static_cast<std::ptrdiff_t>(binary.step);
    for (int y = 1; y < binary.rows - 1; ++y) {
        unsigned char* const row = binary.ptr(y);
        unsigned char latest = 0; // label of the last outlined pixel on this row
        unsigned char previous = 0;
        for (int x = 1; (x = firstOther(row, x, binary.cols - 1, previous)) < binary.cols - 1;
             ++x) {
            if (previous == 0 && row[x] == kUntouched && latest != kOutlined) {
                follow(row + x, step, {x, y});
            }
            previous = row[x];
            latest = isOutlined(previous) ? previous : latest;
        }
    }
}

// Walks around the region with the background on the left, until the first step repeats.
void OuterOutlines::follow(unsigned char* const first, std::ptrdiff_t step, cv::Point at) {
    const Neighbours neighbours(step);
    int direction = kWest;
    do {
        direction = inCircle(direction - 1);
    } while (*neighbours.of(first, direction) == 0 && direction != kWest);
    if (direction == kWest) { // a single pixel
        *first = kOutlineEnds;
        points_.push_back(at);
    } else {
        followFurther(neighbours, first, direction, at, points_);
    }
    ends_.push_back(points_.size());
}

std::span<const cv::Point> OuterOutlines::operator[](std::size_t number) const {
    const std::size_t begin = number == 0 ? 0 : ends_[number - 1];
    return std::span(points_).subspan(begin, ends_[number] - begin);
}

int enclosedArea(std::span<const cv::Point> outline) {
    std::int64_t doubled = 0;
    cv::Point previous = outline.back();
    for (const cv::Point point : outline) {
        doubled += std::int64_t{previous.x} * point.y - std::int64_t{previous.y} * point.x;
        previous = point;
    }
    return static_cast<int>(std::abs(doubled) / 2);
}

} // namespace doccam
