// The viewers' picture: the form with the camera's picture at its place, passed from the streaming
// thread to the encoder.
#pragma once

#include "camera/cameras.h"

#include <opencv2/core.hpp>

#include <condition_variable>
#include <mutex>
#include <vector>

namespace doccam::serve {

// The grey level around a picture that does not fill the form, suitable for light and dark pages.
inline constexpr unsigned char kSurround = 0x30;

// Three bytes per pixel, red first, rows back to back.
struct FormPicture {
    host::Size size;
    cv::Rect place; // may extend beyond the form
    std::vector<unsigned char> pixels;
};

// Composes the picture at its place with the surround, in a form of the given size. Reuses the
// content of form, so that a picture at the same place costs only its copy.
void compose(FormPicture& form, host::Size size, const cv::Rect& place, unsigned char* picture);

// One thread gives, one takes. Giving only copies and never waits for the encoder; a picture that
// was not taken is replaced.
class PictureHandover {
  public:
    // The form of pictures given from now on; with a form without pixels none are accepted.
    void setForm(host::Size form);

    // Whether pictures are accepted at all; initially not.
    void setWanted(bool wanted);

    // picture has place.width x place.height pixels, red first.
    void give(unsigned char* picture, const cv::Rect& place);

    // Waits for a picture and swaps it with form, whose memory is reused. False if there is none
    // after close().
    bool take(FormPicture& form);

    void close();

  private:
    std::mutex mutex_;
    std::condition_variable given_;
    FormPicture newest_;
    host::Size form_;
    bool wanted_ = false;
    bool fresh_ = false;
    bool closed_ = false;
};

} // namespace doccam::serve
