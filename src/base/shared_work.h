// Sharing work among the machine's cores.
#pragma once

#include <opencv2/core/utility.hpp>

namespace doccam {

// Makes the calling thread leave count cores, initially 0, to others when it shares work.
void reserveCores(int count);

// Runs body over 0 to count - 1, in parts.
void runShared(int count, const cv::ParallelLoopBody& body);

// Calls work(range) for parts of 0 to count - 1, on several threads at once. Results must not
// depend on the partition.
template <typename Work>
void shareWork(int count, const Work& work) {
    class Body : public cv::ParallelLoopBody {
      public:
        explicit Body(const Work& work)
          : work_(work) {}

        void operator()(const cv::Range& range) const override { work_(range); }

      private:
        const Work& work_;
    };

    runShared(count, Body(work));
}

} // namespace doccam
