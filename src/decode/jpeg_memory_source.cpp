// A libjpeg source over a piece of memory; data that ends early is followed by an end marker.
#include "decode/jpeg_error_exit.h"

#include <doccam/doccam.hpp>

extern "C" {
#include <jerror.h>
}

void init_mem_source(jpeg_decompress_struct* /*cinfo*/) {}

void term_source(jpeg_decompress_struct* /*cinfo*/) {}

int fill_mem_input_buffer(jpeg_decompress_struct* cinfo) {
    static constexpr JOCTET mybuffer[4] = {0xFF, JPEG_EOI};
    WARNMS(cinfo, JWRN_JPEG_EOF);
    cinfo->src->next_input_byte = mybuffer;
    cinfo->src->bytes_in_buffer = 2;
    return TRUE;
}

void skip_input_data(jpeg_decompress_struct* cinfo, long count) {
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

void jpeg_mem_src_tj(jpeg_decompress_struct* cinfo, unsigned char* buffer, unsigned long size) {
    if (buffer == nullptr || size == 0) {
        ERREXIT(cinfo, JERR_INPUT_EMPTY);
        return;
    }
    if (cinfo->src == nullptr) {
        cinfo->src = static_cast<jpeg_source_mgr*>(cinfo->mem->alloc_small(
            reinterpret_cast<j_common_ptr>(cinfo), JPOOL_PERMANENT, sizeof(jpeg_source_mgr)));
    }
    jpeg_source_mgr& source = *cinfo->src;
    source.init_source = init_mem_source;
    source.fill_input_buffer = fill_mem_input_buffer;
    source.skip_input_data = skip_input_data;
    source.resync_to_restart = jpeg_resync_to_restart;
    source.term_source = term_source;
    source.bytes_in_buffer = size;
    source.next_input_byte = buffer;
}
