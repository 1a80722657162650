#include "output/pdf/pdf_page.h"

#include "base/handles/standard_file.h"
#include "output/pdf/png_reader.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <optional>
#include <vector>

namespace doccam {
namespace {

using Bytes = std::vector<unsigned char>;

// libharu counts bytes in 32 bits.
constexpr std::size_t kMaximumBytes = std::size_t{1} << 30;
constexpr unsigned kBitsPerSample = 8;

std::optional<Bytes> readFile(const std::string& path, PdfError& error) {
    const StandardFile file(std::fopen(path.c_str(), "rbe"));
    if (!file) {
        error = {HPDF_FILE_OPEN_ERROR, static_cast<HPDF_STATUS>(errno)};
        return std::nullopt;
    }
    Bytes bytes;
    std::array<unsigned char, 65536> chunk{};
    for (std::size_t count = 0;
         (count = std::fread(chunk.data(), 1, chunk.size(), file.get())) > 0;) {
        bytes.insert(bytes.end(), chunk.begin(),
                     chunk.begin() + static_cast<std::ptrdiff_t>(count));
        if (bytes.size() > kMaximumBytes) {
            break;
        }
    }
    if (std::ferror(file.get()) != 0 || bytes.size() > kMaximumBytes) {
        const bool failed = std::ferror(file.get()) != 0;
        error = {HPDF_FILE_IO_ERROR, static_cast<HPDF_STATUS>(failed ? errno : 0)};
        return std::nullopt;
    }
    return bytes;
}

HPDF_UINT sizeOf(const Bytes& bytes) {
    return static_cast<HPDF_UINT>(bytes.size());
}

HPDF_Image rawImage(HPDF_Doc document, const PngReader& png, const Bytes& samples,
                    unsigned channels) {
    const HPDF_ColorSpace space = channels == 1 ? HPDF_CS_DEVICE_GRAY : HPDF_CS_DEVICE_RGB;
    return HPDF_LoadRawImageFromMem(document, samples.data(), png.width(), png.height(), space,
                                    kBitsPerSample);
}

HPDF_Image loadPixels(HPDF_Doc document, const PngReader& png) {
    HPDF_Image image = rawImage(document, png, png.pixels(), png.channels());
    if (image == nullptr || png.alpha().empty()) {
        return image;
    }
    HPDF_Image mask = rawImage(document, png, png.alpha(), 1);
    return mask != nullptr && HPDF_Image_AddSMask(image, mask) == HPDF_OK ? image : nullptr;
}

HPDF_Image load(HPDF_Doc document, const PngReader& png, const Bytes& file) {
    return png.isPlain() ? HPDF_LoadPngImageFromMem(document, file.data(), sizeOf(file))
                         : loadPixels(document, png);
}

// A page of the picture's size that shows what loadImage() returns. The size, which libharu refuses
// below 3 and above 14400, is set first, so that a huge picture allocates nothing.
template <typename LoadImage>
PdfError addPageOf(HPDF_Doc document, unsigned width, unsigned height, HPDF_STATUS damaged,
                   const LoadImage& loadImage) {
    const auto across = static_cast<HPDF_REAL>(width);
    const auto down = static_cast<HPDF_REAL>(height);
    HPDF_Page page = HPDF_AddPage(document);
    if (page == nullptr || HPDF_Page_SetWidth(page, across) != HPDF_OK ||
        HPDF_Page_SetHeight(page, down) != HPDF_OK) {
        return {HPDF_PAGE_INVALID_SIZE, 0};
    }
    HPDF_Image image = loadImage();
    if (image == nullptr || HPDF_Page_DrawImage(page, image, 0, 0, across, down) != HPDF_OK) {
        return {damaged, 0};
    }
    return {};
}

PdfError addPng(HPDF_Doc document, const Bytes& file) {
    PngReader png(file);
    if (!png.readHeader()) {
        return {HPDF_INVALID_PNG_IMAGE, 0};
    }
    return addPageOf(document, png.width(), png.height(), HPDF_INVALID_PNG_IMAGE,
                     [&] { return png.readPixels() ? load(document, png, file) : nullptr; });
}

// libharu reads only a JPEG's header; viewers show truncated pictures as far as they go.
PdfError addJpeg(HPDF_Doc document, const Bytes& file) {
    HPDF_Image image = HPDF_LoadJpegImageFromMem(document, file.data(), sizeOf(file));
    if (image == nullptr || HPDF_Image_GetWidth(image) == 0) {
        return {HPDF_INVALID_JPEG_DATA, 0};
    }
    return addPageOf(document, HPDF_Image_GetWidth(image), HPDF_Image_GetHeight(image),
                     HPDF_INVALID_JPEG_DATA, [&] { return image; });
}

} // namespace

PdfError addPicturePage(HPDF_Doc document, const std::string& path) {
    const bool isPng = path.ends_with("png");
    if (!isPng && !path.ends_with("jpg")) {
        return {};
    }
    PdfError error;
    const auto file = readFile(path, error);
    if (!file) {
        return error;
    }
    return isPng ? addPng(document, *file) : addJpeg(document, *file);
}

} // namespace doccam
