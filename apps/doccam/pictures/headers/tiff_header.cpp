// TIFF and BigTIFF: all pages, and the storage of the first one.
#include "pictures/headers/picture_header.h"

#include <algorithm>
#include <array>

namespace doccam::host {
namespace {

constexpr std::uint64_t kMaximumPages = 10000;
constexpr std::uint64_t kMaximumPieces = 65536;
constexpr std::uint64_t kMaximumFields = 512;
constexpr std::uint64_t kLongestSide = 1 << 20;

enum class Tag : std::uint64_t {
    kWidth = 256,
    kHeight = 257,
    kBitsPerSample = 258,
    kCompression = 259,
    kSamplesPerPixel = 277,
    kRowsPerStrip = 278,
    kStripByteCounts = 279,
    kTileWidth = 322,
    kTileHeight = 323,
    kTileByteCounts = 325,
    kPictureDepth = 32997,
    kTileDepth = 32998
};

// None, the three of fax, LZW, JPEG, deflate under two numbers, PackBits: those that scanners and
// drawing programs write, and that decompress no more than requested.
bool isUsual(std::uint64_t compression) {
    constexpr std::array<std::uint64_t, 9> kUsual{1, 2, 3, 4, 5, 7, 8, 32946, 32773};
    return std::find(kUsual.begin(), kUsual.end(), compression) != kUsual.end();
}

std::uint64_t roundedUp(std::uint64_t value, std::uint64_t step) {
    return value / step + (value % step != 0 ? 1 : 0);
}

struct Field {
    std::uint64_t values = 0; // their offset
    std::uint64_t count = 0;
    unsigned bytes = 0; // size of each
};

// Reads the fields of pages in the file's byte order and offset size.
class TiffFile {
  public:
    explicit TiffFile(FileBytes& file)
      : file_(file)
      , little_(file.startsWith(0, "I"))
      , big_(number(2, 2) == 43) {}

    std::optional<std::uint64_t> number(std::uint64_t at, unsigned bytes) {
        return little_ ? file_.littleEndian(at, bytes) : file_.bigEndian(at, bytes);
    }

    std::optional<std::uint64_t> firstPage() { return big_ ? number(8, 8) : number(4, 4); }

    std::optional<std::uint64_t> pageAfter(std::uint64_t page) {
        const auto end = fieldAt(page, fieldCount(page));
        return number(end, offsetBytes());
    }

    // The first field with that tag, which libtiff uses.
    std::optional<Field> field(std::uint64_t page, Tag tag) {
        for (std::uint64_t i = 0; i < fieldCount(page); ++i) {
            const std::uint64_t at = fieldAt(page, i);
            if (number(at, 2) == static_cast<std::uint64_t>(tag)) {
                return describe(at);
            }
        }
        return std::nullopt;
    }

    std::uint64_t value(std::uint64_t page, Tag tag, std::uint64_t otherwise) {
        const auto found = field(page, tag);
        return found ? number(found->values, found->bytes).value_or(0) : otherwise;
    }

    std::uint64_t fieldCount(std::uint64_t page) { return number(page, big_ ? 8 : 2).value_or(0); }

    std::uint64_t size() const { return file_.size(); }

  private:
    unsigned offsetBytes() const { return big_ ? 8 : 4; }

    std::uint64_t fieldAt(std::uint64_t page, std::uint64_t index) const {
        return page + (big_ ? 8 + 20 * index : 2 + 12 * index);
    }

    std::optional<Field> describe(std::uint64_t at) {
        Field field;
        field.bytes = bytesOfType(number(at + 2, 2).value_or(0));
        field.count = number(at + 4, offsetBytes()).value_or(0);
        field.values = at + 4 + offsetBytes();
        const bool inPlace =
            field.count <= offsetBytes() && field.count * field.bytes <= offsetBytes();
        if (!inPlace) {
            field.values = number(field.values, offsetBytes()).value_or(size());
        }
        return field.bytes > 0 ? std::optional(field) : std::nullopt;
    }

    // Of integers; 0 for the other types.
    static unsigned bytesOfType(std::uint64_t type) {
        constexpr std::array<unsigned, 18> kBytes{0, 1, 0, 2, 4, 0, 1, 0, 2,
                                                  4, 0, 0, 0, 0, 0, 0, 8, 8};
        return type < kBytes.size() ? kBytes[type] : 0;
    }

