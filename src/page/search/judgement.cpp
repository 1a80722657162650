#include "page/search/judgement.h"

#include "page/quadrilateral.h"

#include <opencv2/core.hpp>

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <vector>

namespace doccam::page {
namespace {

constexpr int kSamples = 40; // along each side

std::optional<cv::Vec3f> colourAt(const cv::Mat& colour, cv::Point2d place) {
    const cv::Point pixel(cvRound(place.x), cvRound(place.y));
    return cv::Rect({}, colour.size()).contains(pixel) ? std::optional(colour.at<cv::Vec3f>(pixel))
                                                       : std::nullopt;
}

struct Sample {
    cv::Vec3f inside;
    cv::Vec3f outside;
};

// Colours a few pixels on both sides of a side, between its corners.
std::vector<Sample> samplesOf(const Evidence& evidence, cv::Point2d from, cv::Point2d to) {
    constexpr double kOffset = 3;
    const cv::Point2d along = to - from;
    const cv::Point2d inwards = cv::Point2d(-along.y, along.x) / cv::norm(along);
    std::vector<Sample> samples;
    for (int i = 0; i < kSamples; ++i) {
        const cv::Point2d place = from + along * ((i + 0.5) / kSamples);
        const auto inside = colourAt(evidence.colour, place + inwards * kOffset);
        const auto outside = colourAt(evidence.colour, place - inwards * kOffset);
        if (inside && outside) {
            samples.push_back({*inside, *outside});
        }
    }
    return samples;
}

float median(std::vector<float> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

template <typename Value>
cv::Vec3f medianOf(const std::vector<Sample>& samples, const Value& valueOf) {
    cv::Vec3f result;
    for (int c = 0; c < 3; ++c) {
        std::vector<float> values;
        values.reserve(samples.size());
        for (const Sample& sample : samples) {
            values.push_back(valueOf(sample)[c]);
        }
        result[c] = median(std::move(values));
    }
    return result;
}

struct SideView {
    double contrast;    // levels between inside and outside
    double consistency; // part of the samples that show it
    double evenness;    // 1 if the inside is of one colour
    double brighter;    // levels that the inside is brighter
    double jumps;       // part of the steps along the inside that change its colour
    cv::Vec3f inside;
    cv::Vec3f outside;
};

// Paper changes its lightness or its tint only where a shadow, a finger or print begins.
bool isJump(const cv::Vec3f& one, const cv::Vec3f& other) {
    constexpr float kLightness = 0.09F;
    constexpr float kTint = 0.05F;
    const float lightness = (one[0] + other[0]) / 2 + 10;
    return std::abs(one[0] - other[0]) > kLightness * lightness + 2 ||
           std::abs(one[1] - other[1]) + std::abs(one[2] - other[2]) > kTint * lightness + 4;
}

std::optional<SideView> viewOf(const std::vector<Sample>& samples) {
    if (samples.size() < kSamples / 3) {
        return std::nullopt;
    }
    SideView view{};
    view.inside = medianOf(samples, [](const Sample& sample) { return sample.inside; });
    view.outside = medianOf(samples, [](const Sample& sample) { return sample.outside; });
    const cv::Vec3f step =
        medianOf(samples, [](const Sample& sample) { return sample.inside - sample.outside; });
    view.contrast = cv::norm(step);
    view.brighter = step[0];
    int consistent = 0;
    std::vector<float> deviations;
    for (const Sample& sample : samples) {
        const double there = (sample.inside - sample.outside).dot(step) / (view.contrast + 1e-6);
        consistent += there > 0.4 * view.contrast ? 1 : 0;
        deviations.push_back(static_cast<float>(cv::norm(sample.inside - view.inside)));
    }
    int jumps = 0;
    for (std::size_t i = 1; i < samples.size(); ++i) {
        jumps += isJump(samples[i - 1].inside, samples[i].inside) ? 1 : 0;
    }
    view.jumps = static_cast<double>(jumps) / static_cast<double>(samples.size());
    view.consistency = static_cast<double>(consistent) / static_cast<double>(samples.size());
    view.evenness = 1 / (1 + median(std::move(deviations)) / (view.contrast + 4));
    return view;
}

// How far the oddest of the sides is from the others, in levels: what lies around a sheet goes on,
// and beside a part of a sheet lies another.
double oddestOf(const std::vector<cv::Vec3f>& colours) {
    double oddest = 0;
    for (const cv::Vec3f& one : colours) {
        double nearest = 1e9;
        for (const cv::Vec3f& other : colours) {
            if (&one != &other) {
                nearest = std::min(nearest, cv::norm(one - other));
            }
        }
        oddest = std::max(oddest, nearest);
    }
    return oddest;
}

double saturating(double value, double half) {
    return value / (value + half);
}

// The corners of inner in the order of the nearest ones of outer.
Corners matched(const Corners& inner, const Corners& outer) {
    Corners best = inner;
    double least = 1e18;
    for (std::size_t turn = 0; turn < 4; ++turn) {
        Corners turned;
        double sum = 0;
        for (std::size_t i = 0; i < 4; ++i) {
            turned[i] = inner[(i + turn) % 4];
            sum += cv::norm(turned[i] - outer[i]);
        }
        if (sum < least) {
            least = sum;
            best = turned;
        }
    }
    return best;
}

} // namespace

Judgement judgementOf(const Candidate& candidate, const Evidence& evidence) {
    const Corners& corners = candidate.corners;
    double consistency = 0;
    double leastConsistency = 1;
    double contrast = 1;
    double faintest = 1e9;
    double evenness = 0;
    double jumps = 0;
    double brighter = 0;
    int seen = 0;
    std::vector<cv::Vec3f> insides;
    std::vector<cv::Vec3f> outsides;
    for (std::size_t i = 0; i < 4; ++i) {
        const auto view = viewOf(samplesOf(evidence, corners[i], corners[(i + 1) % 4]));
        if (!view) {
            continue;
        }
        ++seen;
        consistency += view->consistency;
        leastConsistency = std::min(leastConsistency, view->consistency);
        contrast = std::min(contrast, saturating(view->contrast, 3));
        faintest = std::min(faintest, view->contrast);
        evenness += view->evenness;
        jumps += view->jumps;
        brighter += view->brighter > 0 ? 1 : 0;
        insides.push_back(view->inside);
        outsides.push_back(view->outside);
    }
    if (seen < 3) {
        return {};
    }
    consistency /= seen;
    evenness /= seen;
    brighter /= seen;
    jumps /= seen;
    // The paper is of one colour all around, but for uneven light.
    double spread = 0;
    for (const cv::Vec3f& one : insides) {
        for (const cv::Vec3f& other : insides) {
            const cv::Vec3f difference = one - other;
            spread = std::max(spread, std::abs(difference[0]) * 0.25 + std::abs(difference[1]) +
                                          std::abs(difference[2]));
        }
    }
    const double background = 1 / (1 + oddestOf(outsides) / 30);
    const double sameness = 1 / (1 + spread / 40);
    const double size = std::sqrt(areaOf(corners) / evidence.colour.size().area());
    const double score = 0.32 * candidate.support + 0.14 * consistency + 0.08 * leastConsistency +
                         0.08 * contrast + 0.08 * evenness + 0.08 * brighter + 0.05 * sameness +
                         0.10 * background + 0.07 * size;
    constexpr double kManyJumps = 0.20;
    const double smoothness = 1 / (1 + (jumps / kManyJumps) * (jumps / kManyJumps));
    constexpr double kOfCut = 0.88; // one side proves nothing
    const double confidence = score * (0.35 + 0.65 * smoothness) * (candidate.cut ? kOfCut : 1);
    return {std::clamp(confidence, 0.0, 1.0), faintest, background};
}

bool continuesTo(const Corners& whole, const Corners& part, double contrast,
                 const Evidence& evidence) {
    constexpr double kApart = 4;
    constexpr double kInside = 3;
    constexpr double kBeyond = 8; // past a printed line, too
    const double same = std::max(2.0, 0.3 * contrast);
    const Corners inner = matched(part, whole);
    for (std::size_t i = 0; i < 4; ++i) {
        std::vector<float> changes;
        for (int k = 0; k < kSamples; ++k) {
            const double at = (k + 0.5) / kSamples;
            const cv::Point2d here = inner[i] + (inner[(i + 1) % 4] - inner[i]) * at;
            const cv::Point2d there = whole[i] + (whole[(i + 1) % 4] - whole[i]) * at;
            const double apart = cv::norm(there - here);
            if (apart < kApart) {
                continue;
            }
            const cv::Point2d outwards = (there - here) / apart;
            const auto inside = colourAt(evidence.colour, here - outwards * kInside);
            const auto beyond =
                colourAt(evidence.colour, here + outwards * std::min(kBeyond, apart / 2));
            if (inside && beyond) {
                changes.push_back(static_cast<float>(cv::norm(*beyond - *inside)));
            }
        }
        if (changes.size() > kSamples / 3 && median(std::move(changes)) > same) {
            return false;
        }
    }
    return true;
}

} // namespace doccam::page
