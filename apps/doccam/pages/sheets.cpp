#include "pages/sheets.h"

#include "pages/page_engine.h"

#include <algorithm>

namespace doccam::host {
namespace {

FoundSheet asFound(const DoccamSheet& sheet) {
    FoundSheet found{{}, sheet.confidence};
    for (std::size_t i = 0; i < 4; ++i) {
        found.corners[i] = {sheet.corners[i][0], sheet.corners[i][1]};
    }
    return found;
}

} // namespace

std::optional<FoundSheet> findSheetAgain(const cv::Mat& frame,
                                         const std::optional<FoundSheet>& last) {
    const DoccamImage image = imageOf(frame);
    DoccamSheet before = last ? sheetAt(last->corners) : DoccamSheet{};
    before.confidence = last ? last->confidence : 0;
    DoccamSheet sheet{};
    const int count = doccam_find_sheets(&image, last ? &before : nullptr, &sheet, 1);
    failUnlessDone(count);
    return count > 0 ? std::optional(asFound(sheet)) : std::nullopt;
}

std::vector<FoundSheet> findSheets(const cv::Mat& frame, int maximum) {
    const DoccamImage image = imageOf(frame);
    std::vector<DoccamSheet> sheets(static_cast<std::size_t>(maximum));
    const int count = doccam_find_sheets(&image, nullptr, sheets.data(), maximum);
    failUnlessDone(count);
    std::vector<FoundSheet> found(static_cast<std::size_t>(count));
    std::transform(sheets.begin(), sheets.begin() + count, found.begin(), asFound);
    return found;
}

} // namespace doccam::host
