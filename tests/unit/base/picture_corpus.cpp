#include "picture_corpus.h"

#include "base/handles/libjpeg.h"

#include <opencv2/core.hpp>
#include <png.h>
#include <zlib.h>

#include <algorithm>
#include <cstdlib>

namespace doccam::test {
namespace {

constexpr int kWidth = 37;
constexpr int kHeight = 29;

cv::Mat pixels(int channels, std::uint64_t seed = 7) {
    cv::Mat picture(kHeight, kWidth, CV_8UC(channels));
    cv::RNG random(seed);
    random.fill(picture, cv::RNG::UNIFORM, 0, 256);
    // Smooth below, so that scans and filters have something to do.
    for (int y = kHeight / 2; y < kHeight; ++y) {
        for (int x = 0; x < kWidth * channels; ++x) {
            picture.ptr(y)[x] = static_cast<unsigned char>(x * 2 + y);
        }
    }
    return picture;
}

struct JpegKind {
    J_COLOR_SPACE from = JCS_RGB;
    J_COLOR_SPACE stored = JCS_YCbCr;
    int channels = 3;
    int across = 1;
    int down = 1;
    bool progressive = false;
    bool arithmetic = false;
    bool optimised = false;
    unsigned restart = 0;
    std::string exif = {}; // in a segment of its own
};

std::string makeJpeg(const JpegKind& kind) {
    jpeg_compress_struct jpeg{};
    jpeg_error_mgr errors{};
    jpeg.err = jpeg_std_error(&errors);
    jpeg_create_compress(&jpeg);
    unsigned char* bytes = nullptr;
    unsigned long length = 0;
    jpeg_mem_dest(&jpeg, &bytes, &length);
    jpeg.image_width = kWidth;
    jpeg.image_height = kHeight;
    jpeg.input_components = kind.channels;
    jpeg.in_color_space = kind.from;
    jpeg_set_defaults(&jpeg);
    jpeg_set_colorspace(&jpeg, kind.stored);
    jpeg.comp_info[0].h_samp_factor = kind.across;
    jpeg.comp_info[0].v_samp_factor = kind.down;
    jpeg.restart_interval = kind.restart;
    jpeg.arith_code = kind.arithmetic ? TRUE : FALSE;
    jpeg.optimize_coding = kind.optimised ? TRUE : FALSE;
    if (kind.progressive) {
        jpeg_simple_progression(&jpeg);
    }
    jpeg_start_compress(&jpeg, TRUE);
    if (!kind.exif.empty()) {
        jpeg_write_marker(&jpeg, JPEG_APP0 + 1,
                          reinterpret_cast<const unsigned char*>(kind.exif.data()),
                          static_cast<unsigned>(kind.exif.size()));
    }
    cv::Mat picture = pixels(kind.channels);
    for (int y = 0; y < kHeight; ++y) {
        JSAMPROW row = picture.ptr(y);
        jpeg_write_scanlines(&jpeg, &row, 1);
    }
    jpeg_finish_compress(&jpeg);
    jpeg_destroy_compress(&jpeg);
    std::string file(reinterpret_cast<char*>(bytes), length);
    std::free(bytes);
    return file;
}

struct PngSpec {
    int colours = PNG_COLOR_TYPE_RGB;
    int depth = 8;
    bool interlaced = false;
    bool transparent = false;
    bool background = false;
    std::string exif = {};
    bool exifLast = false;
};

int channelsOf(int colours) {
    return colours == PNG_COLOR_TYPE_RGB          ? 3
           : colours == PNG_COLOR_TYPE_RGB_ALPHA  ? 4
           : colours == PNG_COLOR_TYPE_GRAY_ALPHA ? 2
                                                  : 1;
}

void addPalette(png_structp png, png_infop info, const PngSpec& spec) {
    const int count = 1 << spec.depth;
    std::vector<png_color> palette;
    std::vector<png_byte> opacities;
    for (int i = 0; i < count; ++i) {
        const auto part = [i](int factor) { return static_cast<png_byte>(i * factor); };
        palette.push_back({part(37), part(91), part(113)});
        opacities.push_back(part(61));
    }
    png_set_PLTE(png, info, palette.data(), count);
    if (spec.transparent) {
        png_set_tRNS(png, info, opacities.data(), count / 2, nullptr);
    }
}

void append(png_structp png, png_bytep data, std::size_t length) {
    static_cast<std::string*>(png_get_io_ptr(png))
        ->append(reinterpret_cast<const char*>(data), length);
}

void describe(png_structp png, png_infop info, const PngSpec& spec) {
    png_set_IHDR(png, info, kWidth, kHeight, spec.depth, spec.colours,
                 spec.interlaced ? PNG_INTERLACE_ADAM7 : PNG_INTERLACE_NONE,
                 PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    if (spec.colours == PNG_COLOR_TYPE_PALETTE) {
        addPalette(png, info, spec);
    } else if (spec.transparent) {
        const png_color_16 clear{0, 60, 60, 60, 1};
        png_set_tRNS(png, info, nullptr, 0, &clear);
    }
    if (spec.background) {
        const png_color_16 white{1, 200, 100, 50, 1};
        png_set_bKGD(png, info, &white);
        png_set_gAMA(png, info, 0.5);
    }
}

std::string makePng(const PngSpec& spec) {
    std::string file;
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    png_set_write_fn(png, &file, append, [](png_structp /*png*/) {});
    describe(png, info, spec);
    std::string exif = spec.exif;
    const auto addExif = [&] {
        png_set_eXIf_1(png, info, static_cast<png_uint_32>(exif.size()),
                       reinterpret_cast<png_bytep>(exif.data()));
    };
    if (!exif.empty() && !spec.exifLast) {
        addExif();
    }
    png_write_info(png, info);
    // Wide enough for every kind; narrower samples use its first bytes.
    cv::Mat picture = pixels(2 * channelsOf(spec.colours));
    std::vector<png_bytep> rows;
    rows.reserve(kHeight);
    for (int y = 0; y < kHeight; ++y) {
        rows.push_back(picture.ptr(y));
    }
    png_write_image(png, rows.data());
    if (!exif.empty() && spec.exifLast) {
        addExif();
    }
    png_write_end(png, info);
    png_destroy_write_struct(&png, &info);
    return file;
}

std::string number(unsigned value, int bytes, bool littleEndian) {
    std::string text;
    for (int i = 0; i < bytes; ++i) {
        const int shift = 8 * (littleEndian ? i : bytes - 1 - i);
        text += static_cast<char>(value >> shift & 0xFF);
    }
    return text;
}

void addTurnedJpegs(std::vector<PictureSample>& samples) {
    const std::string mark("Exif\0\0", 6);
    for (int orientation = 0; orientation <= 9; ++orientation) {
        for (const bool little : {true, false}) {
            const std::string name = std::to_string(orientation) + (little ? "II" : "MM");
            const std::string exif = exifData(orientation, little);
            samples.push_back({"turned" + name, makeJpeg({.exif = mark + exif})});
            samples.push_back({"turned grey" + name, makeJpeg({.from = JCS_GRAYSCALE,
                                                               .stored = JCS_GRAYSCALE,
                                                               .channels = 1,
                                                               .exif = mark + exif})});
        }
    }
    const std::string exif = exifData(6, true);
    for (std::size_t length = 0; length <= exif.size(); length += 3) {
        samples.push_back({"cut Exif" + std::to_string(length),
                           makeJpeg({.exif = (mark + exif).substr(0, length)})});
    }
    cv::RNG random(3);
    for (int i = 0; i < 200; ++i) {
        std::string wild = exif;
        wild[static_cast<std::size_t>(random.uniform(0, static_cast<int>(wild.size())))] =
            static_cast<char>(random.uniform(0, 256));
        samples.push_back({"wild Exif" + std::to_string(i), makeJpeg({.exif = mark + wild})});
    }
    samples.push_back({"Exif after other data",
                       makeJpeg({.exif = "http://ns.adobe.com/xap/1.0/" + mark + exif})});
}

} // namespace

std::vector<PictureSample> jpegSamples() {
    std::vector<PictureSample> samples;
    for (const bool progressive : {false, true}) {
        const std::string order = progressive ? " progressive" : " sequential";
        for (const auto& [across, down] : {std::pair(1, 1), {2, 1}, {2, 2}, {1, 2}, {4, 1}}) {
            samples.push_back(
                {"YCbCr" + std::to_string(across) + std::to_string(down) + order,
                 makeJpeg({.across = across, .down = down, .progressive = progressive})});
        }
        samples.push_back(
            {"RGB" + order, makeJpeg({.stored = JCS_RGB, .progressive = progressive})});
        samples.push_back({"grey" + order, makeJpeg({.from = JCS_GRAYSCALE,
                                                     .stored = JCS_GRAYSCALE,
                                                     .channels = 1,
                                                     .progressive = progressive})});
        for (const J_COLOR_SPACE stored : {JCS_CMYK, JCS_YCCK}) {
            samples.push_back(
                {"inks" + std::to_string(stored) + order, makeJpeg({.from = JCS_CMYK,
                                                                    .stored = stored,
                                                                    .channels = 4,
                                                                    .progressive = progressive})});
        }
        samples.push_back(
            {"arithmetic" + order, makeJpeg({.progressive = progressive, .arithmetic = true})});
    }
    samples.push_back({"restarts", makeJpeg({.across = 2, .down = 2, .restart = 2})});
    samples.push_back({"optimised", makeJpeg({.optimised = true})});
    samples.push_back({"two unknown components",
                       makeJpeg({.from = JCS_UNKNOWN, .stored = JCS_UNKNOWN, .channels = 2})});
    addTurnedJpegs(samples);
    return samples;
}

std::vector<PictureSample> pngSamples() {
    std::vector<PictureSample> samples;
    const std::vector<std::pair<int, std::vector<int>>> kinds{
        {PNG_COLOR_TYPE_GRAY, {1, 2, 4, 8, 16}},
        {PNG_COLOR_TYPE_PALETTE, {1, 2, 4, 8}},
        {PNG_COLOR_TYPE_RGB, {8, 16}},
        {PNG_COLOR_TYPE_GRAY_ALPHA, {8, 16}},
        {PNG_COLOR_TYPE_RGB_ALPHA, {8, 16}}};
    for (const auto& [colours, depths] : kinds) {
        for (const int depth : depths) {
            for (int ways = 0; ways < 8; ++ways) {
                const PngSpec spec{.colours = colours,
                                   .depth = depth,
                                   .interlaced = (ways & 1) != 0,
                                   .transparent =
                                       (ways & 2) != 0 && (colours & PNG_COLOR_MASK_ALPHA) == 0,
                                   .background = (ways & 4) != 0};
                samples.push_back({"colours" + std::to_string(colours) + " depth" +
                                       std::to_string(depth) + " ways" + std::to_string(ways),
                                   makePng(spec)});
            }
        }
    }
    for (int orientation = 0; orientation <= 9; ++orientation) {
        for (const bool last : {false, true}) {
            samples.push_back(
                {"turned" + std::to_string(orientation) + (last ? " last" : ""),
                 makePng({.exif = exifData(orientation, orientation % 2 == 0), .exifLast = last})});
        }
    }
    return samples;
}

std::string exifData(int orientation, bool littleEndian) {
    const auto two = [&](unsigned value) { return number(value, 2, littleEndian); };
    const auto four = [&](unsigned value) { return number(value, 4, littleEndian); };
    constexpr unsigned kTextAt = 62;
    std::string data = littleEndian ? "II" : "MM";
    data += two(42) + four(8) + two(4);
    data += two(0x010F) + two(2) + four(12) + four(kTextAt);     // the maker's name
    data += two(0x011A) + two(5) + four(1) + four(kTextAt + 12); // the resolution
    data += two(0x0112) + two(3) + four(1) + two(static_cast<unsigned>(orientation)) + two(0);
    data += two(0x0131) + two(2) + four(3) + std::string("ab\0\0", 4); // the program
    data += four(0);
    data += "maker's name" + four(72) + four(1);
    return data;
}

std::vector<PictureSample> damaged(const PictureSample& sample, int ways) {
    std::vector<PictureSample> samples;
    cv::RNG random(sample.bytes.size());
    const auto place = [&] {
        return static_cast<std::size_t>(random.uniform(0, static_cast<int>(sample.bytes.size())));
    };
    for (int i = 0; i < ways; ++i) {
        const std::string number = std::to_string(i);
        samples.push_back({sample.name + " cut" + number, sample.bytes.substr(0, place())});
        PictureSample changed{sample.name + " changed" + number, sample.bytes};
        for (int change = 0; change <= i % 4; ++change) {
            changed.bytes[place()] = static_cast<char>(random.uniform(0, 256));
        }
        samples.push_back(changed);
    }
    return samples;
}

PictureSample withRightSums(PictureSample png) {
    constexpr std::size_t kSignature = 8;
    constexpr std::size_t kAroundData = 12; // length, name and sum of a chunk
    auto* const bytes = reinterpret_cast<unsigned char*>(png.bytes.data());
    std::size_t at = kSignature;
    while (png.bytes.size() - std::min(at, png.bytes.size()) >= kAroundData) {
        const std::size_t length = png_get_uint_32(bytes + at);
        if (length > png.bytes.size() - at - kAroundData) {
            break;
        }
        const uLong sum = crc32(0, bytes + at + 4, static_cast<uInt>(length + 4));
        png_save_uint_32(bytes + at + 8 + length, static_cast<png_uint_32>(sum));
        at += length + kAroundData;
    }
    return png;
}

} // namespace doccam::test
