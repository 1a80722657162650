// Keeps OpenCV's work in the calling thread: the thread sanitizer cannot see how its workers
// synchronise.
#include <opencv2/core/utility.hpp>

namespace {

const int kThreadsBefore = [] {
    const int before = cv::getNumThreads();
    cv::setNumThreads(0);
    return before;
}();

} // namespace
