#include "codes/bar_place.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>
#include <vector>

namespace doccam::codes {
namespace {

constexpr double kShortestLine = 12; // pixels
constexpr int kLongestProfile = 600; // samples
constexpr double kAlike = 0.6;       // correlation of neighbouring cuts through the same bars
constexpr double kReach = 3;         // bars are at most that many times as high as the code is wide

using Profile = std::vector<float>;

bool isInside(const cv::Mat& grey, cv::Point2d place) {
    return place.x >= 1 && place.y >= 1 && place.x < grey.cols - 2 && place.y < grey.rows - 2;
}

float levelAt(const cv::Mat& grey, cv::Point2d place) {
    const auto x = static_cast<int>(place.x);
    const auto y = static_cast<int>(place.y);
    const auto right = static_cast<float>(place.x - x);
    const auto below = static_cast<float>(place.y - y);
    const unsigned char* const row = grey.ptr(y) + x;
    const unsigned char* const next = grey.ptr(y + 1) + x;
    const auto upper =
        static_cast<float>(row[0]) * (1 - right) + static_cast<float>(row[1]) * right;
    const auto lower =
        static_cast<float>(next[0]) * (1 - right) + static_cast<float>(next[1]) * right;
    return upper * (1 - below) + lower * below;
}

// The direction in which the levels change most along the line, that is, across its bars.
cv::Point2d acrossBars(const cv::Mat& grey, cv::Point2d from, cv::Point2d along, double length) {
    double xx = 0;
    double yy = 0;
    double xy = 0;
    for (double place = 0; place <= length; place += 1) {
        for (int aside = -3; aside <= 3; ++aside) {
            const cv::Point2d at =
                from + along * place + cv::Point2d(-along.y, along.x) * static_cast<double>(aside);
            if (isInside(grey, at)) {
                const double dx = levelAt(grey, {at.x + 1, at.y}) - levelAt(grey, {at.x - 1, at.y});
                const double dy = levelAt(grey, {at.x, at.y + 1}) - levelAt(grey, {at.x, at.y - 1});
                xx += dx * dx;
                yy += dy * dy;
                xy += dx * dy;
            }
        }
    }
    const double angle = 0.5 * std::atan2(2 * xy, xx - yy);
    const cv::Point2d across(std::cos(angle), std::sin(angle));
    const double turn = across.dot(along);
    constexpr double kSteepest = 0.3; // beyond, the line hardly crosses the bars
    return std::abs(turn) < kSteepest ? along : turn < 0 ? -across : across;
}

// A cut through bars: its middle, and the direction and length to both sides of it.
struct Cut {
    cv::Point2d middle;
    cv::Point2d across;
    double before = 0; // below 0
    double after = 0;

    cv::Point2d start() const { return middle + across * before; }

    cv::Point2d end() const { return middle + across * after; }

