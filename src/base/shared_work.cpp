#include "base/shared_work.h"

namespace doccam {
namespace {

thread_local int coresReserved = 0;

} // namespace

void reserveCores(int count) {
    coresReserved = count;
}

void runShared(int count, const cv::ParallelLoopBody& body) {
    const int threads = cv::getNumThreads() - coresReserved;
    if (threads <= 1) {
        body({0, count});
    } else {
        constexpr double kAsItComes = -1;
        cv::parallel_for_({0, count}, body, coresReserved == 0 ? kAsItComes : threads);
    }
}

} // namespace doccam
