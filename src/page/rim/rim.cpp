// Filling what a page shows of the desk around it.
#include "page/rim/rim.h"

#include "page/rim/page_border.h"
#include "page/rim/rounded_corners.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <iterator>
#include <vector>

namespace doccam::page {

namespace {

constexpr double kDeepest = 0.03;      // of the page's side across
constexpr double kDeepestCurl = 0.05;  // the same where the sheet's outline leads there
constexpr double kSteepest = 0.5;      // of such an outline
constexpr double kUneven = 1.5;        // pixels
constexpr int kShallow = 3;            // pixels that are filled wherever paper follows
constexpr int kPositions = 400;        // along a border, at most
constexpr double kSupport = 0.3;       // of the positions lie on the sheet's edge
constexpr double kCurledSupport = 0.6; // show desk beside a sheet without a straight edge
constexpr double kCurl = 0.012;        // of the side across: how far an edge curls from straight
constexpr int kShortest = 64;          // sides below this have no rim

// The depth at a distance along the border.
struct Edge {
    double start = 0;
    double slope = 0;

    double at(double along) const { return start + slope * along; }
};

struct Depth {
    int along;
    int depth;
};

int deepestOf(const Border& border, double share) {
    return std::max(4, static_cast<int>(std::lround(border.across * share)));
}

std::vector<Depth> depths(const PaperPage& page, const Border& border, int deepest) {
    const int step = std::max(1, border.length / kPositions);
    std::vector<Depth> found;
    for (int along = step / 2; along < border.length; along += step) {
        found.push_back({along, depthAt(page, border, along, deepest)});
    }
    return found;
}

int support(const std::vector<Depth>& depths, const Edge& edge, int deepest) {
    const double tolerance = 1.5;
    return static_cast<int>(std::count_if(depths.begin(), depths.end(), [&](const Depth& d) {
        return d.depth > 0 && d.depth < deepest &&
               std::abs(edge.at(d.along) - d.depth) <= tolerance;
    }));
}

// The straight edge on which most of the depths lie, of those through two of them.
Edge bestEdge(const std::vector<Depth>& depths, int deepest, int& bestSupport) {
    Edge best;
    bestSupport = 0;
    const std::size_t count = depths.size();
    for (std::size_t apart = count / 8; apart < count;
         apart += std::max<std::size_t>(count / 8, 1)) {
        for (std::size_t i = 0; i + apart < count; i += 3) {
            const Depth& a = depths[i];
            const Depth& b = depths[i + apart];
            if (a.depth >= deepest || b.depth >= deepest || a.depth + b.depth == 0) {
                continue;
            }
            const double slope = static_cast<double>(b.depth - a.depth) / (b.along - a.along);
            const Edge edge{a.depth - slope * a.along, slope};
            const int supported = support(depths, edge, deepest);
            if (supported > bestSupport) {
                bestSupport = supported;
                best = edge;
            }
        }
    }
    return best;
}

// The middle one of the depths at number and its neighbours; 0 for none that ends on paper.
int depthAround(const std::vector<Depth>& depths, std::size_t number, int deepest) {
    const auto at = [&](std::size_t i) { return depths[std::min(i, depths.size() - 1)].depth; };
    std::array<int, 3> near = {at(number == 0 ? 0 : number - 1), at(number), at(number + 1)};
    std::sort(near.begin(), near.end());
    return near[1] < deepest ? near[1] : 0;
}

// Marks positions, beginning with those that are marked, onto which the outline goes on without a
// jump, as that of a sheet does and that of a letter does not.
void followOutline(const std::vector<double>& outline, double slack, std::vector<bool>& marked) {
    const auto follow = [&](std::size_t from, std::size_t to) {
        if (marked[from] && outline[to] > 0 && std::abs(outline[to] - outline[from]) <= slack) {
            marked[to] = true;
        }
    };
    for (std::size_t i = 1; i < outline.size(); ++i) {
        follow(i - 1, i);
    }
    for (std::size_t i = outline.size() - 1; i > 0; --i) {
        follow(i, i - 1);
    }
}

// How far to fill at each of the positions: to the line, and where the sheet curls as far
// beyond it as the desk is seen.
std::vector<double> curledReaches(const std::vector<Depth>& depths, const Edge& line,
                                  const Border& border, int deepest) {
    std::vector<double> outline;
    std::vector<bool> curled;
    for (std::size_t i = 0; i < depths.size(); ++i) {
        outline.push_back(depthAround(depths, i, deepest));
        curled.push_back(outline.back() < line.at(depths[i].along) + kCurl * border.across);
    }
    const double step = depths.size() < 2 ? 0 : depths[1].along - depths[0].along;
    followOutline(outline, kSteepest * step + kUneven, curled);
    std::vector<double> found;
    for (std::size_t i = 0; i < depths.size(); ++i) {
        const double reach = line.at(depths[i].along);
        found.push_back(std::clamp(curled[i] ? std::max(reach, outline[i]) : reach, 0.0,
                                   static_cast<double>(deepest)));
    }
    return found;
}

// The few pixels along which the desk shines through a sheet's sides.
std::vector<double> shallowReaches(const std::vector<Depth>& depths) {
    std::vector<double> found;
    std::transform(depths.begin(), depths.end(), std::back_inserter(found),
                   [](const Depth& d) { return d.depth <= kShallow ? d.depth : 0; });
    return found;
}

// The share of positions where paper begins before deepest, but not at the border.
double seenShare(const std::vector<Depth>& depths, int deepest) {
    const auto seen = std::count_if(depths.begin(), depths.end(), [&](const Depth& d) {
        return d.depth > 0 && d.depth < deepest;
    });
    return static_cast<double>(seen) / static_cast<double>(depths.size());
}

// How far to fill at each of the positions.
std::vector<double> reaches(const std::vector<Depth>& depths, const Border& border) {
    const int deepest = deepestOf(border, kDeepest);
    const int deepestCurl = deepestOf(border, kDeepestCurl);
    if (seenShare(depths, deepest) >= kSupport) {
        int supported = 0;
        const Edge edge = bestEdge(depths, deepest, supported);
        if (supported >= kSupport * static_cast<double>(depths.size())) {
            return curledReaches(depths, edge, border, deepestCurl);
        }
    }
    return seenShare(depths, deepestCurl) >= kCurledSupport
               ? curledReaches(depths, {}, border, deepestCurl)
               : shallowReaches(depths);
}

void fillBorder(PaperPage& page, const Border& border) {
    const std::vector<Depth> found = depths(page, border, deepestOf(border, kDeepestCurl));
    const std::vector<double> reach = reaches(found, border);
    std::size_t next = 0; // position
    for (int along = 0; along < border.length; ++along) {
        while (next + 1 < found.size() && found[next].along < along) {
            ++next;
        }
        const double deeper = std::max(reach[next], reach[next == 0 ? 0 : next - 1]);
        if (deeper > 0) {
            fillInward(page, border, along, deeper);
        }
    }
}

} // namespace

void fillRim(cv::Mat& page, const cv::Scalar& ground) {
    if (std::min(page.cols, page.rows) < kShortest) {
        return;
    }
    PaperPage paper{page, ground};
    fillRoundedCorners(paper);
    for (const bool level : {false, true}) {
        for (const bool far : {false, true}) {
            fillBorder(paper, borderOf(page, level, far));
        }
    }
}

} // namespace doccam::page
