// Writes frames that the page engine is measured with, each as a JPEG, with what is true of it as
// JSON and its flat pages as PNG.
#include "frame_truth.h"
#include "picture/jpeg.h"
#include "scene/frames/drawn_frame.h"

#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>
#include <opencv2/imgcodecs.hpp>

#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>
#include <vector>

namespace {

using doccam::virtualcam::DrawnFrame;

void writeBytes(const std::filesystem::path& path, const std::vector<std::uint8_t>& bytes) {
    std::ofstream file(path, std::ios::binary);
    file.write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
    if (!file.flush()) {
        throw std::runtime_error(path.string() + ": cannot be written");
    }
}

void writeFrame(const std::filesystem::path& folder, const DrawnFrame& frame) {
    const std::string name = frame.category + "-" + std::to_string(frame.seed);
    writeBytes(folder / (name + ".jpg"),
               doccam::virtualcam::encodeJpeg(frame.picture, frame.jpegQuality));
    for (std::size_t i = 0; i < frame.sheets.size(); ++i) {
        cv::imwrite(folder / doccam::test::flatPageName(frame, i), frame.sheets[i].page.picture,
                    {cv::IMWRITE_PNG_COMPRESSION, 1});
    }
    std::ofstream file(folder / (name + ".json"));
    if (!(file << doccam::test::truthOf(frame).dump(1) << std::endl)) {
        throw std::runtime_error(name + ".json: cannot be written");
    }
}

} // namespace

int main(int argc, char** argv) {
    CLI::App app("Writes drawn frames with their truth.");
    std::filesystem::path folder;
    std::vector<std::string> categories = doccam::virtualcam::frameCategories();
    std::uint64_t first = 1;
    std::uint64_t count = 20;
    app.add_option("folder", folder, "where to write")->required();
    app.add_option("--category", categories, "only these")->delimiter(',');
    app.add_option("--first", first, "the first seed");
    app.add_option("--count", count, "seeds of each category");
    CLI11_PARSE(app, argc, argv);
    try {
        std::filesystem::create_directories(folder);
        for (const std::string& category : categories) {
            for (std::uint64_t seed = first; seed < first + count; ++seed) {
                writeFrame(folder, doccam::virtualcam::drawFrame(category, seed));
                std::cout << category << ' ' << seed << std::endl;
            }
        }
    } catch (const std::exception& error) {
        std::cerr << "page_frames: " << error.what() << '\n';
        return 1;
    }
}
