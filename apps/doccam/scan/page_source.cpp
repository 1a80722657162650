#include "scan/page_source.h"

#include "host/failure.h"
#include "pages/page_engine.h"

#include <opencv2/core.hpp>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <utility>
#include <vector>

namespace doccam::host {
namespace {

PageDraft byEngine(CameraSession& session, const PageWay& way) {
    FrameFile file = session.nextFrameFile();
    const cv::Mat frame = decoded(file);
    const auto found = way.whole ? std::vector<FoundSheet>() : findSheets(frame, 1);
    return draftOf(std::move(file), frame.size(),
                   found.empty() ? std::nullopt : std::optional(found.front()), way);
}

PageDraft byStill(CameraSession& session, const PageWay& way, const std::string& work) {
    PageDraft draft;
    draft.recipe = way.recipe;
    draft.origin.finished = true;
    draft.cropped = !way.whole && session.findSheet();
    draft.origin.cropped = draft.cropped;
    session.still(work, draft.cropped);
    std::ifstream file(work, std::ios::binary);
    draft.frame.assign(std::istreambuf_iterator<char>(file), {});
    file.close();
    std::error_code ignored;
    std::filesystem::remove(work, ignored);
    draft.size = decoded(draft.frame).size();
    return draft;
}

} // namespace

PageDraft draftPage(CameraSession& session, const PageWay& way, const std::string& work) {
    return way.byEngine ? byEngine(session, way) : byStill(session, way, work);
}

PageDraft draftOf(FrameFile frame, cv::Size size, const std::optional<FoundSheet>& sheet,
                  const PageWay& way) {
    PageDraft draft;
    draft.frame = std::move(frame);
    draft.recipe = way.recipe;
    draft.origin.desk = deskFor(way.desks, size);
    if (sheet && !way.whole) {
        draft.sheet = sheet;
        draft.recipe.corners = sheet->corners;
        draft.origin.confidence = sheet->confidence;
        draft.cropped = true;
    }
    draft.size = sizeOfPage(draft.recipe, size);
    return draft;
}

cv::Size sizeOfPage(const Recipe& recipe, cv::Size frame) {
    cv::Size size = frame;
    if (recipe.corners) {
        const DoccamSheet sheet = sheetAt(*recipe.corners);
        const unsigned char pixel = 0;
        // Only the size counts, no pixel is read.
        const DoccamImage image{&pixel, frame.width, frame.height,
                                static_cast<std::size_t>(frame.width), DOCCAM_PIXELS_GREY};
        failUnlessDone(doccam_rectified_size(&image, &sheet, &size.width, &size.height));
    }
    if (recipe.turn % 2 != 0) {
        std::swap(size.width, size.height);
    }
    return size;
}

} // namespace doccam::host
