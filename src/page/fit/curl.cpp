#include "page/fit/curl.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace doccam::page {
namespace {

constexpr int kProfiles = SideProfiles::kCount;
constexpr double kNear = 1.5; // pixels

// One end of a side; profiles are counted from there.
class SideEnd {
  public:
    SideEnd(const SideProfiles& profiles, const OffsetLine& whole, bool start)
      : profiles_(profiles)
      , whole_(whole)
      , start_(start) {}

    // The edge from the middle of the side to its end, where it is near the end.
    std::vector<SidePoint> nearPoints(const cv::Vec3f& step) const;

    // Whether what lies between both lines there is, but for the light, what lies on that side of
    // the whole line elsewhere: paper that bends outwards, or desk beside paper that bends inwards.
    bool isPaperOrDesk(const OffsetLine& local, const cv::Vec3f& step) const;

    double at(int profile) const { return (profileOf(profile) + 0.5) / kProfiles; }

    // How far, inwards, the local line is from the whole one at the very end.
    double moved(const OffsetLine& local) const {
        const double end = start_ ? 0 : 1;
        return local.at(end) - whole_.at(end);
    }

  private:
    int profileOf(int profile) const { return start_ ? profile : kProfiles - 1 - profile; }

    static constexpr int kPart = 13; // of the profiles: the 8 hundredths nearest to the end

    const SideProfiles& profiles_;
    OffsetLine whole_;
    bool start_;
};

std::vector<SidePoint> SideEnd::nearPoints(const cv::Vec3f& step) const {
    constexpr int kReach = 3;
    std::vector<SidePoint> points;
    double expected = whole_.at(0.5);
    for (int i = kProfiles / 2; i >= 0; --i) {
        if (const auto edge = profiles_.edgeOf(profileOf(i), step, expected, kReach)) {
            expected = edge->offset;
            if (i < kPart) {
                points.push_back({at(i), edge->offset, std::min(edge->strength, 8.0)});
            }
        }
    }
    constexpr double kEnough = 0.7;
    return static_cast<double>(points.size()) < kEnough * kPart ? std::vector<SidePoint>() : points;
}

bool SideEnd::isPaperOrDesk(const OffsetLine& local, const cv::Vec3f& step) const {
    constexpr int kBeside = 8; // pixels
    const int side = moved(local) < 0 ? 1 : -1;
    cv::Vec3f between;
    cv::Vec3f same;
    cv::Vec3f opposite;
    for (int i = 0; i < kPart; ++i) {
        const double there = (local.at(at(i)) + whole_.at(at(i))) / 2;
        between += profiles_.colourAt(profileOf(i), there) * (1.0F / kPart);
        const int usual = 2 * kPart + i;
        const double line = whole_.at(at(usual));
        same += profiles_.colourAt(profileOf(usual), line + side * kBeside) * (1.0F / kPart);
        opposite += profiles_.colourAt(profileOf(usual), line - side * kBeside) * (1.0F / kPart);
    }
    const double contrast = std::abs((same - opposite).dot(step));
    constexpr double kAlike = 0.5;
    return cv::norm(between - same) < kAlike * contrast;
}

} // namespace

OffsetLine lineNearEnd(const SideProfiles& profiles, const cv::Vec3f& step, const OffsetLine& whole,
                       double length, bool start) {
    constexpr double kMostBent = 0.035; // of the side's length
    constexpr double kSharpest = 0.16;  // a bend of 9 degrees
    const SideEnd end(profiles, whole, start);
    const std::vector<SidePoint> points = end.nearPoints(step);
    if (points.empty()) {
        return whole;
    }
    const OffsetLine local = lineOfMost(points, kNear);
    const auto agreeing = std::count_if(points.begin(), points.end(), [&](const SidePoint& point) {
        return std::abs(point.offset - local.at(point.at)) < kNear;
    });
    const double moved = std::abs(end.moved(local));
    const bool isBend = moved > kNear && moved < kMostBent * length &&
                        std::abs(local.slope - whole.slope) < kSharpest * length &&
                        static_cast<double>(agreeing) >= 0.7 * static_cast<double>(points.size()) &&
                        end.isPaperOrDesk(local, step);
    return isBend ? local : whole;
}

} // namespace doccam::page
