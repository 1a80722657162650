// Encoding a form as a JPEG.
#pragma once

#include "serve/live/picture_feed.h"
#include "serve/live/picture_handover.h"

#include <memory>
#include <vector>

namespace doccam::serve {

// Encodes one picture after another. One thread at a time.
class PictureEncoder {
  public:
    // Throws std::runtime_error if the codec cannot be created.
    PictureEncoder();

    // Throws std::runtime_error for a form without pixels and if the codec fails.
    Jpeg encode(const FormPicture& form);

  private:
    struct CloseCodec {
        void operator()(void* codec) const;
    };

    std::unique_ptr<void, CloseCodec> codec_;
    std::vector<unsigned char> room_; // large enough for the longest JPEG
};

} // namespace doccam::serve
