// Lays sheets under drawn cameras with restless light, hands and feeders, and prints which of them
// the hands-free scan takes, how soon, and the time of a page. Fails unless each is taken once.
//   hands_free_table [SHEETS] [WIDTH HEIGHT] [SCENE]
#include "hands_free_scenes.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

using namespace doccam::test;

template <typename Value>
Value median(std::vector<Value> values) {
    if (values.empty()) {
        return {};
    }
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

// Whether every sheet was taken once.
bool report(const std::string& name, const Takings& takings, int sheets) {
    int missed = 0;
    int twice = 0;
    for (int sheet = 0; sheet < sheets; ++sheet) {
        const auto times = std::count(takings.sheets.begin(), takings.sheets.end(), sheet);
        missed += times == 0 ? 1 : 0;
        twice += times > 1 ? 1 : 0;
    }
    const auto moving = std::count(takings.sheets.begin(), takings.sheets.end(), -1);
    std::printf("%-14s %6d %6d %6d %6d %8d %8.0f\n", name.c_str(), sheets, missed, twice,
                static_cast<int>(moving), median(takings.frames), median(takings.milliseconds));
    std::fflush(stdout);
    return missed == 0 && twice == 0 && moving == 0;
}

} // namespace

int main(int count, char** arguments) {
    const int sheets = count > 1 ? std::atoi(arguments[1]) : 50;
    const cv::Size size = count > 3 ? cv::Size(std::atoi(arguments[2]), std::atoi(arguments[3]))
                                    : cv::Size(1280, 960);
    std::printf("%-14s %6s %6s %6s %6s %8s %8s\n", "scene", "sheets", "missed", "twice", "moving",
                "frames", "ms");
    bool good = true;
    for (const HandsFreeScene& scene : handsFreeScenes()) {
        if (count <= 4 || scene.name == arguments[4]) {
            good = report(scene.name, takeSheets(scene.settings, size, sheets), sheets) && good;
        }
    }
    return good ? 0 : 1;
}
