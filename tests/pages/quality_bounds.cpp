#include "quality_bounds.h"

#include <algorithm>
#include <cstdio>
#include <numeric>

namespace doccam::test {

namespace {

constexpr double kMeanOverlap = 0.99;
constexpr double kLeastOverlap = 0.985;
constexpr double kLeastSmallOverlap = 0.97; // of receipts and cards
constexpr double kMeanPhotographOverlap = 0.988;
constexpr double kLeastPhotographOverlap = 0.965;
constexpr double kProportions = 0.01;
constexpr double kWords = 0.995;
constexpr double kWrongWords = 1;
constexpr double kFillDifference = 6;
constexpr double kPictureLoss = 0.02;

using Sentences = std::vector<std::string>;
using Values = std::vector<double>;

std::optional<double> mean(const Values& values) {
    if (values.empty()) {
        return {};
    }
    return std::accumulate(values.begin(), values.end(), 0.0) / static_cast<double>(values.size());
}

std::optional<double> largest(const Values& values) {
    return values.empty() ? std::nullopt
                          : std::optional(*std::max_element(values.begin(), values.end()));
}

std::optional<double> least(const Values& values) {
    return values.empty() ? std::nullopt
                          : std::optional(*std::min_element(values.begin(), values.end()));
}

bool isSmall(const SheetMeasures& sheet) {
    return sheet.kind == "receipt" || sheet.kind == "card";
}

void require(Sentences& failed, bool holds, const std::string& what, double value, double bound) {
    if (!holds) {
        char text[64];
        std::snprintf(text, sizeof text, ": %.4f, bound %.4f", value, bound);
        failed.push_back(what + text);
    }
}

void atLeast(Sentences& failed, const std::string& what, const std::optional<double>& value,
             double bound) {
    if (value) {
        require(failed, *value >= bound, what, *value, bound);
    }
}

void atMost(Sentences& failed, const std::string& what, const std::optional<double>& value,
            double bound) {
    if (value) {
        require(failed, *value <= bound, what, *value, bound);
    }
}

void append(Values& values, const Values& more) {
    values.insert(values.end(), more.begin(), more.end());
}

} // namespace

Summary summaryOf(const std::vector<FrameMeasures>& frames) {
    Summary summary;
    Values overlaps;
    Values proportions;
    Values fills;
    Values pictures;
    std::array<Values, 3> words;
    std::array<Values, 3> wrong;
    for (const FrameMeasures& frame : frames) {
        summary.extra += frame.extra;
        for (const SheetMeasures& sheet : frame.sheets) {
            overlaps.push_back(sheet.overlap);
            append(fills, sheet.fills);
            append(pictures, sheet.pictures);
            if (sheet.proportions) {
                proportions.push_back(*sheet.proportions);
            }
            for (std::size_t i = 0; sheet.readings && i < words.size(); ++i) {
                words[i].push_back((*sheet.readings)[i].found);
                wrong[i].push_back((*sheet.readings)[i].wrong);
            }
        }
    }
    summary.meanOverlap = mean(overlaps);
    summary.leastOverlap = least(overlaps);
    summary.proportions = largest(proportions);
    summary.fills = largest(fills);
    summary.pictures = largest(pictures);
    std::transform(words.begin(), words.end(), summary.words.begin(), mean);
    std::transform(wrong.begin(), wrong.end(), summary.wrong.begin(), mean);
    return summary;
}

Sentences frameFailures(const std::string& name, const std::vector<FrameMeasures>& frames) {
    Sentences failed;
    for (const FrameMeasures& frame : frames) {
        for (const SheetMeasures& sheet : frame.sheets) {
            atLeast(failed, "overlap of " + frame.name + " (" + sheet.kind + ")", sheet.overlap,
                    isSmall(sheet) ? kLeastSmallOverlap : kLeastOverlap);
        }
        if (frame.sheets.empty()) {
            atMost(failed, "sheets found on the empty desk " + frame.name, frame.extra, 0);
        }
    }
    const Summary summary = summaryOf(frames);
    atMost(failed, "proportions of " + name, summary.proportions, kProportions);
    atMost(failed, "delta E of fills of " + name, summary.fills, kFillDifference);
    atMost(failed, "SSIM lost by pictures of " + name, summary.pictures, kPictureLoss);
    return failed;
}

Sentences meanFailures(const std::string& name, const std::vector<FrameMeasures>& frames) {
    static const char* const kColours[] = {"colour", "grey", "black and white"};
    Sentences failed;
    Values overlaps;
    for (const FrameMeasures& frame : frames) {
        for (const SheetMeasures& sheet : frame.sheets) {
            if (!isSmall(sheet)) {
                overlaps.push_back(sheet.overlap);
            }
        }
    }
    atLeast(failed, "mean overlap of " + name, mean(overlaps), kMeanOverlap);
    const Summary summary = summaryOf(frames);
    for (std::size_t i = 0; i < summary.words.size(); ++i) {
        const std::string where = " of " + name + " in " + kColours[i];
        atLeast(failed, "words" + where, summary.words[i], kWords);
        atMost(failed, "wrong words" + where, summary.wrong[i], kWrongWords);
    }
    return failed;
}

Sentences overallFailures(const std::vector<FrameMeasures>& frames) {
    Sentences failed;
    atLeast(failed, "mean overlap of all drawn frames", summaryOf(frames).meanOverlap,
            kMeanOverlap);
    return failed;
}

Sentences photographFailures(const std::vector<std::pair<std::string, double>>& photographs) {
    Sentences failed;
    Values overlaps;
    for (const auto& [name, overlap] : photographs) {
        atLeast(failed, "overlap of " + name, overlap, kLeastPhotographOverlap);
        overlaps.push_back(overlap);
    }
    atLeast(failed, "mean overlap of photographs", mean(overlaps), kMeanPhotographOverlap);
    return failed;
}

} // namespace doccam::test
