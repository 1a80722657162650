#include "page/search/side_fit.h"

#include "page/quadrilateral.h"
#include "page/search/lines.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cmath>
#include <vector>

namespace doccam::page {
namespace {

constexpr int kProfiles = 160; // across each side

// The picture's colour between pixels.
cv::Vec3f colourAt(const cv::Mat& picture, cv::Point2d place) {
    const int x = std::clamp(static_cast<int>(std::floor(place.x)), 0, picture.cols - 2);
    const int y = std::clamp(static_cast<int>(std::floor(place.y)), 0, picture.rows - 2);
    const auto right = static_cast<float>(std::clamp(place.x - x, 0.0, 1.0));
    const auto down = static_cast<float>(std::clamp(place.y - y, 0.0, 1.0));
    const int channels = picture.channels();
    const unsigned char* const top = picture.ptr(y) + std::ptrdiff_t{x} * channels;
    const unsigned char* const bottom = picture.ptr(y + 1) + std::ptrdiff_t{x} * channels;
    cv::Vec3f colour;
    for (int c = 0; c < 3; ++c) {
        const int i = std::min(c, channels - 1);
        const float above = top[i] + right * static_cast<float>(top[i + channels] - top[i]);
        const float below =
            bottom[i] + right * static_cast<float>(bottom[i + channels] - bottom[i]);
        colour[c] = above + down * (below - above);
    }
    return colour;
}

// One side, seen across: rows of colours from outside to inside.
class SideProfiles {
  public:
    SideProfiles(const cv::Mat& picture, cv::Point2d from, cv::Point2d to, double reach)
      : from_(from)
      , along_(to - from)
      , inwards_(cv::Point2d(-along_.y, along_.x) / cv::norm(along_))
      , reach_(static_cast<int>(std::ceil(reach)) + kMargin) {
        const cv::Point2d tangent = along_ / cv::norm(along_);
        for (int i = 0; i < kProfiles; ++i) {
            const cv::Point2d foot = placeOf(i);
            std::vector<cv::Vec3f> profile;
            for (int s = -reach_; s <= reach_; ++s) {
                const cv::Point2d place = foot + inwards_ * static_cast<double>(s);
                profile.push_back((colourAt(picture, place) +
                                   colourAt(picture, place + tangent * 1.5) +
                                   colourAt(picture, place - tangent * 1.5)) *
                                  (1.0F / 3));
            }
            profiles_.push_back(std::move(profile));
        }
    }

    cv::Point2d placeOf(int profile) const {
        constexpr double kEnds = 0.02; // corners may be folded
        return from_ + along_ * (kEnds + (1 - 2 * kEnds) * (profile + 0.5) / kProfiles);
    }

    cv::Point2d inwards() const { return inwards_; }

    // The change of colour, within reach, from outside to inside that most profiles show.
    cv::Vec3f step(double reach) const {
        cv::Vec3f sum;
        const int steps = std::min(reach_, static_cast<int>(reach));
        for (const auto& profile : profiles_) {
            cv::Vec3f difference;
            for (int s = 1; s <= steps; ++s) {
                difference += profile[static_cast<std::size_t>(reach_ + s)] -
                              profile[static_cast<std::size_t>(reach_ - s)];
            }
            difference *= 1.0F / static_cast<float>(steps);
            const auto length = static_cast<float>(cv::norm(difference));
            sum += difference * (1 / (length + 4));
        }
        const auto length = static_cast<float>(cv::norm(sum));
        return length > 0 ? sum * (1 / length) : cv::Vec3f(0.57F, 0.57F, 0.57F);
    }

    struct Edge {
        double offset; // inwards from the side
        double strength;
    };

    // The steepest change in that direction of colour near an expected offset.
    std::optional<Edge> edgeOf(int profile, const cv::Vec3f& step, double expected,
                               double reach) const;

  private:
    static constexpr int kMargin = 4;

