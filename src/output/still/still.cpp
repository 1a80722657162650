#include "output/still/still.h"

#include "output/still/automatic_crop.h"
#include "output/still/save_image.h"
#include "output/still/whole_frame.h"
#include "state/library_state.h"

#include <cstdio>
#include <utility>

namespace doccam {

Still prepareStill(std::string path, int cropMode, const cv::Mat& frame, LibraryState& library) {
    std::printf("capture->path:%s\n", path.c_str());
    if (cropMode == kCropToSheet) {
        return {std::move(path), pageOfSheet(frame, library.sheet, library.settings), false};
    }
    const bool enlarge = library.session.isInsert1000M.load(std::memory_order_relaxed);
    return {std::move(path), pageOfWholeFrame(frame, library.settings, enlarge), true};
}

void saveStill(const Still& still, const record::Settings& settings) {
    savePage(still.path, still.page, settings);
    if (still.ofWholeFrame) {
        std::puts("capture->04");
    }
}

} // namespace doccam
