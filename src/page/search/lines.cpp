#include "page/search/lines.h"

#include "page/search/votes.h"

#include <opencv2/core/utility.hpp>

#include <algorithm>
#include <cmath>
#include <optional>

namespace doccam::page {
namespace {

constexpr std::size_t kMaximumLines = 128;
constexpr double kBorderSupport = 0.55;

struct Range {
    double from;
    double to;
};

// The part of a line in which both coordinates are in the picture.
Range inPicture(const Line& line, cv::Size picture) {
    const cv::Point2d foot = line.at(0);
    const cv::Point2d direction = line.direction();
    Range range{-1e9, 1e9};
    const auto limit = [&](double at, double step, double size) {
        constexpr double kLevel = 1e-12;
        if (std::abs(step) < kLevel) {
            range = at < 0 || at > size - 1 ? Range{0, -1} : range;
            return;
        }
        const double one = -at / step;
        const double other = (size - 1 - at) / step;
        range = {std::max(range.from, std::min(one, other)),
                 std::min(range.to, std::max(one, other))};
    };
    limit(foot.x, direction.x, picture.width);
    limit(foot.y, direction.y, picture.height);
    return range;
}

double degreesOf(cv::Point2d normal) {
    return cv::fastAtan2(static_cast<float>(normal.y), static_cast<float>(normal.x));
}

enum class Edge { kNone, kUpwards, kDownwards };

// Which edge along a line of that normal is at place.
Edge edgeAt(const cv::Mat& directions, cv::Point2d place, int angle, int tolerance) {
    const int x = cvRound(place.x);
    const int y = cvRound(place.y);
    if (x < 0 || y < 0 || x >= directions.cols || y >= directions.rows) {
        return Edge::kNone;
    }
    const int there = directions.at<short>(y, x);
    if (there == kNoEdge) {
        return Edge::kNone;
    }
    const int turn = (there - angle + 720) % 360;
    if (turn <= tolerance || turn >= 360 - tolerance) {
        return Edge::kUpwards;
    }
    return std::abs(turn - 180) <= tolerance ? Edge::kDownwards : Edge::kNone;
}

// The line through the edge pixels near a voted one.
Line fitted(const Line& line, const Evidence& evidence) {
    constexpr int kNear = 2;
    constexpr int kNearAngle = 8;
    const int angle = static_cast<int>(std::lround(degreesOf(line.normal())));
    const Range range = inPicture(line, evidence.directions.size());
    double count = 0, a = 0, b = 0, aa = 0, ab = 0;
    for (int step = 0; step <= range.to - range.from; ++step) {
        const double along = range.from + step;
        const cv::Point2d middle = line.at(along);
        for (int across = -kNear; across <= kNear; ++across) {
            if (edgeAt(evidence.directions, middle + line.normal() * double(across), angle,
                       kNearAngle) != Edge::kNone) {
                ++count;
                a += along;
                b += across;
                aa += along * along;
                ab += along * across;
            }
        }
    }
    const double spread = aa * count - a * a;
    if (count < 2 || spread <= 0) {
        return line;
    }
    const double slope = (ab * count - a * b) / spread;
    const double start = (b - slope * a) / count;
    const auto at = [&](double along) {
        return line.at(along) + line.normal() * (start + slope * along);
    };
    return Line::through(at(range.from), at(range.to));
}

// Whether both run within a pixel or two of each other through the picture.
bool isSame(const Line& one, const Line& other, cv::Size picture) {
    constexpr double kNear = 2.5;
    const Range range = inPicture(one, picture);
    const auto apart = [&](double along) {
        return std::abs(one.at(along).dot(other.normal()) - other.distance());
    };
    return apart(range.from) < kNear && apart(range.to) < kNear;
}

// Voted lines beside one edge become the same when they are fitted to it.
std::vector<Line> differentFitted(const Evidence& evidence, std::size_t maximum) {
    std::vector<Line> lines;
    for (const Line& voted : votedLines(evidence, 3 * maximum)) {
        const Line line = fitted(voted, evidence);
        if (std::none_of(lines.begin(), lines.end(), [&](const Line& other) {
                return isSame(line, other, evidence.directions.size());
            })) {
            lines.push_back(line);
        }
        if (lines.size() >= maximum) {
            break;
        }
    }
    return lines;
}

} // namespace

SupportedLine::SupportedLine(const Line& line, const Evidence& evidence)
  : Line(line) {
    constexpr int kNearAngle = 14;
    const int angle = static_cast<int>(std::lround(degreesOf(normal())));
    const Range range = inPicture(line, evidence.directions.size());
    start_ = range.from;
    counts_.emplace_back();
    for (int step = 0; step <= range.to - range.from; ++step) {
        const double place = range.from + step;
        bool up = false;
        bool down = false;
        for (const double across : {0.0, -1.0, 1.0, -2.0, 2.0}) {
            const Edge edge =
                edgeAt(evidence.directions, at(place) + normal() * across, angle, kNearAngle);
            up = up || edge == Edge::kUpwards;
            down = down || edge == Edge::kDownwards;
        }
        Counts counts = counts_.back();
        counts.edges += up || down ? 1 : 0;
        counts.upwards += up ? 1 : 0;
        counts.downwards += down ? 1 : 0;
        counts_.push_back(counts);
    }
}

SupportedLine::Span SupportedLine::spanOf(double from, double to) const {
    const auto count = static_cast<double>(counts_.size() - 1);
    const double first = std::clamp(from - start_, 0.0, count);
    const double last = std::clamp(to - start_, 0.0, count);
    if (last - first < 1 || 3 * (last - first) < to - from) {
        return {counts_.data(), counts_.data()};
    }
    return {counts_.data() + static_cast<std::size_t>(first),
            counts_.data() + static_cast<std::size_t>(last)};
}

double SupportedLine::support(double from, double to) const {
    if (isBorder()) {
        return kBorderSupport;
    }
    const auto [first, last] = spanOf(from, to);
    return last == first ? 0
                         : static_cast<double>(last->edges - first->edges) /
                               static_cast<double>(last - first);
}

double SupportedLine::oneSided(double from, double to) const {
    if (isBorder()) {
        return kBorderSupport;
    }
    const auto [first, last] = spanOf(from, to);
    const int difference = (last->upwards - first->upwards) - (last->downwards - first->downwards);
    return last == first ? 0 : std::abs(difference) / static_cast<double>(last - first);
}

double SupportedLine::supportBeyond(double from, double to) const {
    constexpr double kBeside = 0.12; // of the side
    const double length = kBeside * (to - from);
    return isBorder() ? 0 : (support(from - length, from) + support(to, to + length)) / 2;
}

std::vector<SupportedLine> bordersOf(cv::Size picture) {
    const double right = picture.width - 0.5;
    const double bottom = picture.height - 0.5;
    return {SupportedLine::border(Line({1, 0}, -0.5)), SupportedLine::border(Line({1, 0}, right)),
            SupportedLine::border(Line({0, 1}, -0.5)), SupportedLine::border(Line({0, 1}, bottom))};
}

std::vector<SupportedLine> linesIn(const Evidence& evidence) {
    std::vector<SupportedLine> lines;
    for (const Line& line : differentFitted(evidence, kMaximumLines)) {
        lines.emplace_back(line, evidence);
    }
    const std::vector<SupportedLine> borders = bordersOf(evidence.colour.size());
    lines.insert(lines.end(), borders.begin(), borders.end());
    return lines;
}

} // namespace doccam::page
