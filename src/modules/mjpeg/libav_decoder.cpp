#include "modules/mjpeg/libav_decoder.h"

#include "base/pixel.h"
#include "modules/mjpeg/jpeg_header.h"
#include "modules/mjpeg/picture_scaler.h"

extern "C" {
#include <libavutil/imgutils.h>
}

#include <opencv2/core/utility.hpp>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <limits>
#include <optional>

namespace doccam {
namespace {

// Raises every message of this decoder above libav's highest log level. The process's log level and
// callback belong to the host.
constexpr int kSilence = 128;

constexpr int kBlock = 16; // pixels that libswscale writes at once
constexpr std::uintptr_t kAlignment = 64;
constexpr int kMaximumPixels = std::numeric_limits<int>::max() / kPixelBytes;

// The bytes of a packed picture; its rows in memory may be longer.
std::int64_t byteCount(std::int64_t width, std::int64_t height) {
    return width * height * kPixelBytes;
}

bool holds(const cv::Mat& image, std::int64_t bytes) {
    return image.data != nullptr && image.isContinuous() &&
           image.total() * image.elemSize() >= static_cast<std::size_t>(bytes);
}

bool isPossible(cv::Size size) {
    return av_image_check_size(static_cast<unsigned>(size.width),
                               static_cast<unsigned>(size.height), kSilence, nullptr) >= 0;
}

std::int64_t maximumPixels(FrameSize wanted) {
    constexpr int kMaximumReduction = 4;
    const std::int64_t area = std::min<std::int64_t>(wanted.area(), kMaximumPixels);
    return std::max(kMaximumReduction * area, kEnlargedSize.area());
}

// libavcodec's own check of the size prints on the terminal.
bool hasPossibleSize(const MjpegFrame& frame) {
    AnnouncedSizes sizes(frame.data);
    while (const auto size = sizes.next()) {
        if (!isPossible(*size) ||
            FrameSize{size->width, size->height}.area() > maximumPixels(frame.wanted)) {
            return false;
        }
    }
    return true;
}

// Refers to the data in place, so that libavcodec does not copy it.
CodecBuffer borrow(std::span<const unsigned char> data) {
    return CodecBuffer(av_buffer_create(
        const_cast<std::uint8_t*>(data.data()), data.size() + kCodecPadding,
        [](void* /*opaque*/, std::uint8_t* /*data*/) {}, nullptr, AV_BUFFER_FLAG_READONLY));
}

bool prepareConversion(MjpegDecoder& decoder, int width, int height) {
    // Rows of whole blocks are aligned, keep libswscale on its fast paths, and have room for its
    // last block.
    const std::int64_t stride = (std::int64_t{width} + kBlock - 1) / kBlock * kBlock * kPixelBytes;
    const std::int64_t bytes = stride * height + static_cast<std::int64_t>(kCodecPadding);
    if (stride > std::numeric_limits<int>::max()) {
        return false;
    }
    // Leaves one core to libavcodec, which may be decoding the next picture.
    const int threads = std::max(cv::getNumThreads() - 1, 1);
    CodecScaler scaler = makeScaler(*decoder.picture, width, height, threads);
    CodecMemory pixels(static_cast<std::uint8_t*>(av_malloc(static_cast<std::size_t>(bytes))));
    if (!scaler || !pixels) {
        return false;
    }
    decoder.converted->data[0] = pixels.get();
    decoder.converted->linesize[0] = static_cast<int>(stride);
    decoder.converted->width = width;
    decoder.converted->height = height;
    decoder.scaler = std::move(scaler);
    decoder.pixels = std::move(pixels);
    return true;
}

ScaledRows rowsOf(const AVFrame& converted) {
    return {converted.data[0], converted.linesize[0], converted.height};
}

// The rows of out, if the scaler may write into them directly: rows of whole blocks, aligned like
// the decoder's own memory. Otherwise none.
std::optional<ScaledRows> rowsInPlace(SwsContext& scaler, int width, int height, cv::Mat& out) {
    const bool aligned = reinterpret_cast<std::uintptr_t>(out.data) % kAlignment == 0;
    if (!aligned || width % kBlock != 0 || !changesColoursOnly(scaler, width, height)) {
        return std::nullopt;
    }
    return ScaledRows{out.data, width * kChannels, height};
}

void copyPacked(const AVFrame& converted, unsigned char* target, std::int64_t bytes) {
    const std::int64_t rowBytes = std::int64_t{converted.width} * kPixelBytes;
    const unsigned char* row = converted.data[0];
    for (; bytes > 0; bytes -= rowBytes, row += converted.linesize[0], target += rowBytes) {
        std::memcpy(target, row, static_cast<std::size_t>(std::min(bytes, rowBytes)));
    }
}

} // namespace

MjpegDecoder::~MjpegDecoder() {
    context.reset();
    picture.reset();
    converted.reset();
    scaler.reset();
    pixels.reset();
}

std::unique_ptr<MjpegDecoder> makeMjpegDecoder() {
    auto decoder = std::make_unique<MjpegDecoder>();
    decoder->codec = avcodec_find_decoder(AV_CODEC_ID_MJPEG);
    decoder->context.reset(avcodec_alloc_context3(decoder->codec));
    if (decoder->codec != nullptr && decoder->context) {
        decoder->context->log_level_offset = kSilence;
        avcodec_open2(decoder->context.get(), decoder->codec, nullptr);
    }
    decoder->picture.reset(av_frame_alloc());
    decoder->converted.reset(av_frame_alloc());
    return decoder;
}

Decoded decodePicture(MjpegDecoder& decoder, const MjpegFrame& frame, AVFrame& picture) {
    AVCodecContext* const context = decoder.context.get();
    const CodecPacket packet(av_packet_alloc());
    const CodecBuffer borrowed = frame.padded ? borrow(frame.data) : nullptr;
    if (context == nullptr || !decoder.converted || !packet || !hasPossibleSize(frame)) {
        return Decoded::kError;
    }
    packet->data = const_cast<std::uint8_t*>(frame.data.data());
    packet->size = static_cast<int>(frame.data.size());
    // Without a buffer reference libavcodec copies the data to add its padding.
    packet->buf = borrowed ? av_buffer_ref(borrowed.get()) : nullptr;
    const int sent = avcodec_send_packet(context, packet.get());
    const int received = sent < 0 ? sent : avcodec_receive_frame(context, &picture);
    av_packet_unref(packet.get());
    if (borrowed && av_buffer_get_ref_count(borrowed.get()) > 1) {
        avcodec_flush_buffers(context);
    }
    if (received >= 0) {
        return Decoded::kPicture;
    }
    return received == AVERROR(EAGAIN) ? Decoded::kNothing : Decoded::kError;
}

bool convertPicture(MjpegDecoder& decoder, int width, int height, cv::Mat& out) {
    if (width < 1 || height < 1 || std::int64_t{width} * height > kMaximumPixels) {
        return false;
    }
    const std::int64_t bytes = byteCount(width, height);
    if (!holds(out, bytes) || (!decoder.scaler && !prepareConversion(decoder, width, height))) {
        return false;
    }
    AVFrame& converted = *decoder.converted;
    if (byteCount(converted.width, converted.height) < bytes) {
        return false;
    }
    // The kept scaler reads as many pixels as the first picture had. A picture with fewer, or of
    // another format, as after a damaged first frame, gets its own scaler.
    CodecScaler own;
    if (!coversSource(*decoder.picture, *decoder.scaler)) {
        own = makeScaler(*decoder.picture, converted.width, converted.height, 1);
        if (!own) {
            return false;
        }
    }
    SwsContext& scaler = own ? *own : *decoder.scaler;
    if (const auto rows = rowsInPlace(scaler, width, height, out)) {
        scalePicture(scaler, *decoder.picture, *rows);
    } else {
        scalePicture(scaler, *decoder.picture, rowsOf(converted));
        copyPacked(converted, out.data, bytes);
    }
    return true;
}

} // namespace doccam
