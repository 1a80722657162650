#include "page/search/lines.h"

#include <opencv2/core.hpp>

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace doccam::page {
namespace {

constexpr int kAngles = 180;
constexpr std::size_t kMaximumLines = 64;
constexpr double kBorderSupport = 0.55;

double radians(double degrees) {
    return degrees * std::numbers::pi / 180;
}

double angleBetween(double one, double other) {
    const double difference = std::abs(one - other);
    return std::min(difference, 180 - difference);
}

double angleOf(cv::Point2d normal) {
    const double degrees = std::atan2(normal.y, normal.x) * 180 / std::numbers::pi;
    return degrees < 0 ? degrees + 180 : degrees;
}

// Votes of the edge pixels for lines, by angle and distance. The offset keeps distances positive.
class Votes {
  public:
    explicit Votes(const Evidence& evidence)
      : offset_(evidence.colour.cols + evidence.colour.rows)
      , votes_(kAngles, 2 * offset_, CV_32F, cv::Scalar(0)) {
        for (int i = 0; i < kAngles; ++i) {
            normals_[static_cast<std::size_t>(i)] = {std::cos(radians(i)), std::sin(radians(i))};
        }
        for (const EdgePixel& edge : evidence.edges) {
            add(edge);
        }
    }

    // The lines with most votes, without those beside a better one.
    std::vector<Line> best(std::size_t count);

  private:
    static constexpr int kSpread = 2;   // degrees by which an edge pixel's angle may be wrong
    static constexpr float kEnough = 6; // levels per pixel; steeper edges count no more

    void add(const EdgePixel& edge);
    void clearAround(int angle, int distance);
    Line lineOf(int angle, int distance) const;

    int offset_;
    cv::Mat votes_;
    std::array<cv::Point2d, kAngles> normals_{};
};

void Votes::add(const EdgePixel& edge) {
    const float vote = 0.3F + 0.7F * std::min(edge.strength / kEnough, 1.0F);
    const int middle = static_cast<int>(std::lround(edge.angle));
    for (int i = middle - kSpread; i <= middle + kSpread; ++i) {
        const int angle = (i + kAngles) % kAngles;
        const double distance = normals_[static_cast<std::size_t>(angle)].dot(edge.place);
        votes_.at<float>(angle, offset_ + static_cast<int>(std::lround(distance))) += vote;
    }
}

Line Votes::lineOf(int angle, int distance) const {
    return {normals_[static_cast<std::size_t>(angle)], static_cast<double>(distance - offset_)};
}

void Votes::clearAround(int angle, int distance) {
    constexpr int kNearAngles = 3;
    constexpr int kNearDistance = 3;
    for (int i = angle - kNearAngles; i <= angle + kNearAngles; ++i) {
        // A line's normal turns round when its angle passes 180 degrees.
        const bool turned = i < 0 || i >= kAngles;
        const int row = (i + kAngles) % kAngles;
        const int middle = turned ? 2 * offset_ - distance : distance;
        const int first = std::max(middle - kNearDistance, 0);
        const int last = std::min(middle + kNearDistance, votes_.cols - 1);
        std::fill(votes_.ptr<float>(row) + first, votes_.ptr<float>(row) + last + 1, 0.0F);
    }
}

std::vector<Line> Votes::best(std::size_t count) {
    std::vector<Line> lines;
    while (lines.size() < count) {
        double most = 0;
        cv::Point place;
        cv::minMaxLoc(votes_, nullptr, &most, nullptr, &place);
        constexpr double kFewest = 12;
        if (most < kFewest) {
            break;
        }
        lines.push_back(lineOf(place.y, place.x));
        clearAround(place.y, place.x);
    }
    return lines;
}

// The line through the edge pixels near a voted one.
Line fitted(const Line& line, const Evidence& evidence) {
    constexpr double kNear = 2.5;
    constexpr double kNearAngle = 8;
    const double angle = angleOf(line.normal());
    cv::Point2d sum;
    double xx = 0;
    double xy = 0;
    double yy = 0;
    double count = 0;
    for (const EdgePixel& edge : evidence.edges) {
        const cv::Point2d place = edge.place;
        if (std::abs(place.dot(line.normal()) - line.distance()) < kNear &&
            angleBetween(angle, edge.angle) < kNearAngle) {
            sum += place;
            xx += place.x * place.x;
            xy += place.x * place.y;
            yy += place.y * place.y;
            ++count;
        }
    }
    if (count < 2) {
        return line;
    }
    const cv::Point2d mean = sum / count;
    xx -= count * mean.x * mean.x;
    xy -= count * mean.x * mean.y;
    yy -= count * mean.y * mean.y;
    const double direction = std::atan2(2 * xy, xx - yy) / 2;
    const cv::Point2d normal(-std::sin(direction), std::cos(direction));
    return {normal, mean.dot(normal)};
}

} // namespace

cv::Point2d Line::meet(const Line& other) const {
    const double sine = normal_.cross(other.normal_);
    constexpr double kParallel = 1e-9;
    if (std::abs(sine) < kParallel) {
        return {1e9, 1e9};
    }
    return {(distance_ * other.normal_.y - other.distance_ * normal_.y) / sine,
            (other.distance_ * normal_.x - distance_ * other.normal_.x) / sine};
}

SupportedLine::SupportedLine(const Line& line, double always)
  : Line(line)
  , always_(always) {}

SupportedLine::SupportedLine(const Line& line, const Evidence& evidence)
  : Line(line) {
    constexpr double kNearAngle = 14;
    const double angle = angleOf(normal());
    const int reach = evidence.colour.cols + evidence.colour.rows;
    start_ = -reach;
    counts_.resize(static_cast<std::size_t>(2 * reach) + 1);
    const cv::Rect inside({}, evidence.angles.size());
    firstSeen_ = reach;
    lastSeen_ = -reach;
    int count = 0;
    for (int i = 0; i <= 2 * reach; ++i) {
        bool found = false;
        const cv::Point2d middle = at(start_ + i);
        if (inside.contains(cv::Point(cvRound(middle.x), cvRound(middle.y)))) {
            firstSeen_ = std::min(firstSeen_, start_ + i);
            lastSeen_ = start_ + i;
        }
        for (const double across : {0.0, -1.0, 1.0, -2.0, 2.0}) {
            const cv::Point2d place = at(start_ + i) + normal() * across;
            const cv::Point pixel(cvRound(place.x), cvRound(place.y));
            const float there = inside.contains(pixel) ? evidence.angles.at<float>(pixel) : -1;
            found = found || (there >= 0 && angleBetween(there, angle) < kNearAngle);
        }
        count += found ? 1 : 0;
        counts_[static_cast<std::size_t>(i)] = count;
    }
}

double SupportedLine::support(double from, double to) const {
    if (isBorder()) {
        return always_;
    }
    const auto last = static_cast<double>(counts_.size() - 1);
    const auto index = [&](double place) {
        return static_cast<std::size_t>(std::clamp(place - start_, 0.0, last));
    };
    const double seenFrom = std::max(std::min(from, to), firstSeen_);
    const double seenTo = std::min(std::max(from, to), lastSeen_);
    if (3 * (seenTo - seenFrom) < std::abs(to - from)) {
        return 0;
    }
    const std::size_t first = index(seenFrom);
    const std::size_t end = index(seenTo);
    return end > first ? static_cast<double>(counts_[end] - counts_[first]) /
                             static_cast<double>(end - first)
                       : 0;
}

std::vector<SupportedLine> linesIn(const Evidence& evidence) {
    std::vector<SupportedLine> lines;
    for (const Line& line : Votes(evidence).best(kMaximumLines)) {
        lines.emplace_back(fitted(line, evidence), evidence);
    }
    const double right = evidence.colour.cols - 0.5;
    const double bottom = evidence.colour.rows - 0.5;
    for (const Line& border :
         {Line({1, 0}, -0.5), Line({1, 0}, right), Line({0, 1}, -0.5), Line({0, 1}, bottom)}) {
        lines.emplace_back(border, kBorderSupport);
    }
    return lines;
}

} // namespace doccam::page