    Cut movedBy(cv::Point2d way) const { return {middle + way, across, before, after}; }
};

bool isInside(const cv::Mat& grey, const Cut& cut) {
    return isInside(grey, cut.start()) && isInside(grey, cut.end());
}

// Less its mean. Its cut must be inside.
Profile profileOf(const cv::Mat& grey, const Cut& cut) {
    const auto count = static_cast<std::size_t>(
        std::clamp(static_cast<int>(cut.after - cut.before), 24, kLongestProfile));
    Profile profile(count);
    float sum = 0;
    const cv::Point2d step = (cut.end() - cut.start()) / static_cast<double>(count - 1);
    for (std::size_t i = 0; i < count; ++i) {
        profile[i] = levelAt(grey, cut.start() + step * static_cast<double>(i));
        sum += profile[i];
    }
    for (float& level : profile) {
        level -= sum / static_cast<float>(count);
    }
    return profile;
}

double likeness(const Profile& one, const Profile& other) {
    double product = 0;
    double first = 1e-6;
    double second = 1e-6;
    for (std::size_t i = 0; i < one.size(); ++i) {
        product += static_cast<double>(one[i]) * other[i];
        first += static_cast<double>(one[i]) * one[i];
        second += static_cast<double>(other[i]) * other[i];
    }
    return product / std::sqrt(first * second);
}

// The last cut that shows the same bars, going on from the first one along the bars.
Cut lastAlike(const cv::Mat& grey, const Cut& first, cv::Point2d down) {
    const Profile bars = profileOf(grey, first);
    const double width = first.after - first.before;
    const double step = std::max(1.0, width / 200);
    Cut last = first;
    Cut now = first;
    int missed = 0;
    for (double way = step; way < width * kReach && missed < 4; way += step) {
        now = now.movedBy(down * step);
        Cut best = now;
        double most = -1;
        for (const int aside : {0, -1, 1}) {
            const Cut tried = now.movedBy(now.across * static_cast<double>(aside));
            const double alike =
                isInside(grey, tried) ? likeness(bars, profileOf(grey, tried)) : -1;
            if (alike > most + 0.01) {
                most = alike;
                best = tried;
            }
        }
        if (most > kAlike) {
            now = best;
            last = best;
            missed = 0;
        } else {
            ++missed;
        }
    }
    return last;
}

// From the upper to the lower of two cuts through the same bars, if they are apart.
cv::Point2d alongBars(const Cut& top, const Cut& bottom, cv::Point2d otherwise) {
    const cv::Point2d way = bottom.middle - top.middle;
    constexpr double kApart = 6; // pixels, below which the direction says little
    return cv::norm(way) < kApart ? otherwise : way / cv::norm(way);
}

} // namespace

std::optional<Corners> barsAcross(const cv::Mat& grey, cv::Point2d from, cv::Point2d to) {
    const double length = cv::norm(to - from);
    if (!(length >= kShortestLine) || !isInside(grey, from) || !isInside(grey, to)) {
        return std::nullopt;
    }
    const cv::Point2d middle = (from + to) / 2;
    cv::Point2d across = acrossBars(grey, from, (to - from) / length, length);
    Cut top;
    Cut bottom;
    // The second time, in the direction that following the bars has shown.
    for (int round = 0; round < 2; ++round) {
        const Cut cut{middle, across, (from - middle).dot(across), (to - middle).dot(across)};
        if (!isInside(grey, cut)) {
            return std::nullopt;
        }
        const cv::Point2d down(-across.y, across.x);
        top = lastAlike(grey, cut, -down);
        bottom = lastAlike(grey, cut, down);
        const cv::Point2d along = alongBars(top, bottom, down);
        across = {along.y, -along.x};
    }
    return Corners{top.start(), top.end(), bottom.end(), bottom.start()};
}

std::optional<Corners> barsThrough(const cv::Mat& grey, const std::vector<cv::Point2d>& points,
                                   cv::Point2d from, cv::Point2d to) {
    const auto bars = barsAcross(grey, from, to);
    if (!bars) {
        return bars;
    }
    const cv::Point2d along = alongOf(*bars);
    const cv::Point2d across(along.y, -along.x);
    cv::Point2d middle;
    for (const cv::Point2d point : points) {
        middle += point / static_cast<double>(points.size());
    }
    double before = 0;
    double after = 0;
    for (const cv::Point2d point : points) {
        before = std::min(before, (point - middle).dot(across));
        after = std::max(after, (point - middle).dot(across));
    }
    const auto all = barsAcross(grey, middle + across * before, middle + across * after);
    return all ? all : bars;
}

cv::Point2d alongOf(const Corners& bars) {
    const cv::Point2d along = bars[3] - bars[0] + bars[2] - bars[1];
    const cv::Point2d across = bars[1] - bars[0];
    const double length = cv::norm(along);
    const double width = std::max(cv::norm(across), 1e-9);
    return length > 1 ? along / length : cv::Point2d(-across.y, across.x) / width;
}

} // namespace doccam::codes
