#include "documents/writer/pictures/tiff_pictures.h"

#include "documents/writer/document_plan.h"
#include "documents/writer/pictures/fax_image.h"
#include "documents/writer/pictures/png_picture.h"
#include "documents/writer/pictures/tiff_handle.h"

#include <algorithm>
#include <fstream>
#include <string_view>

namespace doccam::host {
namespace {

TiffHandle opened(const std::string& file) {
    TIFFSetErrorHandler(nullptr);
    TIFFSetWarningHandler(nullptr);
    TiffHandle tiff(TIFFOpen(file.c_str(), "rm"));
    if (!tiff) {
        throw DocumentError("is damaged");
    }
    return tiff;
}

// False at the last picture.
bool goToNext(TIFF* tiff) {
    if (TIFFLastDirectory(tiff) != 0) {
        return false;
    }
    if (TIFFReadDirectory(tiff) == 0) {
        throw DocumentError("ends too early");
    }
    return true;
}

bool isReduced(TIFF* tiff) {
    std::uint32_t kind = 0;
    TIFFGetFieldDefaulted(tiff, TIFFTAG_SUBFILETYPE, &kind);
    return (kind & FILETYPE_REDUCEDIMAGE) != 0;
}

// Goes to a picture that is not of reduced size.
bool goTo(TIFF* tiff, int part) {
    for (int seen = 0;; ++seen) {
        while (isReduced(tiff)) {
            if (!goToNext(tiff)) {
                return false;
            }
        }
        if (seen == part) {
            return true;
        }
        if (!goToNext(tiff)) {
            return false;
        }
    }
}

TiffHandle openedAt(const std::string& file, int part) {
    TiffHandle tiff = opened(file);
    if (!goTo(tiff.get(), part)) {
        throw DocumentError("has changed while it was read");
    }
    return tiff;
}

std::uint16_t valueOf(TIFF* tiff, std::uint32_t tag) {
    std::uint16_t value = 0;
    TIFFGetFieldDefaulted(tiff, tag, &value);
    return value;
}

PictureFacts factsOf(TIFF* tiff) {
    constexpr double kCentimetresPerInch = 2.54;
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    float across = 0;
    float down = 0;
    TIFFGetField(tiff, TIFFTAG_IMAGEWIDTH, &width);
    TIFFGetField(tiff, TIFFTAG_IMAGELENGTH, &height);
    PictureFacts facts{{static_cast<int>(width), static_cast<int>(height)},
                       valueOf(tiff, TIFFTAG_ORIENTATION)};
    const std::uint16_t unit = valueOf(tiff, TIFFTAG_RESOLUTIONUNIT);
    if (unit != RESUNIT_NONE && TIFFGetField(tiff, TIFFTAG_XRESOLUTION, &across) == 1 &&
        TIFFGetField(tiff, TIFFTAG_YRESOLUTION, &down) == 1) {
        const double factor = unit == RESUNIT_CENTIMETER ? kCentimetresPerInch : 1;
        facts.dpi = {double{across} * factor, double{down} * factor};
    }
    return facts;
}

bool isTwoColoured(TIFF* tiff) {
    const std::uint16_t meaning = valueOf(tiff, TIFFTAG_PHOTOMETRIC);
    return valueOf(tiff, TIFFTAG_BITSPERSAMPLE) == 1 &&
           valueOf(tiff, TIFFTAG_SAMPLESPERPIXEL) == 1 &&
           (meaning == PHOTOMETRIC_MINISWHITE || meaning == PHOTOMETRIC_MINISBLACK);
}

bool isGrey(TIFF* tiff) {
    const std::uint16_t meaning = valueOf(tiff, TIFFTAG_PHOTOMETRIC);
    return isTwoColoured(tiff) ||
           (valueOf(tiff, TIFFTAG_SAMPLESPERPIXEL) == 1 &&
            (meaning == PHOTOMETRIC_MINISWHITE || meaning == PHOTOMETRIC_MINISBLACK));
}

// Pixels of libtiff's own interface for every kind of picture: red in the lowest byte, with colours
// multiplied by the alpha.
cv::Mat pixelsOf(TIFF* tiff, cv::Size size) {
    constexpr int kStopOnError = 1;
    cv::Mat raster(size, CV_8UC4);
    char reason[1024] = "";
    if (TIFFRGBAImageOK(tiff, reason) == 0 ||
        TIFFReadRGBAImageOriented(tiff, static_cast<std::uint32_t>(size.width),
                                  static_cast<std::uint32_t>(size.height),
                                  reinterpret_cast<std::uint32_t*>(raster.data),
                                  valueOf(tiff, TIFFTAG_ORIENTATION), kStopOnError) == 0) {
        throw DocumentError("has a picture that is damaged or of an unusual kind");
    }
    return raster;
}

// What is transparent lets white paper through.
cv::Mat onWhite(const cv::Mat& raster) {
    constexpr int kFull = 255;
    cv::Mat picture(raster.size(), CV_8UC3);
    for (int y = 0; y < raster.rows; ++y) {
        const auto* const from = raster.ptr<cv::Vec4b>(y);
        auto* const to = picture.ptr<cv::Vec3b>(y);
        for (int x = 0; x < raster.cols; ++x) {
            const int paper = kFull - from[x][3];
            to[x] = {cv::saturate_cast<uchar>(from[x][2] + paper),
                     cv::saturate_cast<uchar>(from[x][1] + paper),
                     cv::saturate_cast<uchar>(from[x][0] + paper)};
        }
    }
    return picture;
}

cv::Mat read(TIFF* tiff) {
    const cv::Size size = factsOf(tiff).size;
    if (size.width <= 0 || size.height <= 0) {
        throw DocumentError("has a picture without pixels");
    }
    const cv::Mat colour = onWhite(pixelsOf(tiff, size));
    if (!isGrey(tiff)) {
        return colour;
    }
    cv::Mat grey;
    cv::extractChannel(colour, grey, 0);
    return grey;
}

} // namespace

bool isTiff(const Bytes& bytes) {
    using namespace std::string_view_literals;
    const std::string_view start(reinterpret_cast<const char*>(bytes.data()),
                                 std::min<std::size_t>(bytes.size(), 4));
    return start == "II*\0"sv || start == "MM\0*"sv || start == "II+\0"sv || start == "MM\0+"sv;
}

bool isTiffFile(const std::string& file) {
    Bytes start(4);
    std::ifstream(file, std::ios::binary).read(reinterpret_cast<char*>(start.data()), 4);
    return isTiff(start);
}

std::vector<PictureFacts> tiffPictures(const std::string& file) {
    const TiffHandle tiff = opened(file);
    std::vector<PictureFacts> pictures;
    do {
        if (!isReduced(tiff.get())) {
            read(tiff.get());
            pictures.push_back(factsOf(tiff.get()));
        }
    } while (goToNext(tiff.get()));
    return pictures;
}

PictureFacts tiffPicture(const std::string& file, int part) {
    return factsOf(openedAt(file, part).get());
}

cv::Mat readTiff(const std::string& file, int part) {
    return read(openedAt(file, part).get());
}

ImageStream tiffImage(const std::string& file, int part) {
    const TiffHandle tiff = openedAt(file, part);
    return losslessImage(read(tiff.get()));
}

} // namespace doccam::host
