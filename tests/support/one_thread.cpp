// Keeps OpenCV's work in the calling thread: the thread sanitizer does not see how its
// workers hand over.
#include <opencv2/core/utility.hpp>

namespace {

const int kThreadsBefore = [] {
    const int before = cv::getNumThreads();
    cv::setNumThreads(0);
    return before;
}();

} // namespace