    cv::Point2d from_;
    cv::Point2d along_;
    cv::Point2d inwards_;
    int reach_;
    std::vector<std::vector<cv::Vec3f>> profiles_;
};

std::optional<SideProfiles::Edge> SideProfiles::edgeOf(int profile, const cv::Vec3f& step,
                                                       double expected, double reach) const {
    const auto& colours = profiles_[static_cast<std::size_t>(profile)];
    const auto slope = [&](int s) {
        const auto i = static_cast<std::size_t>(s + reach_);
        return static_cast<double>(
            (2 * (colours[i + 1] - colours[i - 1]) + (colours[i + 2] - colours[i - 2])).dot(step) /
            8);
    };
    const int first = std::max(-reach_ + 3, static_cast<int>(std::floor(expected - reach)));
    const int last = std::min(reach_ - 3, static_cast<int>(std::ceil(expected + reach)));
    Edge best{0, 0};
    double bestValue = 0;
    for (int s = first; s <= last; ++s) {
        const double here = slope(s);
        const double before = slope(s - 1);
        const double after = slope(s + 1);
        const double distance = (s - expected) / (reach + 1);
        const double value = here * (1 - 0.5 * distance * distance);
        if (here >= before && here > after && value > bestValue) {
            const double bend = before - 2 * here + after;
            best = {s + (bend < 0 ? 0.5 * (before - after) / bend : 0), here};
            bestValue = value;
        }
    }
    constexpr double kFaintest = 0.4; // levels per pixel
    return best.strength > kFaintest ? std::optional(best) : std::nullopt;
}

struct Point {
    double at;     // along the side, 0 to 1
    double offset; // inwards
    double weight;
};

struct OffsetLine {
    double start = 0;
    double slope = 0;

