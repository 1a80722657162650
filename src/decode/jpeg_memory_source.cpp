#include "decode/jpeg_memory_source.h"

namespace doccam {

void exitOnJpegError(jpeg_common_struct* cinfo) {
    static thread_local char errStr[JMSG_LENGTH_MAX];
    cinfo->err->format_message(cinfo, errStr);
    std::puts(errStr);
    std::longjmp(reinterpret_cast<JpegErrors*>(cinfo->err)->escape, 1);
}

int serveEndOfImage(jpeg_decompress_struct* cinfo) {
    static constexpr JOCTET kEndOfImage[4] = {0xFF, JPEG_EOI};
    WARNMS(cinfo, JWRN_JPEG_EOF);
    cinfo->src->next_input_byte = kEndOfImage;
    cinfo->src->bytes_in_buffer = 2;
    return TRUE;
}

void skipInput(jpeg_decompress_struct* cinfo, long count) {
    if (count < 1) {
        return;
    }
    jpeg_source_mgr& source = *cinfo->src;
    auto left = static_cast<std::size_t>(count);
    while (left > source.bytes_in_buffer) {
        left -= source.bytes_in_buffer;
        source.fill_input_buffer(cinfo);
    }
    source.next_input_byte += left;
    source.bytes_in_buffer -= left;
}

void readFromMemory(jpeg_decompress_struct* cinfo, std::span<const unsigned char> data,
                    const SourceCallbacks& callbacks) {
    if (data.data() == nullptr || data.empty()) {
        ERREXIT(cinfo, JERR_INPUT_EMPTY);
        return;
    }
    if (cinfo->src == nullptr) {
        cinfo->src = static_cast<jpeg_source_mgr*>(cinfo->mem->alloc_small(
            reinterpret_cast<j_common_ptr>(cinfo), JPOOL_PERMANENT, sizeof(jpeg_source_mgr)));
    }
    jpeg_source_mgr& source = *cinfo->src;
    source.init_source = callbacks.begin;
    source.fill_input_buffer = callbacks.fill;
    source.skip_input_data = callbacks.skip;
    source.resync_to_restart = jpeg_resync_to_restart;
    source.term_source = callbacks.end;
    source.bytes_in_buffer = data.size();
    source.next_input_byte = data.data();
}

} // namespace doccam
