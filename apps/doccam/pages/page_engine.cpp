#include "pages/page_engine.h"

#include "host/failure.h"

namespace doccam::host {

DoccamImage imageOf(const cv::Mat& frame) {
    return {frame.data, frame.cols, frame.rows, frame.step[0],
            frame.channels() == 1 ? DOCCAM_PIXELS_GREY : DOCCAM_PIXELS_BGR};
}

DoccamSheet sheetAt(const SheetCorners& corners) {
    DoccamSheet sheet{};
    for (std::size_t i = 0; i < 4; ++i) {
        sheet.corners[i][0] = corners[i].x;
        sheet.corners[i][1] = corners[i].y;
    }
    return sheet;
}

bool isSound(const SheetCorners& corners) {
    const DoccamSheet sheet = sheetAt(corners);
    const unsigned char pixel = 0; // only the corners count
    const DoccamImage image{&pixel, 1, 1, 1, DOCCAM_PIXELS_GREY};
    int width = 0;
    int height = 0;
    return doccam_rectified_size(&image, &sheet, &width, &height) != DOCCAM_PAGE_BAD_SHEET;
}

void failUnlessDone(int result) {
    if (result == DOCCAM_PAGE_NO_MEMORY) {
        throw Failure(kUsage, "A page takes too much memory; give a smaller picture.");
    }
    if (result < 0) {
        throw Failure(kUsage, "A page cannot be made (code " + std::to_string(result) +
                                  "); look whether the picture is sound.");
    }
}

} // namespace doccam::host
