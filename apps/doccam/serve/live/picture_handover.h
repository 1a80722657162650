// Passes the newest preview picture from the streaming thread to the encoder.
#pragma once

#include "serve/live/form_picture.h"

#include <condition_variable>
#include <mutex>

namespace doccam::serve {

// One thread gives, one takes. Giving only copies and never waits for the encoder; a picture that
// was not taken is replaced.
class PictureHandover {
  public:
    // The form of pictures given from now on; with a form without pixels none are accepted.
    void setForm(FormSize form);

    // Whether pictures are accepted at all; initially not.
    void setWanted(bool wanted);

    // picture has place.width x place.height pixels, red first.
    void give(const unsigned char* picture, const Place& place);

    // Waits for a picture and swaps it with form, whose memory is reused. False if there is none
    // after close().
    bool take(FormPicture& form);

    void close();

  private:
    std::mutex mutex_;
    std::condition_variable given_;
    FormPicture newest_;
    FormSize form_;
    bool wanted_ = false;
    bool fresh_ = false;
    bool closed_ = false;
};

} // namespace doccam::serve
