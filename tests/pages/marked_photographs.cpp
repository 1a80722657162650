#include "marked_photographs.h"

#include <nlohmann/json.hpp>
#include <opencv2/imgcodecs.hpp>

#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace doccam::test {

std::vector<MarkedPhotograph> markedPhotographs() {
    std::vector<MarkedPhotograph> photographs;
    const char* const folder = std::getenv("DOCCAM_PHOTOS");
    if (folder == nullptr) {
        return photographs;
    }
    std::ifstream file(DOCCAM_MARKED_PHOTOGRAPHS);
    for (const auto& mark : nlohmann::json::parse(file)) {
        const std::string name = mark.at("name");
        const std::filesystem::path path = std::filesystem::path(folder) / name;
        const cv::Mat picture = std::filesystem::exists(path) ? cv::imread(path) : cv::Mat();
        if (picture.size() != cv::Size(mark.at("width"), mark.at("height"))) {
            continue;
        }
        MarkedPhotograph photograph{name, picture, {}};
        for (std::size_t i = 0; i < 4; ++i) {
            photograph.corners[i] = {mark.at("corners").at(i).at(0),
                                     mark.at("corners").at(i).at(1)};
        }
        photographs.push_back(photograph);
    }
    return photographs;
}

} // namespace doccam::test
