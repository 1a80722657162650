#include "documents/writer/pictures/fax_image.h"

#include "documents/writer/document_plan.h"
#include "documents/writer/pictures/tiff_handle.h"

#include <algorithm>
#include <cstring>

namespace doccam::host {
namespace {

// A TIFF file in memory.
class MemoryTiff {
  public:
    TiffHandle open(const char* mode) {
        at_ = 0;
        return TiffHandle(
            TIFFClientOpen("memory", mode, this, read, write, seek, close, size, nullptr, nullptr));
    }

  private:
    static MemoryTiff& self(thandle_t handle) { return *static_cast<MemoryTiff*>(handle); }

    static tmsize_t read(thandle_t handle, void* data, tmsize_t length) {
        MemoryTiff& file = self(handle);
        const std::uint64_t left =
            file.bytes_.size() - std::min<std::uint64_t>(file.at_, file.bytes_.size());
        const auto count = std::min<std::uint64_t>(left, static_cast<std::uint64_t>(length));
        std::memcpy(data, file.bytes_.data() + file.at_, count);
        file.at_ += count;
        return static_cast<tmsize_t>(count);
    }

    static tmsize_t write(thandle_t handle, void* data, tmsize_t length) {
        MemoryTiff& file = self(handle);
        const auto count = static_cast<std::uint64_t>(length);
        if (file.at_ + count > file.bytes_.size()) {
            file.bytes_.resize(file.at_ + count);
        }
        std::memcpy(file.bytes_.data() + file.at_, data, count);
        file.at_ += count;
        return length;
    }

    static toff_t seek(thandle_t handle, toff_t offset, int from) {
        MemoryTiff& file = self(handle);
        const std::uint64_t start = from == SEEK_SET   ? 0
                                    : from == SEEK_CUR ? file.at_
                                                       : file.bytes_.size();
        return file.at_ = start + offset;
    }

    static int close(thandle_t /*handle*/) { return 0; }

    static toff_t size(thandle_t handle) { return self(handle).bytes_.size(); }

    Bytes bytes_;
    std::uint64_t at_ = 0;
};

void describe(TIFF* tiff, cv::Size size) {
    TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, size.width);
    TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, size.height);
    TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, 1);
    TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, 1);
    TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, size.height);
    TIFFSetField(tiff, TIFFTAG_COMPRESSION, COMPRESSION_CCITTFAX4);
    TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISWHITE);
    TIFFSetField(tiff, TIFFTAG_FILLORDER, FILLORDER_MSB2LSB);
}

// 1 is black.
void pack(const cv::Mat& picture, int row, Bytes& bits) {
    constexpr unsigned char kWhite = 128;
    std::fill(bits.begin(), bits.end(), 0);
    const unsigned char* const pixels = picture.ptr(row);
    for (int x = 0; x < picture.cols; ++x) {
        if (pixels[x] < kWhite) {
            bits[static_cast<std::size_t>(x) / 8] |= static_cast<unsigned char>(0x80 >> (x % 8));
        }
    }
}

std::string parameters(cv::Size size) {
    return " /Filter /CCITTFaxDecode /DecodeParms << /K -1 /Columns " + std::to_string(size.width) +
           " /Rows " + std::to_string(size.height) + " >>";
}

} // namespace

Bytes faxBytes(const cv::Mat& picture) {
    MemoryTiff file;
    {
        const TiffHandle tiff = file.open("wm");
        if (!tiff) {
            throw DocumentError("does not fit into memory");
        }
        describe(tiff.get(), picture.size());
        Bytes bits(static_cast<std::size_t>(picture.cols + 7) / 8);
        for (int row = 0; row < picture.rows; ++row) {
            pack(picture, row, bits);
            if (TIFFWriteScanline(tiff.get(), bits.data(), static_cast<std::uint32_t>(row), 0) !=
                1) {
                throw DocumentError("cannot be encoded as CCITT G4");
            }
        }
    }
    const TiffHandle tiff = file.open("rm");
    if (!tiff) {
        throw DocumentError("cannot be encoded as CCITT G4");
    }
    const auto length = static_cast<std::size_t>(TIFFRawStripSize64(tiff.get(), 0));
    Bytes bytes(length);
    if (TIFFReadRawStrip(tiff.get(), 0, bytes.data(), static_cast<tmsize_t>(length)) < 0) {
        throw DocumentError("cannot be encoded as CCITT G4");
    }
    return bytes;
}

ImageStream faxImage(const cv::Mat& picture) {
    return {imageDictionary(picture.size(), "/BitsPerComponent 1 /ColorSpace /DeviceGray" +
                                                parameters(picture.size())),
            faxBytes(picture)};
}

// A stencil paints where the decoded bit is 0, and the encoder's black decodes to that.
ImageStream faxStencil(const cv::Mat& mask) {
    return {imageDictionary(mask.size(),
                            "/ImageMask true /BitsPerComponent 1" + parameters(mask.size())),
            faxBytes(255 - mask)};
}

} // namespace doccam::host
