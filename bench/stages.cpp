// Times the stages of one frame, each by itself, and a frame of a running session. Prints JSON:
// milliseconds, the minimum of many rounds. Run by scripts/performance-chart.
#include "base/shared_work.h"
#include "live_session.h"
#include "modules/mjpeg/libav_decoder.h"
#include "picture.h"
#include "preview/picture.h"
#include "preview/view.h"
#include "quiet_output.h"
#include "state/library_state.h"

#include <doccam/doccam.hpp>

#include <nlohmann/json.hpp>

#include <algorithm>
#include <chrono>
#include <functional>
#include <iostream>
#include <limits>
#include <string>
#include <vector>

namespace doccam::bench {
namespace {

struct Stage {
    const char* name;
    std::function<void()> run;
};

double shortest(const std::function<void()>& run) {
    using Clock = std::chrono::steady_clock;
    double least = std::numeric_limits<double>::max();
    for (int round = 0; round < 100; ++round) {
        const auto start = Clock::now();
        run();
        least = std::min(least,
                         std::chrono::duration<double, std::milli>(Clock::now() - start).count());
    }
    return least;
}

// A driver's buffer: two bytes per pixel, most of them left over from longer frames.
std::vector<unsigned char> driverBuffer(const Picture& picture) {
    std::vector<unsigned char> buffer(std::size_t{2} * kWidth * kHeight + kCodecPadding);
    std::copy(picture.jpeg->begin(), picture.jpeg->end(), buffer.begin());
    return buffer;
}

struct Time {
    std::string stage;
    double milliseconds;
};

std::vector<Time> timed(const Picture& picture) {
    const std::vector<unsigned char> driver = driverBuffer(picture);
    std::vector<unsigned char> raw(driver.size());
    const auto decoder = makeMjpegDecoder();
    cv::Mat frame(kHeight, kWidth, CV_8UC3);
    cv::Mat& turned = state().session.frames->roimage;
    turned.create(kWidth, kHeight, CV_8UC3);
    const View form{.x = {.form = 800}, .y = {.form = 600}};
    const View view = bestFit(form, {kHeight, kWidth}, {800, 600});
    std::vector<unsigned char> preview(pictureBytes(view));
    const std::vector<Stage> stages{
        {"copy of the driver's buffer",
         [&] {
             copyInParallel({driver.data(), driver.size() - kCodecPadding}, raw.data());
         }},
        {"codec",
         [&] {
             decodePicture(*decoder,
                           {{raw.data(), raw.size() - kCodecPadding}, true, {kWidth, kHeight}},
                           *decoder->picture);
         }},
        {"change of colours", [&] { convertPicture(*decoder, kWidth, kHeight, frame); }},
        {"quarter turn", [&] { CamdataRote90(frame); }},
        {"sheet's outline", [&] { DrawingEdge(turned.data, turned.cols, turned.rows, 1); }},
        {"preview", [&] { renderPicture(turned, view, preview.data()); }},
        {"pause", [] { Sleep(3); }},
    };
    std::vector<Time> times;
    for (const Stage& stage : stages) {
        times.push_back({stage.name, shortest(stage.run)});
    }
    turned.release();
    return times;
}

// The time per frame when each is decoded while the previous one is shown.
double frameOfASession(const Picture& picture) {
    constexpr int kFrames = 8;
    LiveSession session(picture);
    session.start();
    return shortest([&] { session.waitForFrames(kFrames); }) / kFrames;
}

nlohmann::json measured() {
    const QuietOutput quiet; // hides the library's output
    const Picture& picture = pictures().front();
    auto stages = nlohmann::json::array();
    for (const auto& [stage, milliseconds] : timed(picture)) {
        stages.push_back({{"stage", stage}, {"milliseconds", milliseconds}});
    }
    return {{"stages", stages}, {"frame", frameOfASession(picture)}};
}

} // namespace
} // namespace doccam::bench

int main() {
    std::cout << doccam::bench::measured().dump(2) << '\n';
    return 0;
}
