#include "clean/apart_work.h"

#include "pictures/picture_limits.h"

#include <opencv2/core.hpp>

namespace doccam::host {

void failToClean(const std::string& file) {
    throw Failure(kUsage, "The picture " + file +
                              " cannot be cleaned; look whether it is sound, or leave it out.");
}

std::vector<std::string> workApart(const Context& context, const std::string& file,
                                   const std::function<void(const Report&)>& work) {
    const PictureLimits limits = pictureLimits();
    const Bounds bounds{.bytes = limits.workingBytes(),
                        .processor = limits.working,
                        .confined = context.options.confined};
    const Apart made = runApart(*context.interrupt, bounds, [&](const Report& report) {
        try {
            work(report);
        } catch (const cv::Exception& error) {
            throw Failure(kUsage, "The picture " + file + " cannot be cleaned: " + error.err +
                                      "; leave it out.");
        }
    });
    if (made.end != ApartEnd::kDone) {
        failToClean(file);
    }
    return made.reports;
}

} // namespace doccam::host