    FileBytes& file_;
    bool little_;
    bool big_;
};

// The strips or tiles in which a page is stored.
struct Pieces {
    std::uint64_t width = 0;
    std::uint64_t height = 0;
    std::uint64_t count = 0;
    Tag byteCounts = Tag::kStripByteCounts;
};

Pieces piecesOf(TiffFile& file, std::uint64_t page, const PictureHeader& size) {
    Pieces pieces;
    pieces.width = file.value(page, Tag::kTileWidth, 0);
    pieces.height = file.value(page, Tag::kTileHeight, 0);
    if (pieces.width > 0 && pieces.height > 0) {
        pieces.byteCounts = Tag::kTileByteCounts;
    } else {
        const std::uint64_t rows = file.value(page, Tag::kRowsPerStrip, size.height);
        pieces.width = size.width;
        pieces.height = rows == 0 ? size.height : std::min<std::uint64_t>(rows, size.height);
    }
    pieces.count = roundedUp(size.width, pieces.width) * roundedUp(size.height, pieces.height);
    return pieces;
}

// The sum of the pieces' sizes in the file; pieces may share the same bytes.
std::uint64_t storedBytes(TiffFile& file, std::uint64_t page, const Pieces& pieces) {
    const auto field = file.field(page, pieces.byteCounts);
    std::uint64_t bytes = 0;
    for (std::uint64_t i = 0; field && i < std::min(field->count, kMaximumPieces); ++i) {
        const auto count = file.number(field->values + i * field->bytes, field->bytes);
        bytes += std::min(count.value_or(0), file.size());
    }
    return bytes;
}

// libtiff decompresses a piece at a time and converts it to pixels of four bytes.
bool describeStorage(TiffFile& file, std::uint64_t page, PictureHeader& header) {
    constexpr std::uint64_t kBytesPerPixel = 4;
    constexpr std::uint64_t kMaximumSamples = 16;
    constexpr std::uint64_t kMaximumBits = 64;
    constexpr std::uint64_t kStoredMaximum = 1 << 28;
    const Pieces pieces = piecesOf(file, page, header);
    const std::uint64_t samples = file.value(page, Tag::kSamplesPerPixel, 1);
    const std::uint64_t bits = file.value(page, Tag::kBitsPerSample, 1);
    if (samples > kMaximumSamples || bits > kMaximumBits || pieces.count > kMaximumPieces ||
        pieces.width > kLongestSide || pieces.height > kLongestSide ||
        !isUsual(file.value(page, Tag::kCompression, 1)) ||
        file.value(page, Tag::kPictureDepth, 1) > 1 || file.value(page, Tag::kTileDepth, 1) > 1 ||
        storedBytes(file, page, pieces) > std::max(kStoredMaximum, file.size())) {
        return false;
    }
    const std::uint64_t pixels = pieces.width * pieces.height;
    const std::uint64_t packed = pixels / 8 * samples * bits;
    header.decoderBytes = packed + std::max(packed, pixels * kBytesPerPixel);
    if (pieces.byteCounts == Tag::kTileByteCounts) {
        header.pixels = std::max(header.pixels, pixels * pieces.count);
    }
    return true;
}

} // namespace

// OpenCV decodes only the first page, but a file with thousands of them is no scanned letter.
std::optional<PictureHeader> readTiffHeader(FileBytes& bytes) {
    TiffFile file(bytes);
    std::optional<PictureHeader> header;
    std::uint64_t pages = 0;
    for (auto page = file.firstPage(); page.value_or(0) != 0; page = file.pageAfter(*page)) {
        if (++pages > kMaximumPages || file.fieldCount(*page) > kMaximumFields) {
            return std::nullopt;
        }
        const auto size =
            plainHeader(file.value(*page, Tag::kWidth, 0), file.value(*page, Tag::kHeight, 0));
        if (!header) {
            header = size;
            if (!header || !describeStorage(file, *page, *header)) {
                return std::nullopt;
            }
        } else if (size) {
            header->pixels += size->pixels;
        }
    }
    return header;
}

} // namespace doccam::host
