// The Hough transform with the edges' own directions: each votes only for the lines along it.
#include "page/search/votes.h"

#include <opencv2/core.hpp>

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace doccam::page {
namespace {

constexpr int kAngles = 180;
constexpr int kSpread = 2; // degrees by which an edge pixel's direction may be wrong

// Votes by angle and distance. The offset keeps distances positive.
class Votes {
  public:
    explicit Votes(const Evidence& evidence)
      : offset_(evidence.colour.cols + evidence.colour.rows)
      , votes_(kAngles, 2 * offset_, CV_32F, cv::Scalar(0)) {
        for (int i = 0; i < kAngles; ++i) {
            const double radians = i * std::numbers::pi / kAngles;
            normals_[static_cast<std::size_t>(i)] = cv::Point2f(
                static_cast<float>(std::cos(radians)), static_cast<float>(std::sin(radians)));
        }
        for (const EdgePixel& edge : evidence.edges) {
            add(edge);
        }
    }

    std::vector<Line> best(std::size_t maximum);

  private:
    struct Peak {
        float votes;
        int angle;
        int distance;
    };

    void add(const EdgePixel& edge);
    std::vector<Peak> peaks() const;
    void clearAround(const Peak& peak);

    int offset_;
    cv::Mat votes_;
    std::array<cv::Point2f, kAngles> normals_{};
};

void Votes::add(const EdgePixel& edge) {
    const int middle = cvRound(edge.direction);
    for (int i = middle - kSpread; i <= middle + kSpread; ++i) {
        const int angle = (i + 2 * kAngles) % kAngles;
        const float distance = normals_[static_cast<std::size_t>(angle)].dot(edge.place);
        votes_.at<float>(angle, offset_ + cvRound(distance)) += edge.weight;
    }
}

// Those with more votes than their neighbours at the same angle, the largest first.
std::vector<Votes::Peak> Votes::peaks() const {
    constexpr float kFewest = 6;
    std::vector<Peak> peaks;
    for (int angle = 0; angle < kAngles; ++angle) {
        const auto* const row = votes_.ptr<float>(angle);
        for (int distance = 1; distance < votes_.cols - 1; ++distance) {
            if (row[distance] >= kFewest && row[distance] >= row[distance - 1] &&
                row[distance] > row[distance + 1]) {
                peaks.push_back({row[distance], angle, distance});
            }
        }
    }
    std::sort(peaks.begin(), peaks.end(),
              [](const Peak& one, const Peak& other) { return one.votes > other.votes; });
    return peaks;
}

void Votes::clearAround(const Peak& peak) {
    constexpr int kNearAngles = 3;
    constexpr int kNearDistance = 3;
    for (int i = peak.angle - kNearAngles; i <= peak.angle + kNearAngles; ++i) {
        // A line's normal turns round when its angle passes 180 degrees.
        const bool turned = i < 0 || i >= kAngles;
        const int middle = turned ? 2 * offset_ - peak.distance : peak.distance;
        const int first = std::max(middle - kNearDistance, 0);
        const int last = std::min(middle + kNearDistance, votes_.cols - 1);
        auto* const row = votes_.ptr<float>((i + kAngles) % kAngles);
        std::fill(row + first, row + last + 1, 0.0F);
    }
}

std::vector<Line> Votes::best(std::size_t maximum) {
    std::vector<Line> lines;
    for (const Peak& peak : peaks()) {
        if (lines.size() >= maximum) {
            break;
        }
        if (votes_.at<float>(peak.angle, peak.distance) > 0) {
            const cv::Point2f normal = normals_[static_cast<std::size_t>(peak.angle)];
            lines.emplace_back(cv::Point2d(normal), peak.distance - offset_);
            clearAround(peak);
        }
    }
    return lines;
}

} // namespace

std::vector<Line> votedLines(const Evidence& evidence, std::size_t maximum) {
    return Votes(evidence).best(maximum);
}

} // namespace doccam::page
