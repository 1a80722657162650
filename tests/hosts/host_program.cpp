#include "host_program.h"

#include "remote/line_socket.h"
#include "remote/plugging.h"
#include "scene/scene.h"

#include <opencv2/imgcodecs.hpp>
#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string_view>

namespace doccam::test {
namespace {

namespace fs = std::filesystem;

std::string contentOf(const std::string& path) {
    std::ifstream file(path);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

} // namespace

HostProgramTest::HostProgramTest()
  : work_(folder_.file("work"))
  , home_(folder_.file("home")) {
    fs::create_directory(work_);
    fs::create_directory(home_);
}

Outcome HostProgramTest::shell(const std::string& command, const std::string& input) const {
    const std::string in = folder_.file("in");
    const std::string out = folder_.file("out");
    const std::string err = folder_.file("err");
    std::ofstream(in) << input;
    const std::string whole = "cd " + work_ + " && HOME=" + home_ + " XDG_CONFIG_HOME=" + home_ +
                              "/.config XDG_STATE_HOME=" + state() + " " + command + " <" + in +
                              " >" + out + " 2>" + err;
    const int status = std::system(whole.c_str()); // NOLINT(cert-env33-c): the shell is wanted
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, contentOf(out), contentOf(err)};
}

std::string HostProgramTest::scenario(const std::string& cameras) const {
    const std::string path = folder_.file("scenario.json");
    std::ofstream(path) << "{\"cameras\": [" << cameras << "]}";
    return path;
}

Outcome HostProgramTest::run(const std::string& arguments, const std::string& input) const {
    return shell(DOCCAM_PROGRAM " " + arguments, input);
}

Outcome HostProgramTest::runWith(const std::string& cameras, const std::string& arguments,
                                 const std::string& input) const {
    return shell(DOCCAM_VIRTUALCAM_LAUNCHER " --scenario " + scenario(cameras) +
                     " -- " DOCCAM_PROGRAM " " + arguments,
                 input);
}

RunningProgram HostProgramTest::start(const std::string& cameras,
                                      const std::vector<std::string>& arguments,
                                      const std::vector<std::string>& within) const {
    std::vector<std::string> command{"/usr/bin/env",
                                     "XDG_CONFIG_HOME=" + home_ + "/.config",
                                     "XDG_STATE_HOME=" + state(),
                                     std::string(virtualcam::kControlVariable) + "=" +
                                         folder_.file("control"),
                                     DOCCAM_VIRTUALCAM_LAUNCHER,
                                     "--scenario",
                                     scenario(cameras),
                                     "--"};
    command.insert(command.end(), within.begin(), within.end());
    command.emplace_back(DOCCAM_PROGRAM);
    command.insert(command.end(), arguments.begin(), arguments.end());
    return {command, work_, folder_.file("out")};
}

void HostProgramTest::unplug() const {
    EXPECT_EQ(virtualcam::ask(folder_.file("control"), "unplug 0"), "ok");
}

std::string HostProgramTest::printed() const {
    return contentOf(folder_.file("out"));
}

std::string HostProgramTest::drawSheet(const std::string& name, int number) const {
    virtualcam::SceneSettings scene;
    scene.sheet = number;
    cv::imwrite(file(name), virtualcam::drawScene(scene, {1280, 960}));
    return name;
}

void HostProgramTest::turnOnItsSide(const std::string& name) const {
    constexpr std::string_view kNote(
        "\xFF\xE1\0\x22"
        "Exif\0\0II*\0\x08\0\0\0\1\0\x12\1\3\0\1\0\0\0\6\0\0\0\0\0\0\0",
        36);
    std::string jpeg = contentOf(file(name));
    std::ofstream(file(name), std::ios::binary) << jpeg.insert(2, kNote);
}

std::vector<std::string> HostProgramTest::files() const {
    std::vector<std::string> names;
    for (const std::string& folder : {work_, home_}) {
        for (const auto& entry : fs::directory_iterator(folder)) {
            names.push_back(entry.path().filename().string());
        }
    }
    std::sort(names.begin(), names.end());
    return names;
}

std::string camera(const std::string& fields) {
    return "{" + fields + (fields.empty() ? "" : ", ") +
           R"("intervalMs": 0, "formats": [{"fourcc": "MJPG", "sizes": [[1280, 960]]},
                                          {"fourcc": "YUYV", "sizes": [[640, 480]]}]})";
}

testing::Matcher<const std::string&> isOneSentence() {
    return testing::MatchesRegex("doccam: [^\n]*[.]\n");
}

} // namespace doccam::test
