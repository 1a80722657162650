#include "bombs.h"

#include <zlib.h>

#include <algorithm>
#include <cstdint>

namespace doccam::test {
namespace {

std::string bigEndian(std::uint64_t value, unsigned count) {
    std::string bytes;
    for (unsigned i = count; i-- > 0;) {
        bytes += static_cast<char>(value >> 8 * i & 0xFF);
    }
    return bytes;
}

std::string littleEndian(std::uint64_t value, unsigned count) {
    std::string bytes = bigEndian(value, count);
    std::reverse(bytes.begin(), bytes.end());
    return bytes;
}

std::string deflatedZeros(std::uint64_t count) {
    constexpr std::uint64_t kChunk = 1 << 20;
    std::string zeros(kChunk, '\0');
    z_stream stream{};
    deflateInit(&stream, Z_BEST_COMPRESSION);
    std::string packed;
    std::string out(kChunk, '\0');
    int result = Z_OK;
    while (result != Z_STREAM_END) {
        const std::uint64_t piece = std::min(count, kChunk);
        count -= piece;
        stream.next_in = reinterpret_cast<Bytef*>(zeros.data());
        stream.avail_in = static_cast<uInt>(piece);
        do {
            stream.next_out = reinterpret_cast<Bytef*>(out.data());
            stream.avail_out = static_cast<uInt>(out.size());
            result = deflate(&stream, count == 0 ? Z_FINISH : Z_NO_FLUSH);
            packed.append(out, 0, out.size() - stream.avail_out);
        } while (stream.avail_out == 0);
    }
    deflateEnd(&stream);
    return packed;
}

std::string chunk(const std::string& type, const std::string& content) {
    const std::string body = type + content;
    const auto sum =
        crc32(0, reinterpret_cast<const Bytef*>(body.data()), static_cast<uInt>(body.size()));
    return bigEndian(content.size(), 4) + body + bigEndian(sum, 4);
}

std::string segment(char marker, const std::string& content) {
    return std::string("\xFF") + marker + bigEndian(content.size() + 2, 2) + content;
}

// A scan of one component without data: the decoder still visits all blocks.
std::string scan(const JpegClaim& claim, unsigned number) {
    const char band = static_cast<char>(1 + number % 63);
    const std::string spectrum = !claim.progressive ? std::string("\x00\x3F\x00", 3)
                                 : number == 0      ? std::string("\x00\x00\x01", 3)
                                                    : std::string{band, band, '\0'};
    return segment('\xDA', std::string("\x01\x01\x00", 3) + spectrum);
}

} // namespace

std::string claimingJpeg(const JpegClaim& claim) {
    const char frame = claim.progressive ? '\xC2' : '\xC0';
    std::string jpeg = "\xFF\xD8";
    for (unsigned number = 0; number < claim.empty; ++number) {
        jpeg += segment('\xE1', "");
    }
    jpeg += segment('\xDB', std::string(1, '\0') + std::string(64, '\x01'));
    jpeg += segment(frame, "\x08" + bigEndian(claim.height, 2) + bigEndian(claim.width, 2) +
                               std::string("\x03\x01\x11\x00\x02\x11\x00\x03\x11\x00", 10));
    // The minimal code table: one value, one bit.
    for (const char place : {'\x00', '\x10'}) {
        jpeg += segment('\xC4', std::string{place, '\x01'} + std::string(16, '\0'));
    }
    if (!claim.hidden) {
        for (unsigned number = 0; number < claim.scans; ++number) {
            jpeg += scan(claim, number);
        }
        return jpeg + "\xFF\xD9";
    }
    // Where libjpeg expects a restart, it drops a reserved marker and finds the scans after it.
    constexpr std::size_t kMaximumSegment = 65000;
    jpeg += segment('\xDD', bigEndian(1, 2)) + scan(claim, 0);
    std::string hidden;
    for (unsigned number = 1; number < claim.scans; ++number) {
        hidden += scan(claim, number) + std::string(2, '\0');
        if (hidden.size() > kMaximumSegment || number + 1 == claim.scans) {
            jpeg += segment('\x02', hidden);
            hidden.clear();
        }
    }
    return jpeg + "\xFF\xD9";
}

std::string claimingPng(const PngClaim& claim) {
    constexpr std::uint64_t kTextBytes = 7900000;
    const std::uint64_t samples = claim.colour == 2 ? 3 : claim.colour == 6 ? 4 : 1;
    const std::uint64_t row = (claim.width * samples * claim.depth + 7) / 8 + 1;
    // The seven interlaced passes have more rows.
    const std::uint64_t spare = claim.interlaced ? std::uint64_t{4} * claim.height : 0;
    std::string png = "\x89PNG\r\n\x1A\n";
    png += chunk("IHDR", bigEndian(claim.width, 4) + bigEndian(claim.height, 4) +
                             static_cast<char>(claim.depth) + static_cast<char>(claim.colour) +
                             std::string(2, '\0') + std::string(1, claim.interlaced ? '\1' : '\0'));
    if (claim.texts > 0) {
        const std::string text = chunk("zTXt", std::string("a\0\0", 3) + deflatedZeros(kTextBytes));
        for (unsigned i = 0; i < claim.texts; ++i) {
            png += text;
        }
    }
    return png + chunk("IDAT", deflatedZeros(row * claim.height + spare)) + chunk("IEND", "");
}

namespace {

std::string field(unsigned tag, unsigned type, std::uint64_t count, std::uint64_t value) {
    return littleEndian(tag, 2) + littleEndian(type, 2) + littleEndian(count, 4) +
           littleEndian(value, 4);
}

std::string repeated(std::uint64_t value, std::uint64_t count) {
    std::string bytes;
    for (std::uint64_t i = 0; i < count; ++i) {
        bytes += littleEndian(value, 4);
    }
    return bytes;
}

} // namespace

std::string claimingTiff(const TiffClaim& claim) {
    constexpr unsigned kShort = 3;
    constexpr unsigned kLong = 4;
    const auto piecesOf = [](unsigned side, unsigned piece) { return (side + piece - 1) / piece; };
    const unsigned count =
        claim.tile > 0 ? piecesOf(claim.width, claim.tile) * piecesOf(claim.height, claim.tile)
                       : piecesOf(claim.height, claim.rowsPerStrip);
    const std::uint64_t pixels = claim.tile > 0 ? std::uint64_t{claim.tile} * claim.tile
                                                : std::uint64_t{claim.width} * claim.rowsPerStrip;
    const std::string piece =
        deflatedZeros((pixels * claim.bits * claim.samples + 7) / 8 + claim.rowsPerStrip);
    const std::string head("II*\0", 4);
    const std::uint64_t offsets = 8 + piece.size();
    const std::uint64_t counts = offsets + 4 * count;
    const std::uint64_t bits = counts + 4 * count;
    const std::uint64_t page = bits + 2 * claim.samples;
    std::string tiff =
        head + littleEndian(page, 4) + piece +
        (count > 1 ? repeated(8, count) + repeated(piece.size(), count) : std::string(8, '\0'));
    for (unsigned i = 0; i < claim.samples; ++i) {
        tiff += littleEndian(claim.bits, 2);
    }
    const auto list = [&](unsigned tag, std::uint64_t place, std::uint64_t only) {
        return field(tag, kLong, count, count > 1 ? place : only);
    };
    const bool tiled = claim.tile > 0;
    for (unsigned i = 0; i < claim.pages; ++i) {
        std::string fields =
            field(256, kLong, 1, claim.width) + field(257, kLong, 1, claim.height) +
            field(258, kShort, claim.samples, claim.samples > 2 ? bits : claim.bits * 0x10001) +
            field(259, kShort, 1, 8) + field(262, kShort, 1, claim.samples > 2 ? 2 : 1);
        fields += tiled ? "" : list(273, offsets, 8);
        fields += field(277, kShort, 1, claim.samples);
        fields += tiled
                      ? field(322, kLong, 1, claim.tile) + field(323, kLong, 1, claim.tile) +
                            list(324, offsets, 8) + list(325, counts, piece.size())
                      : field(278, kLong, 1, claim.rowsPerStrip) + list(279, counts, piece.size());
        const std::uint64_t next = tiff.size() + 2 + fields.size() + 4;
        tiff += littleEndian(fields.size() / 12, 2) + fields +
                littleEndian(i + 1 < claim.pages ? next : 0, 4);
    }
    return tiff;
}

std::string claimingWebp(unsigned width, unsigned height) {
    // No transform, no colour cache, one group of five codes of one symbol each.
    std::uint64_t bits = 0;
    unsigned place = 3;
    for (int code = 0; code < 5; ++code) {
        bits |= std::uint64_t{1} << place; // a simple code of one symbol, one bit, value 0
        place += 4;
    }
    const std::string content = "\x2F" +
                                littleEndian((width - 1) | std::uint64_t{height - 1} << 14, 4) +
                                littleEndian(bits, 7);
    return "RIFF" + littleEndian(content.size() + 12, 4) + "WEBPVP8L" +
           littleEndian(content.size(), 4) + content;
}

std::string claimingBmp(unsigned width, unsigned height) {
    return "BM" + littleEndian(0, 8) + littleEndian(54 + 1024, 4) + littleEndian(40, 4) +
           littleEndian(width, 4) + littleEndian(height, 4) + littleEndian(1, 2) +
           littleEndian(8, 2) + littleEndian(1, 4) + littleEndian(0, 12) + littleEndian(256, 4) +
           littleEndian(0, 4) + std::string(1024, '\0') + std::string("\0\1", 2);
}

std::vector<Bomb> bombs() {
    return {
        {"progressive.jpg", claimingJpeg({.width = 32768, .height = 32768})},
        {"coefficients.jpg", claimingJpeg({.width = 9990, .height = 9990})},
        {"scans.jpg", claimingJpeg({.width = 9000, .height = 9000, .scans = 3000})},
        {"hidden_scans.jpg",
         claimingJpeg({.width = 9000, .height = 9000, .scans = 3000, .hidden = true})},
        {"segments.jpg",
         claimingJpeg({.width = 2000, .height = 2000, .progressive = false, .empty = 240000})},
        {"one_bit.png", claimingPng({.width = 32000, .height = 32000, .depth = 1})},
        {"interlaced.png",
         claimingPng({.width = 20000, .height = 20000, .depth = 1, .interlaced = true})},
        {"texts.png", claimingPng({.width = 8, .height = 8, .texts = 120})},
        {"pages.tif",
         claimingTiff({.width = 1000, .height = 1000, .rowsPerStrip = 1000, .pages = 3000})},
        {"strips.tif", claimingTiff({.width = 30000, .height = 30000, .rowsPerStrip = 100})},
        {"one_strip.tif",
         claimingTiff(
             {.width = 9000, .height = 9000, .rowsPerStrip = 9000, .bits = 16, .samples = 4})},
        {"tiles.tif", claimingTiff({.width = 1, .height = 1000000, .tile = 8192})},
        {"lossless.webp", claimingWebp(16383, 16383)},
        {"runs.bmp", claimingBmp(30000, 30000)},
    };
}

std::vector<Bomb> bombsWithinLimits() {
    return {
        {"deep.png", claimingPng({.width = 10000, .height = 10000, .depth = 16, .colour = 6})},
        {"coefficients.jpg", claimingJpeg({.width = 9400, .height = 9400, .scans = 10})},
        {"one_strip.tif", claimingTiff({.width = 10000, .height = 10000, .rowsPerStrip = 10000})},
        {"lossless.webp", claimingWebp(8500, 8500)},
        {"scans.jpg", claimingJpeg({.width = 9000, .height = 9000, .scans = 20})},
        {"interlaced.png",
         claimingPng(
             {.width = 10000, .height = 10000, .depth = 16, .colour = 6, .interlaced = true})},
        {"texts.png", claimingPng({.width = 5000, .height = 5000, .texts = 70})},
        {"wide.tif",
         claimingTiff(
             {.width = 9000, .height = 9000, .rowsPerStrip = 10, .bits = 16, .samples = 3})},
        {"png.jp2", claimingPng({.width = 6000, .height = 6000, .colour = 2})},
        {"png.webp", claimingPng({.width = 10000, .height = 10000, .colour = 2})},
    };
}

} // namespace doccam::test
