#include "pages/page_engine.h"

#include "host/failure.h"

namespace doccam::host {

DoccamImage imageOf(const cv::Mat& frame) {
    return {frame.data, frame.cols, frame.rows, frame.step[0],
            frame.channels() == 1 ? DOCCAM_PIXELS_GREY : DOCCAM_PIXELS_BGR};
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
