#include "hands_free_scenes.h"

#include "scan/sheet_watch.h"
#include "scene/scene.h"
#include "scene/sheet_change.h"
#include "scene/unrest.h"

#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

#include <array>
#include <chrono>
#include <cstdint>

namespace doccam::test {
namespace {

using virtualcam::SceneSettings;

constexpr int kPatterns = 3;
constexpr int kQuality = 85;

// The frames of a scene as a camera sends them: as JPEG, red first once decoded.
class Camera {
  public:
    Camera(const SceneSettings& scene, cv::Size size)
      : scene_(scene)
      , size_(size) {}

    // Valid until the next.
    const cv::Mat& frame(std::uint32_t number) {
        const SceneSettings shown = virtualcam::sceneAt(scene_, number);
        SceneSettings still = shown;
        still.frame = 0;
        if (drawn_.empty() || still != lying_) {
            lying_ = still;
            drawn_ = virtualcam::drawScene(still, size_);
            frames_ = {};
        }
        cv::Mat& frame = frames_.at(number % kPatterns);
        if (frame.empty() || virtualcam::changesEachFrame(scene_)) {
            cv::Mat picture = drawn_.clone();
            virtualcam::stir(picture, shown);
            virtualcam::addSensorNoise(picture, scene_.noise, static_cast<int>(number % kPatterns));
            frame = sent(picture);
        }
        return frame;
    }

  private:
    static cv::Mat sent(const cv::Mat& picture) {
        std::vector<unsigned char> jpeg;
        cv::imencode(".jpg", picture, jpeg, {cv::IMWRITE_JPEG_QUALITY, kQuality});
        cv::Mat frame;
        cv::cvtColor(cv::imdecode(jpeg, cv::IMREAD_COLOR), frame, cv::COLOR_BGR2RGB);
        return frame;
    }

    SceneSettings scene_;
    SceneSettings lying_;
    cv::Mat drawn_;
    std::array<cv::Mat, kPatterns> frames_; // of what is drawn
    cv::Size size_;
};

SceneSettings changing(int sheetFrames = 50, int changeFrames = 18) {
    SceneSettings scene;
    scene.sheetFrames = sheetFrames;
    scene.changeFrames = changeFrames;
    return scene;
}

} // namespace

std::vector<HandsFreeScene> handsFreeScenes() {
    std::vector<HandsFreeScene> scenes;
    const auto add = [&](const std::string& name, SceneSettings scene, auto change) {
        change(scene);
        scenes.push_back({name, scene});
    };
    add("even light", changing(), [](SceneSettings&) {});
    add("bands", changing(), [](SceneSettings& scene) { scene.unrest.bands = 0.06; });
    add("strong bands", changing(), [](SceneSettings& scene) {
        scene.unrest.bands = 0.2;
        scene.unrest.bandCount = 2.3;
        scene.unrest.bandDrift = 0.17;
    });
    add("flicker", changing(), [](SceneSettings& scene) { scene.unrest.flicker = 0.15; });
    add("noise", changing(), [](SceneSettings& scene) { scene.noise = 10; });
    add("hand stays", changing(90), [](SceneSettings& scene) { scene.unrest.hand = "stays"; });
    add("hand visits", changing(90), [](SceneSettings& scene) { scene.unrest.hand = "visits"; });
    add("nudged", changing(90), [](SceneSettings& scene) { scene.unrest.nudge = 6; });
    add("slow feeder", changing(50, 150), [](SceneSettings& scene) { scene.unrest.feeder = true; });
    add("form", changing(), [](SceneSettings& scene) { scene.unrest.form = true; });
    add("all of it", changing(120), [](SceneSettings& scene) {
        scene.noise = 4;
        scene.unrest = {.bands = 0.06, .flicker = 0.05, .hand = "visits", .nudge = 3, .form = true};
    });
    return scenes;
}

Takings takeSheets(const SceneSettings& scene, cv::Size size, int sheets) {
    using Clock = std::chrono::steady_clock;
    Camera camera(scene, size);
    host::SheetWatch watch(false);
    Takings takings;
    const int cycle = scene.sheetFrames + scene.changeFrames;
    const int end = sheets * cycle - scene.changeFrames;
    for (int number = 0; number < end; ++number) {
        const host::WatchedFrame frame{camera.frame(static_cast<std::uint32_t>(number)), {}};
        const auto started = Clock::now();
        if (watch.see(frame) == host::Sight::kNewSheet) {
            const std::chrono::duration<double, std::milli> spent = Clock::now() - started;
            watch.noteTaken();
            const bool lies = number % cycle < scene.sheetFrames;
            takings.sheets.push_back(lies ? number / cycle : -1);
            takings.frames.push_back(number % cycle);
            takings.milliseconds.push_back(spent.count());
        }
    }
    return takings;
}

} // namespace doccam::test
