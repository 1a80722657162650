#include "base/shared_work.h"

namespace doccam {
namespace {

thread_local int processorsLeft = 0;

} // namespace

void leaveProcessors(int count) {
    processorsLeft = count;
}

void runShared(int count, const cv::ParallelLoopBody& body) {
    const int threads = cv::getNumThreads() - processorsLeft;
    if (threads <= 1) {
        body({0, count});
    } else {
        constexpr double kAsItComes = -1;
        cv::parallel_for_({0, count}, body, processorsLeft == 0 ? kAsItComes : threads);
    }
}

} // namespace doccam
