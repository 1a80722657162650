#include "decode/jpeg_error_exit.h"

namespace doccam {

void exitOnJpegError(jpeg_common_struct* cinfo) {
    static thread_local char errStr[JMSG_LENGTH_MAX];
    cinfo->err->format_message(cinfo, errStr);
    std::puts(errStr);
    std::longjmp(reinterpret_cast<JpegErrors*>(cinfo->err)->escape, 1);
}

} // namespace doccam
