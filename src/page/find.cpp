#include "page/find.h"

#include "page/fit/side_fit.h"
#include "page/quadrilateral.h"
#include "page/search/candidates.h"
#include "page/search/evidence/evidence.h"
#include "page/search/judgement/judgement.h"
#include "page/search/plain_regions.h"
#include "page/search/refined_sides.h"
#include "page/search/region_candidates.h"
#include "page/search/relations.h"

#include <algorithm>
#include <optional>
#include <span>

namespace doccam::page {
namespace {

constexpr std::size_t kCandidates = 200;
constexpr int kSmallestSide = 32;

// The reduced picture leaves out the last pixels, and a border is the border of both.
double inPicture(double reduced, int reducedSize, int size, int factor) {
    constexpr double kSame = 1e-6;
    return std::abs(reduced - (reducedSize - 0.5)) < kSame ? size - 0.5
                                                           : (reduced + 0.5) * factor - 0.5;
}

Corners inPicture(const Corners& reduced, const Evidence& evidence, cv::Size picture) {
    Corners corners = reduced;
    for (cv::Point2d& corner : corners) {
        corner.x = inPicture(corner.x, evidence.colour.cols, picture.width, evidence.factor);
        corner.y = inPicture(corner.y, evidence.colour.rows, picture.height, evidence.factor);
    }
    return corners;
}

struct Judged {
    Candidate candidate;
    double sureness;
    bool isDarker; // than what is around it
};

bool isSurer(const Judged& one, const Judged& other) {
    return one.sureness > other.sureness;
}

Judged judged(const Candidate& candidate, const Evidence& evidence) {
    const Traits traits = traitsOf(candidate, evidence);
    return {candidate, surenessOf(traits), traits.brighter < 0.5};
}

// Those that may be sheets, or might be after a closer look, the surest first.
std::vector<Judged> judged(const std::vector<Candidate>& candidates, const Evidence& evidence) {
    constexpr double kUnsure = -4;
    std::vector<Judged> all;
    for (const Candidate& candidate : candidates) {
        const Judged one = judged(candidate, evidence);
        if (one.sureness > kUnsure) {
            all.push_back(one);
        }
    }
    std::sort(all.begin(), all.end(), isSurer);
    return all;
}

// The sheet that part is only a part of, or part itself. A box printed on a sheet may be a little
// surer than the sheet, but it is darker than what is around it. So may one side of a line printed
// across, but then the other side looks like a sheet, too, which lies exactly beside it.
const Judged& wholeOf(const Judged& part, const std::vector<Judged>& all) {
    constexpr double kLarger = 1.05;
    constexpr double kALittle = 1;
    const Corners& inner = part.candidate.corners;
    for (const Judged& whole : all) {
        const Corners& outer = whole.candidate.corners;
        const bool isOnSheet = part.isDarker && part.sureness < whole.sureness + kALittle;
        if (areaOf(outer) > kLarger * areaOf(inner) && encloses(outer, inner) &&
            (isOnSheet || std::any_of(all.begin(), all.end(), [&](const Judged& rest) {
                 return completes(rest.candidate.corners, inner, outer);
             }))) {
            return whole;
        }
    }
    return part;
}

// Two sheets side by side have four sides in common, but the desk shows between them. The surer of
// those that one is of, or that one.
const Judged& singleOf(const Judged& one, const std::vector<Judged>& all,
                       const Evidence& evidence) {
    constexpr double kSureEnough = 6.5; // less than both together
    const auto isHalf = [&](const Judged& half) {
        return half.sureness > one.sureness - kSureEnough &&
               sharesSideInside(half.candidate.corners, one.candidate.corners);
    };
    for (const Judged& first : all) {
        if (!isHalf(first)) {
            continue;
        }
        for (const Judged& second : all) {
            if (isHalf(second) &&
                areSideBySide(first.candidate.corners, second.candidate.corners, evidence)) {
                return first;
            }
        }
    }
    return one;
}

bool isCut(const Corners& corners, cv::Size picture) {
    constexpr double kOutside = 2;
    return std::any_of(corners.begin(), corners.end(), [&](cv::Point2d corner) {
        return corner.x < -kOutside || corner.y < -kOutside ||
               corner.x > picture.width + kOutside || corner.y > picture.height + kOutside;
    });
}

// A search for sheets in one picture.
class SheetSearch {
  public:
    explicit SheetSearch(const cv::Mat& picture)
      : picture_(picture)
      , evidence_(evidenceOf(picture)) {}

    // Finds sheets that do not overlap those of earlier rounds. Returns how many.
    std::size_t round(std::size_t maximum);

    // Finds sheets that are only sure after a closer look.
    void lookCloser(std::size_t maximum);

    const std::vector<Sheet>& sheets() const { return sheets_; }

  private:
    bool isKnown(const Corners& corners) const {
        return std::any_of(sheets_.begin(), sheets_.end(),
                           [&](const Sheet& sheet) { return overlaps(sheet.corners, corners); });
    }

    Corners inPicture(const Corners& reduced) const {
        return page::inPicture(reduced, evidence_, picture_.size());
    }

    Corners inPicture(const Judged& judged) const { return inPicture(judged.candidate.corners); }

    // Also those around smooth regions, unless one that lines form is sure.
    std::vector<Judged> judgedCandidates();

    std::optional<Sheet> bestFitted(std::span<const Judged> judged) const;

