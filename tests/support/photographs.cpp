#include "photographs.h"

#include <opencv2/imgcodecs.hpp>

#include <cstdlib>
#include <filesystem>

namespace doccam::test {

std::vector<Photograph> realPhotographs() {
    std::vector<Photograph> all;
    const char* const folder = std::getenv("DOCCAM_PHOTOS");
    if (folder == nullptr) {
        return all;
    }
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        const cv::Mat picture = cv::imread(entry.path());
        if (!picture.empty()) {
            all.push_back({entry.path().filename(), picture});
        }
    }
    return all;
}

std::vector<Photograph> photographs() {
    std::vector<Photograph> all = drawnPhotographs();
    for (Photograph& photograph : realPhotographs()) {
        all.push_back(std::move(photograph));
    }
    return all;
}

} // namespace doccam::test
