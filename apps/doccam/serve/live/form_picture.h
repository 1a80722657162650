// The viewers' picture: the form with the camera's picture at its place.
#pragma once

#include <vector>

namespace doccam::serve {

// The grey level around a picture that does not fill the form, suitable for light and dark pages.
inline constexpr unsigned char kSurround = 0x30;

struct FormSize {
    int width = 0, height = 0;

    bool operator==(const FormSize&) const = default;
};

// The picture's position in the form; it may extend beyond the form.
struct Place {
    int x = 0, y = 0;
    int width = 0, height = 0;

    bool operator==(const Place&) const = default;
};

// Three bytes per pixel, red first, rows back to back.
struct FormPicture {
    FormSize size;
    Place place;
    std::vector<unsigned char> pixels;
};

// Composes the picture at its place with the surround, in a form of the given size. Reuses the
// content of form, so that a picture at the same place costs only its copy.
void compose(FormPicture& form, FormSize size, const Place& place, const unsigned char* picture);

} // namespace doccam::serve
