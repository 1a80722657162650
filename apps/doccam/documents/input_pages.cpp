#include "documents/input_pages.h"

#include "documents/writer/document_module.h"
#include "host/failure.h"
#include "host/modules/with_modules.h"
#include "pictures/headers/file_bytes.h"
#include "pictures/reading.h"
#include "streams/input_file.h"

#include <opencv2/imgcodecs.hpp>

#include <algorithm>

namespace doccam::host {
namespace {

const DocumentModule& writer() {
    return *withModules([] { return &documentModule(); });
}

InputPage pageOf(const std::string& file, int part, const FilePart& facts) {
    InputPage page{{.file = file, .part = part}, facts.pixels, facts.page};
    if (facts.dpi) {
        page.inFile = Density{facts.dpi->width, facts.dpi->height};
    }
    return page;
}

// A JPEG or PNG goes into the document undecoded, but a damaged one would not be shown.
void checkPicture(const InputPage& page) {
    constexpr int kReduced = 8;
    readPicture(page.planned.file, std::min(page.pixels.width, page.pixels.height) < kReduced
                                       ? cv::IMREAD_GRAYSCALE
                                       : cv::IMREAD_REDUCED_GRAYSCALE_8);
}

// Viewers show a BMP as opaque, whatever it has for alpha.
bool mayBeTransparent(const std::string& file) {
    FileBytes bytes(file);
    return bytes.isOpen() && bytes.startsWith(8, "WEBP");
}

// Of the types that the writer does not know.
cv::Mat decodedOnWhite(const std::string& file) {
    constexpr int kFull = 255;
    const cv::Mat picture =
        mayBeTransparent(file) ? readPicture(file, cv::IMREAD_UNCHANGED) : cv::Mat();
    if (picture.type() != CV_8UC4) {
        return readPicture(file, cv::IMREAD_COLOR);
    }
    cv::Mat shown(picture.size(), CV_8UC3);
    for (int y = 0; y < picture.rows; ++y) {
        const auto* const from = picture.ptr<cv::Vec4b>(y);
        auto* const to = shown.ptr<cv::Vec3b>(y);
        for (int x = 0; x < picture.cols; ++x) {
            for (int c = 0; c < 3; ++c) {
                const int opacity = from[x][3];
                to[x][c] = cv::saturate_cast<uchar>(
                    (from[x][c] * opacity + kFull * (kFull - opacity)) / double{kFull});
            }
        }
    }
    return shown;
}

} // namespace

std::vector<InputPage> inputPages(const std::string& file) {
    requireInputFile(file);
    const DocumentModule& module = writer();
    try {
        const bool isPdf = module.isPdf(file);
        if (!isPdf) {
            requirePicture(file);
        }
        std::vector<InputPage> pages;
        for (const FilePart& part : module.parts(file)) {
            pages.push_back(pageOf(file, static_cast<int>(pages.size()), part));
        }
        if (pages.empty()) {
            InputPage page{{.pixels = decodedOnWhite(file)}};
            page.pixels = page.planned.pixels.size();
            pages.push_back(page);
        } else if (!isPdf && !module.isTiff(file)) {
            checkPicture(pages.front());
        }
        return pages;
    } catch (const DocumentError& error) {
        throw Failure(kUsage, "The file " + file + " " + error.what() + ".");
    }
}

InputPage madePage(const std::string& file, const SizedPage& sized) {
    InputPage page{{.file = file}};
    page.sized = sized;
    return page;
}

cv::Mat pictureOf(const InputPage& page) {
    const PlannedPage& planned = page.planned;
    if (!planned.pixels.empty()) {
        return planned.pixels;
    }
    if (writer().isTiff(planned.file)) {
        return writer().tiffPicture(planned.file, planned.part);
    }
    return readPicture(planned.file, cv::IMREAD_COLOR);
}

cv::Mat uprightPictureOf(const InputPage& page) {
    cv::Mat picture = pictureOf(page);
    if (page.planned.quarterTurns != 0) {
        cv::Mat turned;
        cv::rotate(picture, turned, page.planned.quarterTurns - 1);
        return turned;
    }
    return picture;
}

} // namespace doccam::host
