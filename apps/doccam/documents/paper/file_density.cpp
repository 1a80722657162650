#include "documents/paper/file_density.h"

#include <cmath>
#include <cstdint>
#include <string>

namespace doccam::host {
namespace {

constexpr double kCentimetresPerInch = 2.54;
constexpr double kMetresPerInch = 0.0254;

using Number = std::optional<std::uint64_t>;

std::optional<Density> inInches(Number across, Number down, double unitsPerInch) {
    if (!across || !down || *across == 0 || *down == 0) {
        return std::nullopt;
    }
    return Density{static_cast<double>(*across) * unitsPerInch,
                   static_cast<double>(*down) * unitsPerInch};
}

// Classic files; BigTIFF is for pictures beyond four gigabytes.
class TiffDensity {
  public:
    // That begins at offset start of the file.
    TiffDensity(FileBytes& file, std::uint64_t start)
      : file_(file)
      , start_(start)
      , little_(file.startsWith(start, "I")) {}

    std::optional<Density> read(int part) {
        Number picture = number(4, 4);
        for (int i = 0; i < part && picture.value_or(0) != 0; ++i) {
            picture = number(fieldAt(*picture, fieldCount(*picture)), 4);
        }
        if (picture.value_or(0) == 0 || fieldCount(*picture) > kMostFields) {
            return std::nullopt;
        }
        const Number unitField = field(*picture, kUnit);
        const std::uint64_t unit = unitField ? number(*unitField + 8, 2).value_or(0) : kInches;
        const auto across = ratio(*picture, kAcross);
        const auto down = ratio(*picture, kDown);
        if (!across || !down || (unit != kInches && unit != kCentimetres)) {
            return std::nullopt;
        }
        const double units = unit == kInches ? 1 : kCentimetresPerInch;
        return Density{*across * units, *down * units};
    }

  private:
    static constexpr std::uint64_t kMostFields = 512;
    static constexpr std::uint64_t kAcross = 282;
    static constexpr std::uint64_t kDown = 283;
    static constexpr std::uint64_t kUnit = 296;
    static constexpr std::uint64_t kInches = 2;
    static constexpr std::uint64_t kCentimetres = 3;

    Number number(std::uint64_t at, unsigned bytes) {
        return little_ ? file_.littleEndian(start_ + at, bytes)
                       : file_.bigEndian(start_ + at, bytes);
    }

    std::uint64_t fieldCount(std::uint64_t picture) { return number(picture, 2).value_or(0); }

    static std::uint64_t fieldAt(std::uint64_t picture, std::uint64_t index) {
        return picture + 2 + 12 * index;
    }

    Number field(std::uint64_t picture, std::uint64_t tag) {
        for (std::uint64_t i = 0; i < fieldCount(picture); ++i) {
            if (number(fieldAt(picture, i), 2) == tag) {
                return fieldAt(picture, i);
            }
        }
        return std::nullopt;
    }

    std::optional<double> ratio(std::uint64_t picture, std::uint64_t tag) {
        const Number found = field(picture, tag);
        const Number place = found ? number(*found + 8, 4) : Number();
        const Number above = place ? number(*place, 4) : Number();
        const Number below = place ? number(*place + 4, 4) : Number();
        return above && below && *above != 0 && *below != 0
                   ? std::optional(static_cast<double>(*above) / static_cast<double>(*below))
                   : std::nullopt;
    }

    FileBytes& file_;
    std::uint64_t start_;
    bool little_;
};

bool roundsTo(double exact, double whole) {
    return std::abs(exact - whole) <= 0.5;
}

// JFIF wants its header first of all segments.
std::optional<Density> inJpeg(FileBytes& file) {
    constexpr std::uint64_t kHeader = 2;
    const std::uint64_t unit = file.at(kHeader + 11).value_or(0);
    const Number length = file.bigEndian(kHeader + 2, 2);
    if (file.bigEndian(kHeader, 2) != 0xFFE0U || !length ||
        !file.startsWith(kHeader + 4, std::string("JFIF\0", 5)) || (unit != 1U && unit != 2U)) {
        return std::nullopt;
    }
    const auto whole = inInches(file.bigEndian(kHeader + 12, 2), file.bigEndian(kHeader + 14, 2),
                                unit == 1U ? 1 : kCentimetresPerInch);
    const std::uint64_t next = kHeader + 2 + *length;
    if (!whole || unit != 1U || file.bigEndian(next, 2) != 0xFFE1U ||
        !file.startsWith(next + 4, std::string("Exif\0\0", 6))) {
        return whole;
    }
    const auto exact = TiffDensity(file, next + 10).read(0);
    return exact && roundsTo(exact->across, whole->across) && roundsTo(exact->down, whole->down)
               ? exact
               : whole;
}

std::optional<Density> inPng(FileBytes& file) {
    constexpr int kMostChunks = 1000;
    std::uint64_t at = 8;
    for (int i = 0; i < kMostChunks && !file.startsWith(at + 4, "IDAT"); ++i) {
        const Number length = file.bigEndian(at, 4);
        if (!length) {
            return std::nullopt;
        }
        if (file.startsWith(at + 4, "pHYs")) {
            return file.at(at + 16) == 1 ? inInches(file.bigEndian(at + 8, 4),
                                                    file.bigEndian(at + 12, 4), kMetresPerInch)
                                         : std::nullopt;
        }
        at += 12 + *length;
    }
    return std::nullopt;
}

} // namespace

std::optional<Density> readDensity(FileBytes& file, int part) {
    if (file.startsWith(0, "\xFF\xD8\xFF")) {
        return inJpeg(file);
    }
    if (file.startsWith(0, "\x89PNG")) {
        return inPng(file);
    }
    const bool classic =
        file.startsWith(0, std::string("II*\0", 4)) || file.startsWith(0, std::string("MM\0*", 4));
    return classic ? TiffDensity(file, 0).read(part) : std::nullopt;
}

} // namespace doccam::host
