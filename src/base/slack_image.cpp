#include "base/slack_image.h"

#include <opencv2/core.hpp>

#include <memory>

namespace doccam {
namespace {

// OpenCV's own allocation, plus extra bytes at the end.
class SlackAllocator final : public cv::MatAllocator {
  public:
    cv::UMatData* allocate(int dims, const int* sizes, int type, void* data, std::size_t* step,
                           cv::AccessFlag /*flags*/, cv::UMatUsageFlags /*usage*/) const override {
        std::size_t total = CV_ELEM_SIZE(type);
        for (int i = dims - 1; i >= 0; --i) {
            if (step != nullptr) {
                step[i] = total;
            }
            total *= static_cast<std::size_t>(sizes[i]);
        }
        CV_Assert(data == nullptr);
        auto memory = std::make_unique<cv::UMatData>(this);
        auto* pixels = static_cast<uchar*>(cv::fastMalloc(total + kImageSlack));
        memory->data = memory->origdata = pixels;
        memory->size = total;
        return memory.release();
    }

    bool allocate(cv::UMatData* memory, cv::AccessFlag /*flags*/,
                  cv::UMatUsageFlags /*usage*/) const override {
        return memory != nullptr;
    }

    void deallocate(cv::UMatData* memory) const override {
        if (memory == nullptr || memory->refcount != 0) {
            return;
        }
        const std::unique_ptr<cv::UMatData> owned(memory);
        cv::fastFree(owned->origdata);
        owned->origdata = nullptr;
    }
};

// Never destroyed: frames may be released during the destruction of static objects.
cv::MatAllocator* slackAllocator() {
    static auto* const allocator = new SlackAllocator;
    return allocator;
}

} // namespace

cv::Mat makeSlackImage(int rows, int columns) {
    CV_Assert(rows > 0 && columns > 0);
    cv::Mat image;
    image.allocator = slackAllocator();
    image.create(rows, columns, CV_8UC3);
    // Black instead of uninitialised: the first frame may be undecodable.
    image.setTo(cv::Scalar::all(0));
    // Later reallocations use OpenCV's own allocator again.
    image.allocator = nullptr;
    return image;
}

} // namespace doccam