    cv::Mat picture_;
    Evidence evidence_;
    std::optional<std::vector<Corners>> regions_; // once they are needed
    std::vector<Sheet> sheets_;
    std::vector<Judged> unsure_; // of the last round, the surest first
};

// Of the first, and of those that are nearly as sure and in its place, the one whose sides are
// best seen in the full picture.
std::optional<Sheet> SheetSearch::bestFitted(std::span<const Judged> judged) const {
    constexpr double kNearlyAsSure = 2;
    constexpr double kLeastSupport = 0.5;
    constexpr double kPlain = 0.9;
    constexpr double kOfSupport = 4;
    constexpr int kMostFits = 5;
    std::optional<Sheet> best;
    double bestValue = 0;
    int fits = 0;
    for (const Judged& one : judged) {
        if (fits == kMostFits || one.sureness < judged.front().sureness - kNearlyAsSure) {
            break;
        }
        if (!isVariant(one.candidate.corners, judged.front().candidate.corners)) {
            continue;
        }
        ++fits;
        const auto exact = fitSides(picture_, inPicture(one), (5 * evidence_.factor + 1) / 2);
        if (!exact || exact->support < kLeastSupport) {
            continue;
        }
        const double value = one.sureness + kOfSupport * exact->support;
        if (!best || value > bestValue) {
            bestValue = value;
            best = {clockwise(exact->corners), confidenceOf(one.sureness),
                    one.candidate.cut || isCut(exact->corners, picture_.size())};
        }
        if (fits == 1 && exact->support > kPlain) {
            break;
        }
    }
    return best;
}

std::vector<Judged> SheetSearch::judgedCandidates() {
    constexpr double kSure = 6;
    const std::vector<SupportedLine> lines = linesIn(evidence_);
    std::vector<Judged> all =
        judged(candidatesOf(lines, evidence_.colour.size(), kCandidates), evidence_);
    if (!all.empty() && all.front().sureness > kSure) {
        return all;
    }
    if (!regions_) {
        regions_ = plainRegions(evidence_);
    }
    for (const Corners& region : *regions_) {
        if (!isKnown(inPicture(region))) {
            const std::vector<Judged> around =
                judged(candidatesAround(region, lines, evidence_), evidence_);
            all.insert(all.end(), around.begin(), around.end());
        }
    }
    std::sort(all.begin(), all.end(), isSurer);
    return all;
}

std::size_t SheetSearch::round(std::size_t maximum) {
    const std::size_t before = sheets_.size();
    std::vector<Judged> all = judgedCandidates();
    const auto unsure =
        std::find_if(all.begin(), all.end(), [](const Judged& one) { return one.sureness < 0; });
    unsure_.assign(unsure, all.end());
    all.erase(unsure, all.end());
    for (std::size_t i = 0; i < all.size() && sheets_.size() < maximum; ++i) {
        if (isKnown(inPicture(all[i]))) {
            continue;
        }
        const Judged* found = &singleOf(wholeOf(all[i], all), all, evidence_);
        if (isKnown(inPicture(*found))) {
            found = &all[i];
        }
        const auto place = static_cast<std::size_t>(found - all.data());
        if (const auto sheet = bestFitted(std::span(all).subspan(place))) {
            sheets_.push_back(*sheet);
            evidence_.forgetWithin(found->candidate.corners);
        }
    }
    return sheets_.size() - before;
}

void SheetSearch::lookCloser(std::size_t maximum) {
    int looks = 6;
    for (const Judged& one : unsure_) {
        if (sheets_.size() == maximum || looks == 0) {
            return;
        }
        if (isKnown(inPicture(one))) {
            continue;
        }
        --looks;
        const Judged closer = judged(withRefinedSides(one.candidate.corners, evidence_), evidence_);
        if (closer.sureness < 0 || isKnown(inPicture(closer))) {
            continue;
        }
        if (const auto sheet = bestFitted(std::span(&closer, 1))) {
            sheets_.push_back(*sheet);
        }
    }
}

} // namespace

std::vector<Sheet> findSheets(const cv::Mat& picture, std::size_t maximum) {
    // A strip so long has nothing left when it is reduced.
    constexpr int kLongest = 40; // times its width
    if (std::min(picture.cols, picture.rows) < kSmallestSide ||
        std::max(picture.cols, picture.rows) > kLongest * std::min(picture.cols, picture.rows)) {
        return {};
    }
    SheetSearch search(picture);
    // Without the print of those found, the sides of smaller ones beside them stand out.
    while (search.round(maximum) > 0 && search.sheets().size() < maximum) {
    }
    search.lookCloser(maximum);
    std::vector<Sheet> sheets = search.sheets();
    std::stable_sort(sheets.begin(), sheets.end(), [](const Sheet& one, const Sheet& other) {
        return one.confidence > other.confidence;
    });
    return sheets;
}

std::vector<Sheet> findSheetAgain(const cv::Mat& picture, const Sheet& last) {
    constexpr int kFar = 24;
    constexpr int kNear = 6;
    // Of the edges of mere noise, anywhere within kNear, a third lie within this, too.
    constexpr double kTolerance = 2;
    constexpr double kLeastSupport = 0.5;
    if (std::min(picture.cols, picture.rows) < kSmallestSide) {
        return {};
    }
    auto fitted = fitSides(picture, last.corners, kFar);
    if (fitted) {
        fitted = fitSides(picture, fitted->corners, kNear, kTolerance);
    }
    if (!fitted || fitted->support < kLeastSupport) {
        return {};
    }
    return {{clockwise(fitted->corners), last.confidence, isCut(fitted->corners, picture.size())}};
}

} // namespace doccam::page
