// The library at work: lists the cameras, measures two streams, reads the codes of the sheet before
// the camera, writes what a preview shows of it, and turns it into images and PDF files: the whole
// frame, and the sheet alone, upright and clean.
#include "measured_stream.h"
#include "own_output.h"
#include "picture_report.h"
#include "preview_pictures.h"

#include <doccam/doccam.h>

#include <array>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

namespace {

enum Exit { kDone = 0, kUsage = 2, kNoCamera = 3, kCameraFailed = 4, kFileFailed = 5 };

constexpr int kMjpeg = 0;
constexpr int kYuyv = 1;
constexpr int kMeasuredFrames = 60;
constexpr double kLeastLikeness = 30; // dB

struct Options {
    std::string photo;
    std::string folder = ".";
};

struct Size {
    int width;
    int height;
};

bool parse(int argc, char** argv, Options& options) {
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    for (std::size_t i = 0; i + 1 < arguments.size(); i += 2) {
        if (arguments[i] == "--photo") {
            options.photo = arguments[i + 1];
        } else if (arguments[i] == "--into") {
            options.folder = arguments[i + 1];
        } else {
            return false;
        }
    }
    return arguments.size() % 2 == 0;
}

std::vector<Size> sizesOf(int camera, int format) {
    SetVideoFormat(format);
    std::vector<Size> sizes;
    const int count = getCameraResolutionCount(camera);
    for (int i = 0; i < count; ++i) {
        Size size{};
        getCameraResolution(i, &size.width, &size.height);
        sizes.push_back(size);
    }
    return sizes;
}

void listCamera(int camera) {
    const char* name = getCameraName(camera);
    std::fprintf(demo::out(), "camera %d: %s\n", camera, name != nullptr ? name : "(no name)");
    for (const int format : {kMjpeg, kYuyv}) {
        std::fprintf(demo::out(), "  %s:", format == kMjpeg ? "MJPEG" : "YUYV ");
        for (const Size size : sizesOf(camera, format)) {
            std::fprintf(demo::out(), " %dx%d", size.width, size.height);
        }
        std::fputc('\n', demo::out());
    }
}

// The wanted size if the camera has it, else its largest.
Size offered(int camera, int format, Size wanted) {
    Size largest{};
    for (const Size size : sizesOf(camera, format)) {
        if (size.width == wanted.width && size.height == wanted.height) {
            return size;
        }
        if (size.width * size.height > largest.width * largest.height) {
            largest = size;
        }
    }
    return largest;
}

bool openAndMeasure(int format, Size wanted) {
    const Size size = offered(0, format, wanted);
    const int code = openCamera(0, size.width, size.height);
    if (code != 0) {
        std::fprintf(stderr, "camera 0 cannot be opened at %dx%d: code %d\n", size.width,
                     size.height, code);
        return false;
    }
    const double rate = demo::framesPerSecond(kMeasuredFrames);
    std::fprintf(demo::out(), "streamed %dx%d %s: %.1f frames per second\n", size.width,
                 size.height, format == kMjpeg ? "MJPEG" : "YUYV", rate);
    return rate > 0;
}

std::string inFolder(const Options& options, const char* name) {
    return (std::filesystem::path(options.folder) / name).string();
}

bool still(const Options& options, const char* name) {
    const std::string path = inFolder(options, name);
    captureImage(path.c_str());
    return demo::reportFile(path);
}

// The whole frame, as an image and as a page.
bool takeFrames(const Options& options) {
    bool complete = true;
    for (const char* name : {"page.jpg", "page.png", "page.pdf"}) {
        complete = still(options, name) && complete;
    }
    return complete;
}

void readCodes() {
    constexpr int kBarCode = 0;
    constexpr int kQrCode = 1;
    for (const int kind : {kQrCode, kBarCode}) {
        const char* text = RecogBarQrCode(kind);
        std::fprintf(demo::out(), "%s: %s\n", kind == kQrCode ? "QR code" : "bar code",
                     *text != '\0' ? text : "(none)");
    }
}

// The sheet alone, upright and clean, in each colour mode, and a PDF of all three.
bool takePages(const Options& options) {
    SetCutType(1);
    SetDelBlackedge(1);
    SetDelBackColor(1);
    // The outline of a frame serves the still after it.
    demo::framesPerSecond(3);
    bool complete = true;
    int mode = 0;
    for (const char* name : {"sheet-colour.jpg", "sheet-grey.jpg", "sheet-bw.png"}) {
        SetColorMode(mode++);
        complete = still(options, name) && complete;
        AddImageFileToPDF(inFolder(options, name).c_str());
    }
    const std::string pdf = inFolder(options, "sheets.pdf");
    CombineToPDF(pdf.c_str(), false);
    return demo::reportFile(pdf) && complete;
}

bool compareWithPhoto(const Options& options) {
    if (options.photo.empty()) {
        return true;
    }
    const double decibels = demo::likeness(inFolder(options, "page.jpg"), options.photo);
    std::fprintf(demo::out(), "page.jpg against the photograph: PSNR %.1f dB\n", decibels);
    return decibels > kLeastLikeness;
}

} // namespace

int main(int argc, char** argv) {
    Options options;
    if (!parse(argc, argv, options)) {
        std::fprintf(stderr, "usage: %s [--photo FILE] [--into FOLDER]\n", argv[0]);
        return kUsage;
    }
    std::filesystem::create_directories(options.folder);
    demo::divertLibraryLines((std::filesystem::path(options.folder) / "library.log").c_str());

    const int cameras = getDeviceCount();
    if (cameras < 1) {
        std::fprintf(stderr, "No supported document camera is attached.\n");
        return kNoCamera;
    }
    for (int camera = 0; camera < cameras; ++camera) {
        listCamera(camera);
    }
    demo::countFrames();
    demo::watchPreview();
    if (!openAndMeasure(kYuyv, {1280, 960})) {
        return kCameraFailed;
    }
    closeCamera();
    if (!openAndMeasure(kMjpeg, {3264, 2448})) {
        return kCameraFailed;
    }
    readCodes();
    std::fprintf(demo::out(), "%-40s %15s %12s\n", "file", "size", "bytes");
    const bool framesComplete = takeFrames(options);
    const bool previewsComplete = demo::writePreviews(options.folder);
    const bool pagesComplete = takePages(options);
    const bool complete = framesComplete && previewsComplete && pagesComplete;
    closeCamera();
    return complete && compareWithPhoto(options) ? kDone : kFileFailed;
}
