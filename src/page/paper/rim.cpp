// Filling what a page shows of the desk around it.
#include "page/paper/rim.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <vector>

namespace doccam::page {

namespace {

constexpr double kDeepest = 0.03;      // of the page's side across
constexpr int kPaper = 228;            // the darkest channel that still is paper
constexpr int kPaperRun = 3;           // samples of paper that end the rim
constexpr int kPositions = 400;        // along a border, at most
constexpr double kSupport = 0.3;       // of the positions lie on the sheet's edge
constexpr double kCurledSupport = 0.6; // show desk beside a sheet without a straight edge
constexpr double kCurl = 0.012;        // of the side across: how far an edge curls from straight
constexpr int kPenumbra = 2;           // pixels beside the sheet's edge that are still dark
constexpr unsigned char kWhite = 255;
constexpr int kShortest = 64; // sides below this have no rim

// A view of the page on which every border is the left one.
struct Border {
    bool level; // the top or the bottom border
    bool far;   // the right or the bottom one
    int length; // along it
    int across; // the page's side across it

    cv::Point at(int along, int depth) const {
        const int inward = far ? across - 1 - depth : depth;
        return level ? cv::Point(along, inward) : cv::Point(inward, along);
    }
};

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

bool isPaper(const cv::Mat& page, cv::Point pixel) {
    const int channels = page.channels();
    const auto* samples = page.ptr<unsigned char>(pixel.y, pixel.x);
    return *std::min_element(samples, samples + channels) >= kPaper;
}

// How many pixels inward the first paper lies, or deepest.
int depthAt(const cv::Mat& page, const Border& border, int along, int deepest) {
    int run = 0;
    for (int depth = 0; depth < deepest; ++depth) {
        run = isPaper(page, border.at(along, depth)) ? run + 1 : 0;
        if (run == kPaperRun) {
            return depth + 1 - kPaperRun;
        }
    }
    return deepest;
}

std::vector<Depth> depths(const cv::Mat& page, const Border& border, int deepest) {
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

// How far to fill at each of the positions: to the straight edge, and where the sheet curls as far
// beyond it as the desk is seen. Nothing if there is no rim.
std::vector<double> reaches(const std::vector<Depth>& depths, const Border& border, int deepest) {
    const auto count = static_cast<double>(depths.size());
    const auto seen = std::count_if(depths.begin(), depths.end(), [&](const Depth& d) {
        return d.depth > 0 && d.depth < deepest;
    });
    if (static_cast<double>(seen) < kSupport * count) {
        return {};
    }
    int supported = 0;
    const Edge edge = bestEdge(depths, deepest, supported);
    const bool straight = supported >= kSupport * count;
    if (!straight && static_cast<double>(seen) < kCurledSupport * count) {
        return {};
    }
    std::vector<double> found;
    for (std::size_t i = 0; i < depths.size(); ++i) {
        const double line = straight ? edge.at(depths[i].along) : 0;
        const double depth = depthAround(depths, i, deepest);
        const bool curled = !straight || depth < line + kCurl * border.across;
        found.push_back(
            std::clamp(curled ? std::max(line, depth) : line, 0.0, static_cast<double>(deepest)));
    }
    return found;
}

void fillPosition(cv::Mat& page, const Border& border, int along, double reach) {
    const int channels = page.channels();
    const int depth = std::min(static_cast<int>(std::ceil(reach)) + kPenumbra, border.across);
    for (int inward = 0; inward < depth; ++inward) {
        const cv::Point pixel = border.at(along, inward);
        std::fill_n(page.ptr<unsigned char>(pixel.y, pixel.x), channels, kWhite);
    }
}

void fillBorder(cv::Mat& page, const Border& border) {
    const int deepest = std::max(4, static_cast<int>(std::lround(border.across * kDeepest)));
    const std::vector<Depth> found = depths(page, border, deepest);
    const std::vector<double> reach = reaches(found, border, deepest);
    if (reach.empty()) {
        return;
    }
    std::size_t next = 0; // position
    for (int along = 0; along < border.length; ++along) {
        while (next + 1 < found.size() && found[next].along < along) {
            ++next;
        }
        const double deeper = std::max(reach[next], reach[next == 0 ? 0 : next - 1]);
        if (deeper > 0) {
            fillPosition(page, border, along, deeper);
        }
    }
}

} // namespace

void fillRim(cv::Mat& page) {
    if (std::min(page.cols, page.rows) < kShortest) {
        return;
    }
    for (const bool level : {false, true}) {
        for (const bool far : {false, true}) {
            fillBorder(page,
                       {level, far, level ? page.cols : page.rows, level ? page.rows : page.cols});
        }
    }
}

} // namespace doccam::page
