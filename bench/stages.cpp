// Times the stages of one frame, each by itself, and prints them as JSON: milliseconds, the
// smallest of many rounds. Run by scripts/performance-chart.
#include "api/library_state.h"
#include "base/parallel_copy.h"
#include "decode/mjpeg_decoder.h"
#include "live_session.h"
#include "picture.h"
#include "preview/picture.h"
#include "preview/view.h"
#include "quiet_output.h"

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
    for (int round = 0; round < 150; ++round) {
        const auto start = Clock::now();
        run();
        least = std::min(least,
                         std::chrono::duration<double, std::milli>(Clock::now() - start).count());
    }
    return least;
}

// What the driver hands over: two bytes a pixel, most of them left over from longer frames.
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
    cv::Mat& turned = state().roimage;
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
             decodePicture(*decoder, {raw.data(), raw.size() - kCodecPadding}, true,
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

// With everything that is no stage: the camera that stands in for a real one, and the callbacks.
double wholeFrame(const Picture& picture) {
    LiveSession session(picture);
    return shortest([&] { session.nextFrame(); });
}

std::vector<Time> measured() {
    const QuietOutput quiet;
    const Picture& picture = pictures().front();
    std::vector<Time> times = timed(picture);
    double rest = wholeFrame(picture);
    for (const Time& time : times) {
        rest -= time.milliseconds;
    }
    times.push_back({"camera and callbacks", std::max(rest, 0.0)});
    return times;
}

} // namespace
} // namespace doccam::bench

int main() {
    auto stages = nlohmann::json::array();
    for (const auto& [stage, milliseconds] : doccam::bench::measured()) {
        stages.push_back({{"stage", stage}, {"milliseconds", milliseconds}});
    }
    std::cout << nlohmann::json{{"stages", stages}}.dump(2) << '\n';
    return 0;
}
