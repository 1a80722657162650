#include "clean/picture_cleaning.h"

#include "base/pictures/png_writer.h"
#include "clean/apart_work.h"
#include "host/output_file.h"
#include "host/texts.h"
#include "pictures/reading.h"
#include "pictures/writing.h"

#include <doccam/doccam.hpp>

#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

namespace doccam::host {
namespace {

// Through a file, as the library offers this only for files.
cv::Mat withoutDimMargins(cv::Mat page, const OutputFile& target) {
    std::string work = target.part("work.png");
    writePicture(target, work, page, 0);
    page.release();
    FN_DeleteBlackEdgeEx2(work.data());
    return readPicture(work, cv::IMREAD_COLOR);
}

// Without a choice, both steps are applied.
bool cleansEdges(const CleanOptions& options) {
    return options.edges || !options.background;
}

bool cleansBackground(const CleanOptions& options) {
    return options.background || !options.edges;
}

cv::Mat cleaned(cv::Mat page, const CleanOptions& options, const OutputFile& target) {
    if (options.brightSheet) {
        page = withoutDimMargins(std::move(page), target);
    } else if (cleansEdges(options)) {
        FN_DeleteBlackEdge(page);
    }
    if (cleansBackground(options)) {
        FN_DeleteBackcolor(page);
    }
    return page;
}

// The still of the picture, as if a camera had seen it; empty without a sheet.
cv::Mat asStill(cv::Mat picture, const CleanOptions& options, const OutputFile& target) {
    cv::cvtColor(picture, picture, cv::COLOR_BGR2RGB);
    if (DrawingEdge(picture.data, picture.cols, picture.rows, 0) != DOCCAM_OK) {
        return {};
    }
    PageSettings settings;
    settings.colour = options.colour.value_or(Colour::kColour);
    settings.cleanEdges = cleansEdges(options);
    settings.cleanBackground = cleansBackground(options);
    apply(settings);
    constexpr int kCropToSheet = 1;
    std::string work = target.part("still.png");
    capture(work.data(), 0, kCropToSheet, picture);
    picture.release();
    return readPicture(work, cv::IMREAD_UNCHANGED);
}

std::vector<unsigned char> asBits(const cv::Mat& blackAndWhite) {
    const std::size_t stride = (static_cast<std::size_t>(blackAndWhite.cols) + 7) / 8;
    std::vector<unsigned char> bits(stride * static_cast<std::size_t>(blackAndWhite.rows));
    for (int y = 0; y < blackAndWhite.rows; ++y) {
        unsigned char* const row = bits.data() + stride * static_cast<std::size_t>(y);
        for (int x = 0; x < blackAndWhite.cols; ++x) {
            const int bit = blackAndWhite.at<uchar>(y, x) != 0 ? 0x80 : 0;
            row[x / 8] |= static_cast<unsigned char>(bit >> (x % 8));
        }
    }
    return pngOfBits(bits.data(), stride, blackAndWhite.cols, blackAndWhite.rows).value();
}

// Reports the size of what it writes.
void writeCleaned(const std::string& file, const CleanOptions& options, const OutputFile& target,
                  const Report& report) {
    cv::Mat picture = readPicture(file, cv::IMREAD_COLOR);
    const cv::Mat page = options.crop == Crop::kRectangle
                             ? asStill(std::move(picture), options, target)
                             : cleaned(std::move(picture), options, target);
    if (page.empty()) {
        return;
    }
    if (options.colour == Colour::kBlackAndWhite) {
        writeBytes(target, target.draft(), asBits(page));
    } else {
        writePicture(target, target.draft(), page, options.quality);
    }
    report(std::to_string(page.cols));
    report(std::to_string(page.rows));
}

} // namespace

std::optional<WrittenFile> cleanPicture(const Context& context, const std::string& file,
                                        const CleanOptions& options) {
    requirePicture(file);
    OutputFile target(targetOf(file, options), options.force);
    const auto reports = workApart(
        context, file, [&](const Report& report) { writeCleaned(file, options, target, report); });
    if (reports.empty() && options.crop == Crop::kRectangle) {
        return std::nullopt;
    }
    if (reports.size() != 2) {
        failToClean(file);
    }
    target.publish(target.draft());
    const auto number = [](const std::string& text) { return parseNumber<int>(text).value_or(0); };
    return describeFile(target.target().string(), {number(reports[0]), number(reports[1])});
}

} // namespace doccam::host
