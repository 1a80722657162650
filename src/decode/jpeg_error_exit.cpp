#include "decode/jpeg_error_exit.h"

#include <doccam/doccam.hpp>

void MyErrorExit(jpeg_common_struct* cinfo) {
    static thread_local char errStr[JMSG_LENGTH_MAX];
    cinfo->err->format_message(cinfo, errStr);
    std::puts(errStr);
    std::longjmp(reinterpret_cast<doccam::JpegErrors*>(cinfo->err)->escape, 1);
}
