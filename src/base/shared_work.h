// Sharing work among the machine's processors.
#pragma once

#include <opencv2/core/utility.hpp>

namespace doccam {

// Calls work(range) for parts of 0 to count - 1, on several threads at once. Results must not
// depend on how it is parted.
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

    cv::parallel_for_({0, count}, Body(work));
}

} // namespace doccam
