#include "camera/opening_codes.h"

namespace doccam::host {

std::string openingAdvice(int code) {
    const std::string number = " (code " + std::to_string(code) + ")";
    switch (code) {
    case -1:
        return "there is no such camera" + number + "; doccam list shows which there are.";
    case -2:
        return "it names no such frame size" + number + "; doccam sizes shows which there are.";
    case -3:
        return "its device node cannot be opened" + number + "; doccam doctor says why.";
    case -5:
    case -6:
    case -7:
        return "the driver refuses the format" + number +
               "; another program may be using the camera, doccam doctor says which.";
    case -8:
    case -9:
    case -10:
    case -11:
    case -12:
        return "the driver gives no buffers" + number +
               "; close other programs that use the camera, or choose a smaller --size.";
    case -13:
        return "the stream does not start" + number +
               "; choose a smaller --size, or plug the camera into a socket of its own.";
    default:
        return "the library failed" + number + "; run the command again with --verbose.";
    }
}

} // namespace doccam::host
