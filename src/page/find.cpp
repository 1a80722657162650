#include "page/find.h"

#include "page/quadrilateral.h"
#include "page/search/candidates.h"
#include "page/search/evidence.h"
#include "page/search/judgement.h"
#include "page/search/side_fit.h"

#include <algorithm>

namespace doccam::page {
namespace {

constexpr std::size_t kCandidates = 300;
constexpr int kSmallestSide = 32;

Corners inPicture(const Corners& reduced, int factor) {
    Corners corners = reduced;
    for (cv::Point2d& corner : corners) {
        corner = (corner + cv::Point2d(0.5, 0.5)) * factor - cv::Point2d(0.5, 0.5);
    }
    return corners;
}

struct Judged : Judgement {
    Candidate candidate;
};

// The surest first.
std::vector<Judged> judged(const std::vector<Candidate>& candidates, const Evidence& evidence) {
    std::vector<Judged> all;
    for (const Candidate& candidate : candidates) {
        all.push_back({judgementOf(candidate, evidence), candidate});
    }
    std::sort(all.begin(), all.end(), [](const Judged& one, const Judged& other) {
        return one.confidence > other.confidence;
    });
    return all;
}

bool encloses(const Corners& outer, const Corners& inner) {
    constexpr double kSlack = 4; // pixels of the reduced picture
    const cv::Point2d middle = middleOf(inner);
    return std::all_of(inner.begin(), inner.end(), [&](cv::Point2d corner) {
        const cv::Point2d inwards = middle - corner;
        return contains(outer, corner + inwards * (kSlack / cv::norm(inwards)));
    });
}

int sharedSides(const Corners& one, const Corners& other) {
    constexpr double kNear = 3;
    int shared = 0;
    for (std::size_t i = 0; i < 4; ++i) {
        const cv::Point2d side = one[(i + 1) % 4] - one[i];
        const cv::Point2d normal = cv::Point2d(-side.y, side.x) / cv::norm(side);
        int near = 0;
        for (const cv::Point2d& corner : other) {
            near += std::abs((corner - one[i]).dot(normal)) < kNear ? 1 : 0;
        }
        shared += near >= 2 ? 1 : 0;
    }
    return shared;
}

// A part of a sheet, as between a line printed across and three of its sides, may be surer than the
// whole.
bool isWholeOf(const Judged& whole, const Judged& part, const Evidence& evidence) {
    constexpr double kNearlyAsSure = 0.15;
    constexpr double kAsSure = 0.06;
    constexpr double kMoreAlike = 0.08;
    const Corners& outer = whole.candidate.corners;
    const Corners& inner = part.candidate.corners;
    if (whole.candidate.cut != part.candidate.cut ||
        whole.confidence < part.confidence - kNearlyAsSure || !encloses(outer, inner)) {
        return false;
    }
    return continuesTo(outer, inner, whole.contrast, evidence) ||
           (whole.confidence > part.confidence - kAsSure &&
            whole.candidate.support > part.candidate.support - kAsSure &&
            whole.contrast > 0.6 * part.contrast &&
            whole.background > part.background + kMoreAlike && sharedSides(outer, inner) >= 2);
}

const Judged& wholeOf(const Judged& part, const std::vector<Judged>& all,
                      const Evidence& evidence) {
    const Judged* whole = &part;
    for (const Judged& other : all) {
        if (areaOf(other.candidate.corners) > 1.05 * areaOf(whole->candidate.corners) &&
            isWholeOf(other, part, evidence)) {
            whole = &other;
        }
    }
    return *whole;
}

// Sheets may lie on each other, but one found is not found again.
bool overlaps(const Corners& one, const Corners& other) {
    return contains(other, middleOf(one)) || contains(one, middleOf(other));
}

bool isCut(const Corners& corners, cv::Size picture) {
    constexpr double kOutside = 2;
    return std::any_of(corners.begin(), corners.end(), [&](cv::Point2d corner) {
        return corner.x < -kOutside || corner.y < -kOutside ||
               corner.x > picture.width + kOutside || corner.y > picture.height + kOutside;
    });
}

} // namespace

std::vector<Sheet> findSheets(const cv::Mat& picture, std::size_t maximum) {
    std::vector<Sheet> sheets;
    if (std::min(picture.cols, picture.rows) < kSmallestSide) {
        return sheets;
    }
    const Evidence evidence = evidenceOf(picture);
    const auto candidates = candidatesOf(linesIn(evidence), evidence.colour.size(), kCandidates);
    const std::vector<Judged> all = judged(candidates, evidence);
    for (const Judged& sure : all) {
        if (sheets.size() >= maximum || sure.confidence < kLeastConfidence) {
            break;
        }
        const Judged& found = wholeOf(sure, all, evidence);
        const Corners coarse = inPicture(found.candidate.corners, evidence.factor);
        if (std::any_of(sheets.begin(), sheets.end(),
                        [&](const Sheet& sheet) { return overlaps(sheet.corners, coarse); })) {
            continue;
        }
        const auto fitted = fitSides(picture, coarse, 2.5 * evidence.factor);
        if (fitted && fitted->support > 0.3) {
            sheets.push_back({clockwise(fitted->corners), found.confidence,
                              found.candidate.cut || isCut(fitted->corners, picture.size())});
        }
    }
    return sheets;
}

std::vector<Sheet> findSheetAgain(const cv::Mat& picture, const Sheet& last) {
    constexpr double kFar = 24;
    constexpr double kNear = 6;
    constexpr double kLeastSupport = 0.5;
    if (std::min(picture.cols, picture.rows) < kSmallestSide) {
        return {};
    }
    auto fitted = fitSides(picture, last.corners, kFar);
    if (fitted) {
        fitted = fitSides(picture, fitted->corners, kNear);
    }
    if (!fitted || fitted->support < kLeastSupport) {
        return {};
    }
    return {{clockwise(fitted->corners), last.confidence, isCut(fitted->corners, picture.size())}};
}

} // namespace doccam::page
