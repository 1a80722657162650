#include "page/fit/offset_line.h"

#include <algorithm>
#include <cmath>

namespace doccam::page {
namespace {

// The weighted fit, in which points farther away count less from round to round.
OffsetLine robustLine(const std::vector<SidePoint>& points, OffsetLine line, double tolerance) {
    constexpr int kRounds = 12;
    for (int round = 0; round < kRounds; ++round) {
        const double width = std::max(tolerance * std::pow(0.75, round), 0.8);
        double w = 0, x = 0, y = 0, xx = 0, xy = 0;
        for (const SidePoint& point : points) {
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

// The line of two points with the most others near it.
OffsetLine consensus(const std::vector<SidePoint>& points, double tolerance) {
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
            for (const SidePoint& point : points) {
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

} // namespace

OffsetLine lineOfMost(const std::vector<SidePoint>& points, double tolerance) {
    return robustLine(points, consensus(points, tolerance), tolerance);
}

} // namespace doccam::page
