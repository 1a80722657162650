#include "codes/joined_readings.h"

#include "codes/corners.h"

#include <algorithm>
#include <tuple>

namespace doccam::codes {
namespace {

bool hasPlace(const Sighting& seen) {
    return boundsOf(seen.corners).area() > 0;
}

// Whether the place of seen is better known than that of other.
bool isBetterPlaced(const Sighting& seen, const Sighting& other) {
    const auto rank = [](const Sighting& sighting) {
        return std::tuple(hasPlace(sighting), sighting.reader == ReaderName::kZxing,
                          sighting.aligned);
    };
    return rank(seen) > rank(other);
}

// zbar reports linear codes of one content as one, wherever they are.
bool isAnywhere(const Sighting& seen) {
    return !hasPlace(seen) ||
           (isLinear(seen.symbology) && seen.reader == ReaderName::kZbar && !seen.aligned);
}

void add(Joined& joined, const Sighting& seen) {
    Sighting& code = joined.code;
    if (isBetterPlaced(seen, code)) {
        code.corners = seen.corners;
        code.aligned = seen.aligned;
    }
    joined.zxingPlaced =
        joined.zxingPlaced || (seen.reader == ReaderName::kZxing && hasPlace(seen));
    // zxing keeps the bytes of texts in other encodings.
    if (seen.reader == ReaderName::kZxing && code.reader == ReaderName::kZbar) {
        code.bytes = seen.bytes;
        code.text = seen.text;
        code.reader = seen.reader;
    }
    if (seen.addon.size() > code.addon.size()) {
        code.addon = seen.addon;
    }
    const bool zbar = seen.reader == ReaderName::kZbar;
    (zbar ? joined.zbar : joined.zxing) = true;
    (zbar ? joined.zbarLines : joined.zxingLines) += seen.lines;
    joined.aligned = joined.aligned || seen.aligned;
    if (!isAnywhere(seen)) {
        joined.places.push_back(seen.corners);
    }
}

// Whether slices of the same bars were read before the one between them.
bool areSlices(const Joined& one, const Joined& other) {
    if (!isLinear(one.code.symbology) || one.code.symbology != other.code.symbology ||
        one.code.text != other.code.text) {
        return false;
    }
    return std::any_of(one.places.begin(), one.places.end(), [&](const Corners& place) {
        return std::any_of(other.places.begin(), other.places.end(), [&](const Corners& slice) {
            return doOverlap(place, slice) || areStacked(place, slice);
        });
    });
}

// How far a code is to be believed beside another one in its place.
auto rankOf(const Joined& joined) {
    return std::tuple(!isUnchecked(joined.code.symbology), joined.aligned,
                      joined.zbar && joined.zxing, joined.code.text.size(),
                      joined.zbarLines + joined.zxingLines);
}

// EAN-8 and UPC-E are short enough to be seen within other bars.
bool isShort(Symbology symbology) {
    return symbology == Symbology::kEan8 || symbology == Symbology::kUpcE;
}

// Whether a code that has no check digit was read in part. Slices of tilted bars are read anywhere
// around them.
bool isPartOf(const Joined& part, const Joined& whole) {
    return isUnchecked(part.code.symbology) && part.code.symbology == whole.code.symbology &&
           whole.code.text.size() > part.code.text.size() &&
           whole.code.text.find(part.code.text) != std::string::npos;
}

// Whether zbar may have joined the half of another code with something else.
bool hasHalfOf(const Joined& joined, const Joined& other) {
    constexpr std::size_t kHalf = 6; // digits
    const std::string& text = joined.code.text;
    const std::string& whole = other.code.text;
    if (!isRetail(joined.code.symbology) || !isRetail(other.code.symbology) || joined.zxing ||
        joined.aligned || text.size() < 2 * kHalf || whole.size() < 2 * kHalf || text == whole) {
        return false;
    }
    return text.ends_with(whole.substr(whole.size() - kHalf)) ||
           text.starts_with(whole.substr(0, whole.size() - kHalf));
}

} // namespace

bool isSure(const Joined& joined) {
    constexpr int kLines = 8;
    const bool agreed = (joined.zbar && joined.zxing) || joined.zbarLines >= kLines;
    if (joined.code.symbology == Symbology::kDataBarExpanded) {
        return joined.aligned;
    }
    if (isUnchecked(joined.code.symbology)) {
        return joined.aligned || (joined.alone && agreed);
    }
    // zbar joins halves of different codes of goods.
    const bool doubtful =
        isShort(joined.code.symbology) || (isRetail(joined.code.symbology) && !joined.zxing);
    return !doubtful || joined.aligned || agreed;
}

Joined* JoinedReadings::sameAs(const Sighting& seen) {
    const auto same = std::find_if(joined_.begin(), joined_.end(), [&](const Joined& joined) {
        return joined.code.symbology == seen.symbology &&
               (joined.code.bytes == seen.bytes || joined.code.text == seen.text) &&
               (isAnywhere(seen) || isAnywhere(joined.code) ||
                areOfOneCode(joined.code.corners, seen.corners) ||
                doOverlap(joined.code.corners, seen.corners) ||
                (isLinear(seen.symbology) && areStacked(joined.code.corners, seen.corners)));
    });
    return same != joined_.end() ? &*same : nullptr;
}

void JoinedReadings::add(const Sightings& sightings) {
    for (const Sighting& seen : sightings) {
        Joined* joined = sameAs(seen);
        if (joined == nullptr) {
            joined = &joined_.emplace_back(Joined{.code = seen});
        }
        codes::add(*joined, seen);
    }
}

bool JoinedReadings::isOutdone(const Joined& joined) const {
    return std::any_of(joined_.begin(), joined_.end(), [&](const Joined& other) {
        return &other != &joined && isSure(other) &&
               isLinear(other.code.symbology) == isLinear(joined.code.symbology) &&
               (isPartOf(joined, other) || hasHalfOf(joined, other) ||
                (areOfOneCode(other.code.corners, joined.code.corners) &&
                 rankOf(other) > rankOf(joined)));
    });
}

bool JoinedReadings::hasRead(const Corners& place) const {
    return std::any_of(joined_.begin(), joined_.end(), [&](const Joined& joined) {
        return isSure(joined) && contains(joined.code.corners, middleOf(place));
    });
}

Sightings JoinedReadings::codes(SymbologySet wanted) const {
    Sightings codes;
    std::vector<const Joined*> sure;
    for (const Joined& joined : joined_) {
        const bool known = std::any_of(sure.begin(), sure.end(), [&](const Joined* earlier) {
            return areSlices(*earlier, joined);
        });
        if (!known && isSure(joined) && !isOutdone(joined)) {
            sure.push_back(&joined);
        }
    }
    for (const Joined* joined : sure) {
        if (contains(wanted, joined->code.symbology)) {
            codes.push_back(joined->code);
        }
    }
    std::stable_sort(codes.begin(), codes.end(), [](const Sighting& one, const Sighting& other) {
        return middleOf(one.corners).y < middleOf(other.corners).y;
    });
    return codes;
}

} // namespace doccam::codes
