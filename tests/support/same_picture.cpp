#include "support/same_picture.h"

#include <cstring>

namespace doccam::test {

testing::AssertionResult isSamePicture(const cv::Mat& actual, const cv::Mat& expected) {
    if (actual.size() != expected.size() || actual.type() != expected.type()) {
        return testing::AssertionFailure() << actual.size() << " against " << expected.size();
    }
    const std::size_t pixelSize = actual.elemSize();
    for (int y = 0; y < actual.rows; ++y) {
        for (int x = 0; x < actual.cols; ++x) {
            if (std::memcmp(actual.ptr(y, x), expected.ptr(y, x), pixelSize) != 0) {
                return testing::AssertionFailure() << "first difference at (" << x << ", " << y
                                                   << "): " << int{*actual.ptr(y, x)} << " against "
                                                   << int{*expected.ptr(y, x)};
            }
        }
    }
    return testing::AssertionSuccess();
}

} // namespace doccam::test
