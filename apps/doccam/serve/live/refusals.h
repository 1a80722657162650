// Why the camera does not do as it is told.
#pragma once

#include <stdexcept>

namespace doccam::serve {

// The command is not possible now; the message says what the user can do.
struct NotNow : std::runtime_error {
    using std::runtime_error::runtime_error;
};

struct Unplugged : NotNow {
    Unplugged()
      : NotNow("the camera is unplugged; plug it in again") {}
};

struct NoSheet : NotNow {
    NoSheet()
      : NotNow("no sheet was found; lay one on a dark desk, or leave out the cropping") {}
};

// The camera refuses the command.
struct Refused : std::runtime_error {
    using std::runtime_error::runtime_error;
};

} // namespace doccam::serve