    double at(double place) const { return start + slope * place; }
};

// A line that most points lie on, whatever the others do.
OffsetLine robustLine(std::vector<Point> points, OffsetLine line, double tolerance) {
    constexpr int kRounds = 12;
    for (int round = 0; round < kRounds; ++round) {
        const double width = std::max(tolerance * std::pow(0.75, round), 0.8);
        double w = 0, x = 0, y = 0, xx = 0, xy = 0;
        for (const Point& point : points) {
            const double residual = (point.offset - line.at(point.at)) / width;
            const double weight =
                point.weight / ((1 + residual * residual) * (1 + residual * residual));
            w += weight;
            x += weight * point.at;
            y += weight * point.offset;
            xx += weight * point.at * point.at;
            xy += weight * point.at * point.offset;
        }
        const double spread = w * xx - x * x;
        if (w <= 0 || spread <= 1e-9) {
            break;
        }
        line.slope = (w * xy - x * y) / spread;
        line.start = (y - line.slope * x) / w;
    }
    return line;
}

// The line that starts the robust fit: that of two points with the most others near it.
OffsetLine consensus(const std::vector<Point>& points, double tolerance) {
    OffsetLine best;
    double most = -1;
    const std::size_t stride = std::max<std::size_t>(1, points.size() / 24);
    const double span = std::abs(points.back().at - points.front().at);
    for (std::size_t i = 0; i < points.size(); i += stride) {
        for (std::size_t j = i + stride; j < points.size(); j += stride) {
            const double apart = points[j].at - points[i].at;
            if (std::abs(apart) < 0.25 * span) {
                continue;
            }
            OffsetLine line;
            line.slope = (points[j].offset - points[i].offset) / apart;
            line.start = points[i].offset - line.slope * points[i].at;
            double sum = 0;
            for (const Point& point : points) {
                const double residual = std::abs(point.offset - line.at(point.at));
                sum += residual < tolerance ? point.weight * (1 - residual / tolerance) : 0;
            }
            if (sum > most) {
                most = sum;
                best = line;
            }
        }
    }
    return best;
}

Line through(cv::Point2d from, cv::Point2d to) {
    const cv::Point2d direction = (to - from) / cv::norm(to - from);
    const cv::Point2d normal(-direction.y, direction.x);
    return {normal, from.dot(normal)};
}

constexpr double kMostBent = 0.035; // of the side's length

// The edge followed from the middle of the side to one of its ends.
std::vector<Point> followed(const SideProfiles& profiles, const cv::Vec3f& step,
                            const OffsetLine& whole, bool start) {
    constexpr double kReach = 3;
    constexpr int kCount = kProfiles / 2;
    std::vector<Point> points;
    double expected = whole.at(0.5);
    for (int i = kCount; i >= 0; --i) {
        const int profile = start ? i : kProfiles - 1 - i;
        if (const auto edge = profiles.edgeOf(profile, step, expected, kReach)) {
            expected = edge->offset;
            points.push_back(
                {(profile + 0.5) / kProfiles, edge->offset, std::min(edge->strength, 8.0)});
        }
    }
    return points;
}

// Paper curls: near a corner a side may bend away from the line of the whole. The line there,
// unless what deviates is a finger or a fold.
OffsetLine nearEnd(const SideProfiles& profiles, const cv::Vec3f& step, const OffsetLine& whole,
                   bool start, double length) {
    constexpr double kPart = 0.08;
    constexpr double kSharpest = 0.16; // a bend of 9 degrees
    constexpr double kNear = 1.5;
    std::vector<Point> near;
    for (const Point& point : followed(profiles, step, whole, start)) {
        if (start ? point.at < kPart : point.at > 1 - kPart) {
            near.push_back(point);
        }
    }
    if (static_cast<double>(near.size()) < 0.7 * kPart * kProfiles) {
        return whole;
    }
    const OffsetLine local = robustLine(near, consensus(near, kNear), kNear);
    int agreeing = 0;
    for (const Point& point : near) {
        agreeing += std::abs(point.offset - local.at(point.at)) < kNear ? 1 : 0;
    }
    const double end = start ? 0 : 1;
    const double moved = std::abs(local.at(end) - whole.at(end));
    const bool isBend = moved > kNear && moved < kMostBent * length &&
                        std::abs(local.slope - whole.slope) < kSharpest * length &&
                        agreeing >= 0.7 * static_cast<double>(near.size());
    return isBend ? local : whole;
}

struct FittedSide {
    Line start; // near its first corner
    Line end;
    double support;
};

std::optional<FittedSide> fitSide(const cv::Mat& picture, cv::Point2d from, cv::Point2d to,
                                  double reach) {
    const double length = cv::norm(to - from);
    const SideProfiles profiles(picture, from, to, std::max(reach, kMostBent * length));
    const cv::Vec3f step = profiles.step(reach);
    std::vector<Point> points;
    for (int i = 0; i < kProfiles; ++i) {
        if (const auto edge = profiles.edgeOf(i, step, 0, reach)) {
            points.push_back({(i + 0.5) / kProfiles, edge->offset, std::min(edge->strength, 8.0)});
        }
    }
    if (points.size() < kProfiles / 4) {
        return std::nullopt;
    }
    constexpr double kNear = 1.5;
    const OffsetLine line = robustLine(points, consensus(points, kNear), kNear);
    int near = 0;
    for (const Point& point : points) {
        near += std::abs(point.offset - line.at(point.at)) < 2 * kNear ? 1 : 0;
    }
    const auto lineOf = [&](const OffsetLine& offsets) {
        return through(profiles.placeOf(0) + profiles.inwards() * offsets.at(0.5 / kProfiles),
                       profiles.placeOf(kProfiles - 1) +
                           profiles.inwards() * offsets.at(1 - 0.5 / kProfiles));
    };
    return FittedSide{lineOf(nearEnd(profiles, step, line, true, length)),
                      lineOf(nearEnd(profiles, step, line, false, length)),
                      static_cast<double>(near) / kProfiles};
}

bool isOnBorder(cv::Point2d from, cv::Point2d to, cv::Size picture) {
    constexpr double kNear = 1;
    const auto near = [](double one, double other, double border) {
        return std::abs(one - border) < kNear && std::abs(other - border) < kNear;
    };
    return near(from.x, to.x, -0.5) || near(from.y, to.y, -0.5) ||
           near(from.x, to.x, picture.width - 0.5) || near(from.y, to.y, picture.height - 0.5);
}

} // namespace

std::optional<FittedSheet> fitSides(const cv::Mat& picture, const Corners& corners, double reach) {
    // Lines that are nearly parallel meet anywhere, and a caller's corners may be anything.
    constexpr double kMargin = 0.5;
    if (!isPlausible(corners, picture.size(), 0, kMargin)) {
        return std::nullopt;
    }
    std::vector<FittedSide> sides;
    double support = 1;
    for (std::size_t i = 0; i < 4; ++i) {
        const cv::Point2d from = corners[i];
        const cv::Point2d to = corners[(i + 1) % 4];
        if (isOnBorder(from, to, picture.size())) {
            sides.push_back({through(from, to), through(from, to), 1});
            continue;
        }
        const auto fitted = fitSide(picture, from, to, reach);
        if (!fitted) {
            return std::nullopt;
        }
        sides.push_back(*fitted);
        support = std::min(support, fitted->support);
    }
    FittedSheet sheet{corners, support};
    for (std::size_t i = 0; i < 4; ++i) {
        sheet.corners[i] = sides[(i + 3) % 4].end.meet(sides[i].start);
    }
    return isPlausible(sheet.corners, picture.size(), 0, kMargin) ? std::optional(sheet)
                                                                  : std::nullopt;
}

} // namespace doccam::page
