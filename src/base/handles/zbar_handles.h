// Owning handles for zbar objects.
#pragma once

#include <zbar.h>

#include <memory>

namespace doccam {

struct ZbarRelease {
    void operator()(zbar::zbar_image_scanner_t* scanner) const {
        zbar::zbar_image_scanner_destroy(scanner);
    }

    // Detaches the borrowed pixels first.
    void operator()(zbar::zbar_image_t* picture) const {
        zbar::zbar_image_set_data(picture, nullptr, 0, nullptr);
        zbar::zbar_image_destroy(picture);
    }
};

using ZbarScanner = std::unique_ptr<zbar::zbar_image_scanner_t, ZbarRelease>;
using ZbarPicture = std::unique_ptr<zbar::zbar_image_t, ZbarRelease>;

} // namespace doccam
