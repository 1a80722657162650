#include "camera/opening_codes.h"

#include <doccam/doccam.h>

namespace doccam::host {

std::string openingAdvice(int code) {
    const std::string number = " (code " + std::to_string(code) + ")";
    switch (code) {
    case DOCCAM_OPEN_NO_CAMERA:
        return "there is no such camera" + number + "; doccam list shows which there are.";
    case DOCCAM_OPEN_NO_SIZE:
        return "it names no such frame size" + number + "; doccam sizes shows which there are.";
    case DOCCAM_OPEN_NO_NODE:
        return "its device node cannot be opened" + number + "; doccam doctor says why.";
    case DOCCAM_OPEN_TRY_FORMAT:
    case DOCCAM_OPEN_SET_FORMAT:
    case DOCCAM_OPEN_GET_FORMAT:
        return "the driver refuses the format" + number +
               "; another program may be using the camera, doccam doctor says which.";
    case DOCCAM_OPEN_REQUEST_BUFFERS:
    case DOCCAM_OPEN_TOO_FEW_BUFFERS:
    case DOCCAM_OPEN_QUERY_BUFFER:
    case DOCCAM_OPEN_MAP_BUFFER:
    case DOCCAM_OPEN_QUEUE_BUFFER:
        return "the driver gives no buffers" + number +
               "; close other programs that use the camera, or choose a smaller --size.";
    case DOCCAM_OPEN_STREAM_ON:
        return "the stream does not start" + number +
               "; choose a smaller --size, or plug the camera into a socket of its own.";
    default:
        return "the library failed" + number + "; run the command again with --verbose.";
    }
}

} // namespace doccam::host
