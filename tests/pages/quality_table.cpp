#include "quality_table.h"

#include "quality_bounds.h"

#include <algorithm>
#include <cstdio>

namespace doccam::test {

namespace {

constexpr const char* kHead =
    "| category | frames | overlap | least | proportions | extra | words colour | grey | "
    "black, white | wrong colour | grey | black, white | delta E | SSIM lost |\n"
    "|---|---|---|---|---|---|---|---|---|---|---|---|---|---|\n";

std::string cell(const std::optional<double>& value, int decimals) {
    if (!value) {
        return " |";
    }
    char text[32];
    std::snprintf(text, sizeof text, "%.*f", decimals, *value);
    return std::string(" ") + text + " |";
}

std::string rowText(const std::string& category, const std::vector<FrameMeasures>& frames) {
    const Summary summary = summaryOf(frames);
    std::string text = "| " + category + " | " + std::to_string(frames.size()) + " |" +
                       cell(summary.meanOverlap, 4) + cell(summary.leastOverlap, 4) +
                       cell(summary.proportions, 4) + " " + std::to_string(summary.extra) + " |";
    for (const auto& words : summary.words) {
        text += cell(words, 4);
    }
    for (const auto& wrong : summary.wrong) {
        text += cell(wrong, 2);
    }
    return text + cell(summary.fills, 1) + cell(summary.pictures, 3) + "\n";
}

} // namespace

void QualityTable::add(const std::string& category, const FrameMeasures& frame) {
    const auto row = std::find_if(rows_.begin(), rows_.end(),
                                  [&](const Row& one) { return one.first == category; });
    if (row == rows_.end()) {
        rows_.push_back({category, {frame}});
    } else {
        row->second.push_back(frame);
    }
}

void QualityTable::addPhotograph(const std::string& name, double overlap) {
    photographs_.emplace_back(name, overlap);
}

std::string QualityTable::text() const {
    std::string text = kHead;
    for (const auto& [category, frames] : rows_) {
        text += rowText(category, frames);
    }
    for (const auto& [name, overlap] : photographs_) {
        text += "| " + name + " | 1 |" + cell(overlap, 4) + "\n";
    }
    return text;
}

std::vector<std::string> QualityTable::failures(Means means) const {
    std::vector<std::string> failed = photographFailures(photographs_);
    const auto append = [&](const std::vector<std::string>& more) {
        failed.insert(failed.end(), more.begin(), more.end());
    };
    std::vector<FrameMeasures> all;
    for (const auto& [category, frames] : rows_) {
        append(frameFailures(category, frames));
        if (means == Means::kOfEachCategory) {
            append(meanFailures(category, frames));
        }
        all.insert(all.end(), frames.begin(), frames.end());
    }
    if (means == Means::kOfAll) {
        append(meanFailures("all frames", all));
    }
    append(overallFailures(all));
    return failed;
}

} // namespace doccam::test
