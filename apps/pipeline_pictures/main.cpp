// Writes one picture per stage from a frame to a clean page: main FOLDER
#include "scene/scene.h"

#include <doccam/doccam.hpp>

#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

#include <cstdio>
#include <filesystem>
#include <string>

namespace {

const cv::Size kFrame(2048, 1536);
constexpr int kShownHeight = 480;
constexpr int kWholeFrame = 0;
constexpr int kCropped = 1;

std::filesystem::path folder;

void keep(const std::string& name, const cv::Mat& blueFirst) {
    cv::Mat shown;
    const double scale = static_cast<double>(kShownHeight) / blueFirst.rows;
    cv::resize(blueFirst, shown, {}, scale, scale, cv::INTER_AREA);
    cv::imwrite((folder / (name + ".jpg")).string(), shown);
}

// The still of the frame with the current settings.
cv::Mat still(const cv::Mat& frame, int cropMode) {
    std::string path = (folder / "still.png").string();
    capture(path.data(), 0, cropMode, frame);
    cv::Mat picture = cv::imread(path);
    std::filesystem::remove(path);
    return picture;
}

cv::Mat redFirst(const cv::Mat& image) {
    cv::Mat result;
    cv::cvtColor(image, result, cv::COLOR_BGR2RGB);
    return result;
}

cv::Mat seenByCamera() {
    doccam::virtualcam::SceneSettings settings;
    settings.angle = 17;
    cv::Mat picture = doccam::virtualcam::drawScene(settings, kFrame);
    doccam::virtualcam::addSensorNoise(picture, settings.noise, 0);
    return redFirst(picture);
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2 || !std::filesystem::is_directory(argv[1])) {
        std::fprintf(stderr, "usage: %s FOLDER\n", argv[0]);
        return 2;
    }
    folder = argv[1];
    const cv::Mat frame = seenByCamera();
    keep("1-frame", still(frame, kWholeFrame));

    cv::Mat outlined = frame.clone();
    if (DrawingEdge(outlined.data, outlined.cols, outlined.rows, 1) != DOCCAM_OK) {
        std::fprintf(stderr, "no sheet found\n");
        return 1;
    }
    keep("2-outline", redFirst(outlined));

    // Each crop moves the kept corners, so they are found again.
    const auto page = [&] {
        DrawingEdge(outlined.data, outlined.cols, outlined.rows, 0);
        return still(frame, kCropped);
    };
    frame.copyTo(outlined);
    keep("3-cropped", page());
    SetDelBlackedge(1);
    keep("4-edges-removed", page());
    SetDelBackColor(1);
    keep("5-background-removed", page());
    SetColorMode(1);
    keep("6-grey", page());
    SetColorMode(2);
    keep("7-black-and-white", page());
    return 0;
}
