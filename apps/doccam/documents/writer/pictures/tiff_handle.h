// libtiff's handle.
#pragma once

#include <tiffio.h>

#include <memory>

namespace doccam::host {

struct TiffCloser {
    void operator()(TIFF* tiff) const { TIFFClose(tiff); }
};

using TiffHandle = std::unique_ptr<TIFF, TiffCloser>;

} // namespace doccam::host
