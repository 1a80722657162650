// Small files that cost their decoder much memory or time.
#pragma once

#include <string>
#include <vector>

namespace doccam::test {

// A file's content, and a name with a matching extension.
struct Bomb {
    std::string name;
    std::string bytes;
};

// A JPEG without picture data: scans of one component, each ending at once.
struct JpegClaim {
    unsigned width = 0;
    unsigned height = 0;
    bool progressive = true;
    unsigned scans = 1;
    unsigned empty = 0;  // segments before the first scan that hold nothing
    bool hidden = false; // hides the scans after the first in apparent segments to skip
};

std::string claimingJpeg(const JpegClaim& claim);

// A PNG of zeros, which deflate compresses a thousandfold.
struct PngClaim {
    unsigned width = 0;
    unsigned height = 0;
    unsigned char depth = 8;
    unsigned char colour = 0; // PNG's colour type
    bool interlaced = false;
    unsigned texts = 0; // compressed texts of eight million letters before the pixels
};

std::string claimingPng(const PngClaim& claim);

// Little-endian TIFFs of deflated zeros.
struct TiffClaim {
    unsigned width = 0;
    unsigned height = 0;
    unsigned rowsPerStrip = 0;
    unsigned bits = 8;
    unsigned samples = 1;
    unsigned tile = 0;  // tile side; 0: strips
    unsigned pages = 1; // all of the same strips
};

std::string claimingTiff(const TiffClaim& claim);

// A lossless WebP of one colour.
std::string claimingWebp(unsigned width, unsigned height);

// A run-length encoded BMP without any run.
std::string claimingBmp(unsigned width, unsigned height);

// Each exceeds doccam's limits, in less than a million bytes.
std::vector<Bomb> bombs();

// With as many pixels as doccam accepts, or just below another limit.
std::vector<Bomb> bombsWithinLimits();

} // namespace doccam::test
