#include "page/search/judgement/traits.h"

#include "page/aspect_ratio.h"
#include "page/quadrilateral.h"
#include "page/search/judgement/side_view.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace doccam::page {
namespace {

double saturating(double value, double half) {
    return value / (value + half);
}

double fading(double value, double half) {
    return half * half / (half * half + value * value);
}

// How far the oddest of the sides is from the others, in levels: what lies around a sheet goes on,
// and beside a part of a sheet lies another.
double oddest(const std::vector<SideView>& views, cv::Vec3f SideView::*colour) {
    double farthest = 0;
    for (const SideView& one : views) {
        double nearest = 1e9;
        for (const SideView& other : views) {
            if (&one != &other) {
                nearest = std::min(nearest, cv::norm(one.*colour - other.*colour));
            }
        }
        farthest = std::max(farthest, nearest);
    }
    return farthest;
}

// The paper is of one colour all around, but for uneven light.
double spreadInside(const std::vector<SideView>& views, double lightness) {
    double spread = 0;
    for (const SideView& one : views) {
        for (const SideView& other : views) {
            const cv::Vec3f difference = one.inside - other.inside;
            spread = std::max(spread, std::abs(difference[0]) * lightness +
                                          std::abs(difference[1]) + std::abs(difference[2]));
        }
    }
    return spread;
}

std::vector<SideView> viewsOf(const Candidate& candidate, const Evidence& evidence) {
    std::vector<SideView> views;
    for (std::size_t i = 0; i < 4; ++i) {
        if (const auto view =
                viewOf(evidence, candidate.corners[i], candidate.corners[(i + 1) % 4])) {
            views.push_back(*view);
        }
    }
    return views;
}

void addSides(const std::vector<SideView>& views, Traits& traits) {
    const auto share = 1 / static_cast<double>(views.size());
    traits.leastConsistency = 1;
    traits.leastContrast = 1;
    for (const SideView& view : views) {
        traits.leastConsistency = std::min(traits.leastConsistency, view.consistency);
        traits.contrast += share * saturating(view.contrast, 15);
        traits.leastContrast = std::min(traits.leastContrast, saturating(view.contrast, 3));
        traits.deepContrast += share * view.deepContrast;
        traits.evenness += share * view.evenness;
        traits.brighter += view.brighter > 0 ? share : 0;
        traits.smoothInside += share * fading(view.roughInside, 0.2);
        traits.smoothOutside += share * fading(view.roughOutside, 0.2);
        traits.calm += share * view.calm;
        traits.continuing += share * view.continuing;
        traits.leak += share * view.leak;
        traits.worstLeak = std::max(traits.worstLeak, view.leak);
        traits.hole += share * view.hole;
    }
}

} // namespace

Traits traitsOf(const Candidate& candidate, const Evidence& evidence) {
    const std::vector<SideView> views = viewsOf(candidate, evidence);
    Traits traits;
    if (views.size() < 2 || !isConvex(candidate.corners)) {
        return traits;
    }
    traits.support = candidate.support.mean;
    traits.leastSupport = candidate.support.least;
    traits.beyond = candidate.support.beyond;
    traits.cornerSupport = candidate.support.corners;
    addSides(views, traits);
    // Past the corners of a smooth sheet on rough cloth, the contrast is the cloth's own.
    constexpr double kOfCloth = 0.8;
    traits.continuing *= 1 - kOfCloth * traits.calm;
    traits.sameness = 1 - saturating(spreadInside(views, 0.25), 40);
    traits.sameTint = 1 - saturating(spreadInside(views, 0), 8);
    traits.background = 1 - saturating(oddest(views, &SideView::outside), 30);
    traits.surroundings = 1 - saturating(oddest(views, &SideView::surroundings), 30);
    traits.rectangle = fading(leastCosine(candidate.corners, evidence.colour.size()), 0.04);
    traits.size = std::sqrt(areaOf(candidate.corners) / evidence.colour.size().area());
    traits.whole = candidate.cut ? 0 : 1;
    return traits;
}

} // namespace doccam::page
