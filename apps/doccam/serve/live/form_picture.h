// What a viewer sees: the form, with the camera's picture at its place.
#pragma once

#include <vector>

namespace doccam::serve {

// One level of grey around a picture that does not fill the form; it suits light and dark pages.
inline constexpr unsigned char kSurround = 0x30;

struct FormSize {
    int width = 0, height = 0;

    bool operator==(const FormSize&) const = default;
};

// Where in the form the picture lies; it may reach beyond it.
struct Place {
    int x = 0, y = 0;
    int width = 0, height = 0;

    bool operator==(const Place&) const = default;
};

// Three bytes a pixel, red first, rows back to back.
struct FormPicture {
    FormSize size;
    Place place;
    std::vector<unsigned char> pixels;
};

// Puts the picture at its place in a form of the given size and the surround around it. What was in
// form is used again: a picture at the same place costs no more than its copy.
void compose(FormPicture& form, FormSize size, const Place& place, const unsigned char* picture);

} // namespace doccam::serve
