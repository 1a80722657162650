// From the streaming thread to the encoder: the newest preview picture.
#pragma once

#include "serve/live/form_picture.h"

#include <condition_variable>
#include <mutex>

namespace doccam::serve {

// One thread gives, one takes. The giver only copies: it never waits until a picture is encoded,
// and a picture that was not taken is replaced.
class PictureHandover {
  public:
    // The form in which pictures given from now on lie; one without pixels takes none.
    void setForm(FormSize form);

    // Whether pictures are taken at all; not at first.
    void setWanted(bool wanted);

    // picture holds place.width x place.height pixels, red first.
    void give(const unsigned char* picture, const Place& place);

    // Waits for a picture and swaps it with form, whose pixels are used again. False when none is
    // there after close().
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
