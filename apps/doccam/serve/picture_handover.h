// From the streaming thread to the encoder: the newest preview picture.
#pragma once

#include <condition_variable>
#include <mutex>
#include <vector>

namespace doccam::serve {

// A preview picture, three bytes a pixel, red first, and where in the form it lies.
struct PreviewPicture {
    std::vector<unsigned char> pixels;
    int width = 0, height = 0;
    int startX = 0, startY = 0;
    int formWidth = 0, formHeight = 0;
};

// One thread gives, one takes. The giver only copies: it never waits until a picture is encoded,
// and a picture that was not taken is replaced.
class PictureHandover {
  public:
    // The form in which pictures given from now on lie; one without pixels takes none.
    void setForm(int width, int height);

    // Whether pictures are taken at all; not at first.
    void setWanted(bool wanted);

    void give(const unsigned char* pixels, int width, int height, int startX, int startY);

    // Waits for a picture and swaps it into picture, whose pixels are used again. False after
    // close().
    bool take(PreviewPicture& picture);

    void close();

  private:
    std::mutex mutex_;
    std::condition_variable given_;
    PreviewPicture newest_;
    int formWidth_ = 0, formHeight_ = 0;
    bool wanted_ = false;
    bool fresh_ = false;
    bool closed_ = false;
};

} // namespace doccam::serve
