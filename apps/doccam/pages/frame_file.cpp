#include "pages/frame_file.h"

#include "base/handles/standard_file.h"
#include "base/pictures/jpeg_file_reader.h"
#include "base/pictures/png_file_reader.h"
#include "base/pictures/png_writer.h"
#include "host/failure.h"

#include <opencv2/core.hpp>

#include <cstdio>
#include <string_view>

namespace doccam::host {
namespace {

cv::Mat readWith(PictureReader& reader) {
    constexpr std::int64_t kMostPixels = 100'000'000;
    PictureReader::Header header;
    if (!reader.readHeader(1, header) || header.size.empty() ||
        std::int64_t{header.size.width} * header.size.height > kMostPixels) {
        return {};
    }
    cv::Mat picture(header.size, CV_8UC3);
    return reader.readPixels(picture) ? picture : cv::Mat();
}

} // namespace

const char* extensionOf(const FrameFile& frame) {
    return frame.size() > 1 && frame[0] == 0xFF && frame[1] == 0xD8 ? ".jpg" : ".png";
}

cv::Mat decoded(const FrameFile& frame) {
    if (frame.empty()) {
        return {};
    }
    if (std::string_view(extensionOf(frame)) == ".jpg") {
        JpegFileReader reader(frame);
        return readWith(reader);
    }
    const StandardFile file(fmemopen(const_cast<unsigned char*>(frame.data()), frame.size(), "rb"));
    PngFileReader reader(file.get());
    return file ? readWith(reader) : cv::Mat();
}

FrameFile frameFileOf(const cv::Mat& pixels) {
    auto bytes = pngOf(pixels);
    if (!bytes) {
        throw Failure(kUsage, "A frame takes too much memory; choose a smaller --size.");
    }
    return *std::move(bytes);
}

} // namespace doccam::host
