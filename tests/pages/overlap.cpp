#include "overlap.h"

#include <opencv2/imgproc.hpp>

#include <limits>
#include <vector>

namespace doccam::test {

namespace {

using virtualcam::Quad;
using Polygon = std::vector<cv::Point2d>;

// What of the polygon lies where inside is not negative.
template <typename Inside>
Polygon clipped(const Polygon& polygon, Inside inside) {
    Polygon kept;
    for (std::size_t i = 0; i < polygon.size(); ++i) {
        const cv::Point2d from = polygon[i];
        const cv::Point2d to = polygon[(i + 1) % polygon.size()];
        const double a = inside(from);
        const double b = inside(to);
        if (a >= 0) {
            kept.push_back(from);
        }
        if ((a >= 0) != (b >= 0)) {
            kept.push_back(from + (to - from) * (a / (a - b)));
        }
    }
    return kept;
}

Polygon withinPicture(const Quad& quad, cv::Size picture) {
    Polygon part(quad.begin(), quad.end());
    part = clipped(part, [](cv::Point2d p) { return p.x + 0.5; });
    part = clipped(part, [](cv::Point2d p) { return p.y + 0.5; });
    part = clipped(part, [&](cv::Point2d p) { return picture.width - 0.5 - p.x; });
    return clipped(part, [&](cv::Point2d p) { return picture.height - 0.5 - p.y; });
}

double areaOf(const Polygon& polygon) {
    double twice = 0;
    for (std::size_t i = 0; i < polygon.size(); ++i) {
        twice += polygon[i].cross(polygon[(i + 1) % polygon.size()]);
    }
    return twice / 2;
}

} // namespace

double overlap(const Quad& a, const Quad& b, cv::Size picture) {
    const Polygon first = withinPicture(a, picture);
    const Polygon second = withinPicture(b, picture);
    Polygon common = first;
    for (std::size_t i = 0; i < second.size(); ++i) {
        const cv::Point2d from = second[i];
        const cv::Point2d along = second[(i + 1) % second.size()] - from;
        common = clipped(common, [&](cv::Point2d p) { return along.cross(p - from); });
    }
    const double shared = areaOf(common);
    const double all = areaOf(first) + areaOf(second) - shared;
    return all > 0 ? shared / all : 0;
}

int turnsToUpright(const Quad& found, const Quad& truth) {
    int best = 0;
    double least = std::numeric_limits<double>::max();
    for (std::size_t turns = 0; turns < 4; ++turns) {
        double distance = 0;
        for (std::size_t i = 0; i < 4; ++i) {
            distance += cv::norm(found[i] - truth[(i + turns) % 4]);
        }
        if (distance < least) {
            least = distance;
            best = static_cast<int>(turns);
        }
    }
    return best;
}

} // namespace doccam::test
