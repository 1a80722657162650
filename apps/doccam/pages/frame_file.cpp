#include "pages/frame_file.h"

#include "base/handles/standard_file.h"
#include "base/pictures/jpeg_file_reader.h"
#include "base/pictures/png_file_reader.h"
#include "base/pictures/png_writer.h"
#include "host/failure.h"

#include <opencv2/core.hpp>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <string>
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

constexpr std::size_t kEnd = 16 << 10; // bytes that may have padding after the end marker

bool isJpeg(std::string_view start) {
    return start.starts_with("\xFF\xD8\xFF");
}

bool endsWhole(std::string_view start, std::string_view end) {
    return end.find(isJpeg(start) ? "\xFF\xD9" : "IEND") != std::string_view::npos;
}

bool endsWhole(const FrameFile& frame) {
    const std::string_view bytes(reinterpret_cast<const char*>(frame.data()), frame.size());
    return endsWhole(bytes, bytes.substr(bytes.size() - std::min(bytes.size(), kEnd)));
}

} // namespace

bool isWholeFrame(int file) {
    struct stat status {};

    if (fstat(file, &status) != 0 || status.st_size < 1) {
        return false;
    }
    const auto size = static_cast<std::size_t>(status.st_size);
    std::array<char, 4> start{};
    std::string end(std::min(size, kEnd), '\0');
    if (pread(file, start.data(), start.size(), 0) < 3 ||
        pread(file, end.data(), end.size(), static_cast<off_t>(size - end.size())) !=
            static_cast<ssize_t>(end.size())) {
        return false;
    }
    const std::string_view first(start.data(), start.size());
    return (isJpeg(first) || first.starts_with("\x89PN")) && endsWhole(first, end);
}

const char* extensionOf(const FrameFile& frame) {
    return frame.size() > 1 && frame[0] == 0xFF && frame[1] == 0xD8 ? ".jpg" : ".png";
}

cv::Mat decoded(const FrameFile& frame) {
    if (frame.empty() || !endsWhole(frame)) {
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
