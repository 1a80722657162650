// Lays sheets under a drawn camera with restless light, hands or a feeder, and prints a row: the
// sheets, how many the hands-free scan took once, not at all and more often, and pages of no sheet
// at rest; the medians of the frames from rest to page, of the milliseconds of work on the last
// one, and of both together in seconds at 30 frames a second. Fails unless each is taken once.
//   hands_free_table --scenes | SCENE SHEETS WIDTH HEIGHT
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

// From the rest of a sheet to its page: the frames until then, and the work on the last of them.
std::vector<double> secondsToPage(const Takings& takings) {
    constexpr double kRate = 30;
    std::vector<double> seconds;
    for (std::size_t i = 0; i < takings.frames.size(); ++i) {
        seconds.push_back(takings.frames[i] / kRate + takings.milliseconds[i] / 1000);
    }
    return seconds;
}

// Whether every sheet was taken once.
bool report(const std::string& name, const Takings& takings, int sheets) {
    int once = 0;
    int missed = 0;
    for (int sheet = 0; sheet < sheets; ++sheet) {
        const auto times = std::count(takings.sheets.begin(), takings.sheets.end(), sheet);
        once += times == 1 ? 1 : 0;
        missed += times == 0 ? 1 : 0;
    }
    const auto moving = std::count(takings.sheets.begin(), takings.sheets.end(), -1);
    std::printf("%-14s %6d %6d %6d %6d %6d %8d %8.0f %8.2f\n", name.c_str(), sheets, once, missed,
                sheets - once - missed, static_cast<int>(moving), median(takings.frames),
                median(takings.milliseconds), median(secondsToPage(takings)));
    return once == sheets && moving == 0;
}

} // namespace

int main(int count, char** arguments) {
    if (count == 2 && std::string(arguments[1]) == "--scenes") {
        for (const HandsFreeScene& scene : handsFreeScenes()) {
            std::puts(scene.name.c_str());
        }
        return 0;
    }
    const int sheets = count == 5 ? std::atoi(arguments[2]) : 0;
    const cv::Size size =
        count == 5 ? cv::Size(std::atoi(arguments[3]), std::atoi(arguments[4])) : cv::Size();
    for (const HandsFreeScene& scene : handsFreeScenes()) {
        if (sheets > 0 && !size.empty() && scene.name == arguments[1]) {
            return report(scene.name, takeSheets(scene.settings, size, sheets), sheets) ? 0 : 1;
        }
    }
    std::fputs("usage: hands_free_table --scenes | SCENE SHEETS WIDTH HEIGHT\n", stderr);
    return 2;
}
