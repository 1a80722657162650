// Small files that ask for much memory or time of whoever decodes them.
#pragma once

#include <string>
#include <vector>

namespace doccam::test {

// A file's content, and a name whose extension suits it.
struct Bomb {
    std::string name;
    std::string bytes;
};

// A JPEG without a picture: scans scans of one component, each ending at once.
struct JpegClaim {
    unsigned width = 0;
    unsigned height = 0;
    bool progressive = true;
    unsigned scans = 1;
    unsigned empty = 0;  // segments before the first scan that hold nothing
    bool hidden = false; // the scans after the first stand in what looks like segments to pass over
};

std::string claimingJpeg(const JpegClaim& claim);

// A PNG of zeros that deflate packs a thousandfold.
struct PngClaim {
    unsigned width = 0;
    unsigned height = 0;
    unsigned char depth = 8;
    unsigned char colour = 0; // as PNG numbers the types
    bool interlaced = false;
    unsigned texts = 0; // compressed ones of eight million letters before the pixels
};

std::string claimingPng(const PngClaim& claim);

// Little-endian TIFFs of zeros under deflate.
struct TiffClaim {
    unsigned width = 0;
    unsigned height = 0;
    unsigned rowsPerStrip = 0;
    unsigned bits = 8;
    unsigned samples = 1;
    unsigned tile = 0;  // side of tiles; 0: strips
    unsigned pages = 1; // all of them the same strips
};

std::string claimingTiff(const TiffClaim& claim);

// A lossless WebP of one colour.
std::string claimingWebp(unsigned width, unsigned height);

// A BMP that is packed by lengths of runs, without any run.
std::string claimingBmp(unsigned width, unsigned height);

// Each beyond what doccam takes, below a million bytes.
std::vector<Bomb> bombs();

// Of as many pixels as doccam takes, or just below another of its limits.
std::vector<Bomb> bombsWithinLimits();

} // namespace doccam::test
