#include "pictures/reading.h"

#include "base/pictures/formats.h"
#include "base/pictures/picture_file.h"
#include "host/failure.h"
#include "host/modules/with_modules.h"
#include "pictures/picture_limits.h"
#include "streams/input_file.h"

#include <opencv2/imgcodecs.hpp>

#include <new>

namespace doccam::host {
namespace {

[[noreturn]] void failToRead(const std::string& file) {
    throw Failure(kUsage, "The file " + file +
                              " is no readable picture; give JPEG, PNG, TIFF, BMP, WebP or PNM "
                              "files.");
}

std::optional<PictureHeader> headerOf(const std::string& path) {
    FileBytes file(path);
    return file.isOpen() ? readPictureHeader(file) : std::nullopt;
}

// Damaged data and lack of memory may throw.
cv::Mat decode(const std::string& file, int flags) {
    if (needsFormats(file)) {
        withModules([] { pictureFormats(); });
    }
    try {
        return readPictureFile(file, flags);
    } catch (const cv::Exception&) {
        return {};
    } catch (const std::bad_alloc&) {
        return {};
    }
}

} // namespace

PictureHeader requirePicture(const std::string& file) {
    const auto header = headerOf(file);
    if (!header) {
        requireInputFile(file);
        failToRead(file);
    }
    refuseBeyond(pictureLimits(), *header, file);
    return *header;
}

cv::Mat readPicture(const std::string& file, int flags) {
    requirePicture(file);
    cv::Mat picture = decode(file, flags);
    if (picture.empty()) {
        failToRead(file);
    }
    return picture;
}

// The library also writes types that readPicture() rejects.
cv::Size sizeOfWritten(const std::string& file) {
    if (const auto header = headerOf(file)) {
        return {static_cast<int>(header->width), static_cast<int>(header->height)};
    }
    return decode(file, cv::IMREAD_UNCHANGED).size();
}

} // namespace doccam::host
