#include "output/still/engine_still.h"

#include "output/still/save_image.h"
#include "output/still/still_settings.h"
#include "output/still/straight_sheet.h"
#include "page/find.h"
#include "page/look.h"
#include "page/rectify.h"
#include "page/same_sheet.h"
#include "state/library_state.h"

#include <cstdio>
#include <optional>
#include <utility>

namespace doccam {
namespace {

constexpr std::size_t kSheets = 8; // among which the outlined one is recognized

constexpr int kGrey = 1; // of colorMode
constexpr int kBlackAndWhite = 2;

// What the host has seen outlined is what it gets, if several sheets lie there.
std::optional<page::Corners> sheetIn(const cv::Mat& picture, const page::Sheet* live) {
    auto found = page::findSheets(picture, live != nullptr ? kSheets : 1);
    if (found.empty() && live != nullptr) {
        found = page::findSheetAgain(picture, *live);
    }
    if (found.empty()) {
        return std::nullopt;
    }
    return (live != nullptr ? page::sameSheet(found, *live, picture.size()) : found.front())
        .corners;
}

std::optional<cv::Mat> pageOfSheet(const cv::Mat& picture, const page::Sheet* live) {
    const auto corners = sheetIn(picture, live);
    if (!corners) {
        return std::nullopt;
    }
    std::printf("AA->img.cols,img.rows: %d,%d\r\n", picture.cols, picture.rows);
    cv::Mat page = page::rectify(picture, *corners);
    std::printf("BB->img.cols,img.rows: %d,%d\r\n", page.cols, page.rows);
    std::printf("cx,cy,cw,ch: %d,%d,%d,%d\r\n", 0, 0, page.cols, page.rows);
    return page;
}

// The page as it will look, grey for a colour mode without colours.
cv::Mat withLook(const cv::Mat& page, int colorMode, const record::Settings& settings) {
    const bool isPaper = isOn(settings.isDelBlackedge) || isOn(settings.isDelBcakColor);
    if (colorMode == kBlackAndWhite || (isPaper && colorMode == kGrey)) {
        return page::greyPaperLook(page);
    }
    return isPaper ? page::paperLook(page) : page;
}

// Empty for an invalid colour mode.
cv::Mat inColourMode(const cv::Mat& page, int colorMode) {
    if (colorMode == kBlackAndWhite) {
        return page::blackAndWhite(page);
    }
    return page.channels() == 1 ? page : pictureInMode(page, colorMode).value_or(cv::Mat());
}

cv::Mat pageOfWholeFrame(const cv::Mat& picture, int colorMode, const EngineStillOptions& options) {
    std::puts("capture->02");
    cv::Mat page = withLook(picture, colorMode, options.settings);
    if (options.enlarge) {
        page = enlarged(page, options.settings);
    } else {
        std::puts("capture->03");
    }
    return inColourMode(page, colorMode);
}

} // namespace

Still engineStill(std::string path, int cropMode, const cv::Mat& frame,
                  const EngineStillOptions& options) {
    const int colorMode = options.settings.colorMode.load(std::memory_order_relaxed);
    cv::Mat picture = blueFirst(frame);
    if (cropMode == kCropToSheet) {
        if (const auto page = pageOfSheet(picture, options.live)) {
            const cv::Mat look = withLook(*page, colorMode, options.settings);
            return {std::move(path), inColourMode(look, colorMode), false, true};
        }
    }
    std::puts("capture->01");
    return {std::move(path), pageOfWholeFrame(picture, colorMode, options), true, true};
}

} // namespace doccam
