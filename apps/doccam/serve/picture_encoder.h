// A preview picture as a JPEG of the whole form.
#pragma once

#include "serve/picture_feed.h"
#include "serve/picture_handover.h"

#include <memory>
#include <vector>

namespace doccam::serve {

// One level of grey around a picture that does not fill the form; it suits light and dark pages.
inline constexpr unsigned char kSurround = 0x30;

// Encodes one picture after the other. One thread at a time.
class PictureEncoder {
  public:
    // Throws std::runtime_error when the codec cannot be made.
    PictureEncoder();

    // The form as a JPEG: the picture at its place, the surround elsewhere. What lies outside the
    // form is cut off. Throws std::runtime_error for a form without pixels and when the codec
    // fails.
    Jpeg encode(const PreviewPicture& picture);

  private:
    struct CloseCodec {
        void operator()(void* codec) const;
    };

    const unsigned char* formPixels(const PreviewPicture& picture);

    std::unique_ptr<void, CloseCodec> codec_;
    std::vector<unsigned char> canvas_;
    std::vector<unsigned char> room_; // for the longest JPEG
};

} // namespace doccam::serve
