#include "page/search/judgement/side_view.h"

#include <opencv2/core.hpp>

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace doccam::page {
namespace {

constexpr int kSamples = 40; // along each side
constexpr std::array kDepths{3, 8, 16, 24};
constexpr double kBeyondEdge = 10; // from where on a side's own edge makes nothing rough
constexpr double kAlike = 0.35;    // of the contrast

// Colours at each depth, from the side inwards or outwards.
struct Sample {
    std::array<cv::Vec3f, kDepths.size()> inside;
    std::array<cv::Vec3f, kDepths.size()> outside;
    double roughInside = 0;
    double roughOutside = 0;
};

class Sampling {
  public:
    Sampling(const Evidence& evidence, cv::Point2d from, cv::Point2d to)
      : colour_(evidence.colour)
      , roughness_(evidence.roughness) {
        const cv::Point2d along = to - from;
        const cv::Point2d inwards = cv::Point2d(-along.y, along.x) / cv::norm(along);
        samples_.reserve(kSamples);
        for (int i = 0; i < kSamples; ++i) {
            add(from + along * ((i + 0.5) / kSamples), inwards);
        }
    }

    const std::vector<Sample>& samples() const { return samples_; }

  private:
    // Farther away than the picture goes, its last colours.
    void add(cv::Point2d foot, cv::Point2d inwards) {
        const cv::Rect picture({}, colour_.size());
        const auto at = [&](double depth) { return cv::Point(foot + inwards * depth); };
        if (!picture.contains(at(kDepths[0])) || !picture.contains(at(-kDepths[0]))) {
            return;
        }
        Sample sample;
        cv::Vec3f inside;
        cv::Vec3f outside;
        for (std::size_t i = 0; i < kDepths.size(); ++i) {
            const cv::Point inner = at(kDepths[i]);
            const cv::Point outer = at(-kDepths[i]);
            inside = picture.contains(inner) ? colour_.at<cv::Vec3f>(inner) : inside;
            outside = picture.contains(outer) ? colour_.at<cv::Vec3f>(outer) : outside;
            sample.inside[i] = inside;
            sample.outside[i] = outside;
        }
        addRoughness(at(kBeyondEdge), at(-kBeyondEdge), sample);
        samples_.push_back(sample);
    }

    void addRoughness(cv::Point inside, cv::Point outside, Sample& sample) const {
        const cv::Rect picture({}, colour_.size());
        if (picture.contains(inside) && picture.contains(outside)) {
            sample.roughInside = roughness_.at<unsigned char>(inside);
            sample.roughOutside = roughness_.at<unsigned char>(outside);
        }
    }

    const cv::Mat& colour_;
    const cv::Mat& roughness_;
    std::vector<Sample> samples_;
};

template <typename Value>
cv::Vec3f medianOf(const std::vector<Sample>& samples, const Value& valueOf) {
    std::array<float, kSamples> values{};
    cv::Vec3f result;
    const auto end = values.begin() + static_cast<std::ptrdiff_t>(samples.size());
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(samples.size() / 2);
    for (int c = 0; c < 3; ++c) {
        std::transform(samples.begin(), samples.end(), values.begin(),
                       [&](const Sample& sample) { return valueOf(sample)[c]; });
        std::nth_element(values.begin(), middle, end);
        result[c] = *middle;
    }
    return result;
}

// Paper changes its lightness or its tint only where a shadow, a finger or print begins.
bool isJump(const cv::Vec3f& one, const cv::Vec3f& other) {
    constexpr float kLightness = 0.09F;
    constexpr float kTint = 0.05F;
    const float lightness = (one[0] + other[0]) / 2 + 10;
    return std::abs(one[0] - other[0]) > kLightness * lightness + 2 ||
           std::abs(one[1] - other[1]) + std::abs(one[2] - other[2]) > kTint * lightness + 4;
}

void addRoughness(const std::vector<Sample>& samples, SideView& view) {
    for (std::size_t i = 1; i < samples.size(); ++i) {
        view.roughInside += isJump(samples[i - 1].inside[0], samples[i].inside[0]) ? 1 : 0;
        view.roughOutside += isJump(samples[i - 1].outside[0], samples[i].outside[0]) ? 1 : 0;
    }
    view.roughInside /= static_cast<double>(samples.size());
    view.roughOutside /= static_cast<double>(samples.size());
    constexpr double kHardly = 4; // sixteenths of a level
    double inside = kHardly;
    double outside = kHardly;
    for (const Sample& sample : samples) {
        inside += sample.roughInside / static_cast<double>(samples.size());
        outside += sample.roughOutside / static_cast<double>(samples.size());
    }
    view.calm = std::max(0.0, outside - inside) / outside;
}

void addContrast(const std::vector<Sample>& samples, SideView& view) {
    const cv::Vec3f step = medianOf(
        samples, [](const Sample& sample) { return sample.inside[0] - sample.outside[0]; });
    const cv::Vec3f deepStep = medianOf(
        samples, [](const Sample& sample) { return sample.inside[2] - sample.outside[2]; });
    view.contrast = cv::norm(step);
    view.brighter = step[0];
    const double scale = view.contrast + 1e-6;
    view.deepContrast = std::clamp(deepStep.dot(step) / (scale * scale), 0.0, 1.0);
    double deviation = 0;
    for (const Sample& sample : samples) {
        const double there = (sample.inside[0] - sample.outside[0]).dot(step) / scale;
        view.consistency += there > 0.4 * view.contrast ? 1 : 0;
        deviation += std::min(cv::norm(sample.inside[0] - view.inside), 2 * view.contrast + 8);
    }
    view.consistency /= static_cast<double>(samples.size());
    view.evenness = 1 / (1 + deviation / static_cast<double>(samples.size()) / (view.contrast + 4));
}

// The contrast across the line of a side, past from, as seen from to.
std::optional<double> contrastPast(const Evidence& evidence, cv::Point2d from, cv::Point2d to) {
    constexpr double kAcross = 3;
    const cv::Point2d outwards = (from - to) / cv::norm(from - to);
    const cv::Point2d across = cv::Point2d(-outwards.y, outwards.x) * kAcross;
    const cv::Rect picture({}, evidence.colour.size());
    cv::Vec3f difference;
    int count = 0;
    for (const double past : {6, 9, 12, 15, 18}) {
        const cv::Point2d place = from + outwards * past;
        const cv::Point one(place + across);
        const cv::Point other(place - across);
        if (picture.contains(one) && picture.contains(other)) {
            difference += evidence.colour.at<cv::Vec3f>(one) - evidence.colour.at<cv::Vec3f>(other);
            ++count;
        }
    }
    return count > 0 ? std::optional(cv::norm(difference) / count) : std::nullopt;
}

// Past the corners of a sheet its surroundings are on both sides; a pattern goes on.
void addContinuing(const Evidence& evidence, cv::Point2d from, cv::Point2d to, SideView& view) {
    double sum = 0;
    int ends = 0;
    for (const auto& contrast :
         {contrastPast(evidence, from, to), contrastPast(evidence, to, from)}) {
        if (contrast) {
            sum += std::min(1.0, *contrast / (view.contrast + 2));
            ++ends;
        }
    }
    view.continuing = ends > 0 ? sum / ends : 0;
}

// What lies on a sheet's other side of an edge is all around it, but not on it.
void addLikeness(const std::vector<Sample>& samples, SideView& view) {
    const double alike = kAlike * view.contrast + 1;
    for (const Sample& sample : samples) {
        for (std::size_t i = 0; i < kDepths.size(); ++i) {
            view.surroundings += sample.outside[i];
            view.leak += cv::norm(sample.outside[i] - view.inside) < alike ? 1 : 0;
            view.hole += cv::norm(sample.inside[i] - view.outside) < alike ? 1 : 0;
        }
    }
    const auto count = static_cast<double>(samples.size() * kDepths.size());
    view.surroundings *= 1 / count;
    view.leak /= count;
    view.hole /= count;
}

} // namespace

std::optional<SideView> viewOf(const Evidence& evidence, cv::Point2d from, cv::Point2d to) {
    const Sampling sampling(evidence, from, to);
    const std::vector<Sample>& samples = sampling.samples();
    if (samples.size() < kSamples / 3) {
        return std::nullopt;
    }
    SideView view;
    view.inside = medianOf(samples, [](const Sample& sample) { return sample.inside[0]; });
    view.outside = medianOf(samples, [](const Sample& sample) { return sample.outside[0]; });
    addContrast(samples, view);
    addRoughness(samples, view);
    addLikeness(samples, view);
    addContinuing(evidence, from, to, view);
    return view;
}

} // namespace doccam::page
