#include "base/pictures/picture_file.h"

#include "base/handles/standard_file.h"
#include "base/pictures/exif_orientation.h"
#include "base/pictures/formats.h"
#include "base/pictures/jpeg_file_reader.h"
#include "base/pictures/png_file_reader.h"

#include <opencv2/core/utils/logger.hpp>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string_view>

namespace doccam {
namespace {

enum class Type { kJpeg, kPng, kMedicalScan, kOther };

Type typeOf(std::FILE* file) {
    using namespace std::string_view_literals;
    constexpr std::size_t kMedicalMarkAt = 128;
    std::array<char, kMedicalMarkAt + 4> bytes{};
    const std::string_view start(bytes.data(), std::fread(bytes.data(), 1, bytes.size(), file));
    std::rewind(file);
    if (start.starts_with("\xFF\xD8\xFF"sv)) {
        return Type::kJpeg;
    }
    if (start.starts_with("\x89PNG\r\n\x1A\n"sv)) {
        return Type::kPng;
    }
    return start.size() == bytes.size() && start.ends_with("DICM"sv) ? Type::kMedicalScan
                                                                     : Type::kOther;
}

bool wants(int flags, int flag) {
    return flags != cv::IMREAD_UNCHANGED && (flags & flag) == flag;
}

int denominatorOf(int flags) {
    if (flags == cv::IMREAD_UNCHANGED) {
        return 1;
    }
    for (const auto& [flag, denominator] : {std::pair(cv::IMREAD_REDUCED_GRAYSCALE_2, 2),
                                            std::pair(cv::IMREAD_REDUCED_GRAYSCALE_4, 4),
                                            std::pair(cv::IMREAD_REDUCED_GRAYSCALE_8, 8)}) {
        if ((flags & flag) != 0) {
            return denominator;
        }
    }
    return 1;
}

int typeFor(int type, int flags) {
    if (flags == cv::IMREAD_UNCHANGED) {
        return type;
    }
    const int depth = wants(flags, cv::IMREAD_ANYDEPTH) ? CV_MAT_DEPTH(type) : CV_8U;
    const bool colour = wants(flags, cv::IMREAD_COLOR) ||
                        (wants(flags, cv::IMREAD_ANYCOLOR) && CV_MAT_CN(type) > 1);
    return CV_MAKETYPE(depth, colour ? 3 : 1);
}

// OpenCV's limit of that name, which the environment may change.
std::uint64_t limit(const char* name, std::uint64_t usual) {
    const char* const text = std::getenv(name);
    return text != nullptr ? std::strtoull(text, nullptr, 10) : usual;
}

bool isWithinLimits(cv::Size size) {
    if (size.width <= 0 || size.height <= 0) {
        return false;
    }
    const auto width = static_cast<std::uint64_t>(size.width);
    const auto height = static_cast<std::uint64_t>(size.height);
    return width <= limit("OPENCV_IO_MAX_IMAGE_WIDTH", 1 << 20) &&
           height <= limit("OPENCV_IO_MAX_IMAGE_HEIGHT", 1 << 20) &&
           width * height <= limit("OPENCV_IO_MAX_IMAGE_PIXELS", 1 << 30);
}

// None if OpenCV must answer, as it throws for a picture past its limits.
std::optional<cv::Mat> readWith(PictureReader& reader, int flags) {
    const int denominator = denominatorOf(flags);
    PictureReader::Header header;
    if (!reader.readHeader(denominator, header)) {
        return cv::Mat();
    }
    if (!isWithinLimits(header.size)) {
        return std::nullopt;
    }
    cv::Mat picture(header.size, typeFor(header.type, flags));
    if (!reader.readPixels(picture)) {
        picture.release();
        return picture;
    }
    if (denominator > 1 && !header.isReduced) {
        cv::resize(picture, picture, header.size / denominator, 0, 0, cv::INTER_LINEAR_EXACT);
    }
    if (flags != cv::IMREAD_UNCHANGED && !wants(flags, cv::IMREAD_IGNORE_ORIENTATION)) {
        applyOrientation(reader.orientation(), picture);
    }
    return picture;
}

std::unique_ptr<PictureReader> readerFor(Type type, std::FILE* file) {
    if (type == Type::kJpeg) {
        return std::make_unique<JpegFileReader>(file);
    }
    return type == Type::kPng ? std::make_unique<PngFileReader>(file) : nullptr;
}

// As OpenCV reads it; empty, and reported, if the module cannot be opened.
cv::Mat readByModule(const std::string& path, int flags) {
    const PictureFormats* formats = nullptr;
    try {
        formats = &pictureFormats();
    } catch (const ModuleError& error) {
        std::fprintf(stderr, "doccam: %s\n", error.what());
        return {};
    }
    return formats->read(path, flags);
}

} // namespace

cv::Mat readPictureFile(const std::string& path, int flags) {
    const StandardFile file(std::fopen(path.c_str(), "rbe"));
    if (!file) {
        CV_LOG_WARNING(nullptr, "imread_('" << path
                                            << "'): can't open/read file: check file "
                                               "path/integrity");
        return {};
    }
    const Type type = typeOf(file.get());
    if (type == Type::kMedicalScan) {
        return {};
    }
    const auto reader = wants(flags, cv::IMREAD_LOAD_GDAL) ? nullptr : readerFor(type, file.get());
    if (auto picture = reader ? readWith(*reader, flags) : std::nullopt) {
        return *std::move(picture);
    }
    return readByModule(path, flags);
}

bool needsFormats(const std::string& path) {
    const StandardFile file(std::fopen(path.c_str(), "rbe"));
    return file && typeOf(file.get()) == Type::kOther;
}

} // namespace doccam
