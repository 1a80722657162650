// A form as a JPEG.
#pragma once

#include "serve/live/form_picture.h"
#include "serve/live/picture_feed.h"

#include <memory>
#include <vector>

namespace doccam::serve {

// Encodes one picture after the other. One thread at a time.
class PictureEncoder {
  public:
    // Throws std::runtime_error when the codec cannot be made.
    PictureEncoder();

    // Throws std::runtime_error for a form without pixels and when the codec fails.
    Jpeg encode(const FormPicture& form);

  private:
    struct CloseCodec {
        void operator()(void* codec) const;
    };

    std::unique_ptr<void, CloseCodec> codec_;
    std::vector<unsigned char> room_; // for the longest JPEG
};

} // namespace doccam::serve
