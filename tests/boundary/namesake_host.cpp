// A host that defines functions of the same names as some of the library's.
#include <doccam/doccam.h>

#include <opencv2/core/mat.hpp>

#include <atomic>
#include <cstdio>
#include <string>
#include <vector>

#define HOSTS_OWN __attribute__((visibility("default")))

namespace {

std::atomic<int> taken{0};

} // namespace

HOSTS_OWN void Sleep(int) {
    ++taken;
}

HOSTS_OWN std::vector<std::string> split(std::string, std::string) {
    ++taken;
    return {"the host's"};
}

HOSTS_OWN int capture(char*, int, int, cv::Mat) {
    ++taken;
    return 0;
}

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: namesake_host STILL\n");
        return 2;
    }
    if (getDeviceCount() < 1 || getCameraName(0) == nullptr || openCamera(0, 640, 480) != 0) {
        std::fprintf(stderr, "no camera could be opened\n");
        return 1;
    }
    captureImage(argv[1]);
    closeCamera();
    if (taken != 0) {
        std::fprintf(stderr, "%d of the library's calls came to the host\n", taken.load());
        return 1;
    }
    return 0;
}
