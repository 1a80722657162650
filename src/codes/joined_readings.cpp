#include "codes/joined_readings.h"

#include "codes/corners.h"

#include <algorithm>

namespace doccam::codes {
namespace {

// Lines that must agree where nothing else confirms a code without a check digit.
constexpr int kLinesOfOneReader = 12;

bool hasPlace(const Sighting& seen) {
    return boundsOf(seen.corners).area() > 0;
}

// Whether the place of seen is better known than that of other: zbar's are ends of scan lines.
bool isBetterPlaced(const Sighting& seen, const Sighting& other) {
    return !hasPlace(other) || (hasPlace(seen) && other.reader == ReaderName::kZbar &&
                                seen.reader == ReaderName::kZxing);
}

// zbar reports linear codes of one content as one, wherever they are.
bool isAnywhere(const Sighting& seen) {
    return !hasPlace(seen) || (isLinear(seen.symbology) && seen.reader == ReaderName::kZbar);
}

} // namespace

JoinedReadings::Joined* JoinedReadings::sameAs(const Sighting& seen) {
    const auto same = std::find_if(joined_.begin(), joined_.end(), [&](const Joined& joined) {
        return joined.code.symbology == seen.symbology &&
               (joined.code.bytes == seen.bytes || joined.code.text == seen.text) &&
               (isAnywhere(seen) || isAnywhere(joined.code) ||
                areOfOneCode(joined.code.corners, seen.corners));
    });
    return same != joined_.end() ? &*same : nullptr;
}

void JoinedReadings::add(Joined& joined, const Sighting& seen) {
    if (isBetterPlaced(seen, joined.code)) {
        joined.code.corners = seen.corners;
        // zxing keeps the bytes of texts in other encodings.
        if (seen.reader == ReaderName::kZxing) {
            joined.code.bytes = seen.bytes;
            joined.code.text = seen.text;
            joined.code.reader = seen.reader;
        }
    }
    if (seen.addon.size() > joined.code.addon.size()) {
        joined.code.addon = seen.addon;
    }
    (seen.reader == ReaderName::kZbar ? joined.zbar : joined.zxing) = true;
    (seen.reader == ReaderName::kZbar ? joined.zbarLines : joined.zxingLines) += seen.lines;
}

void JoinedReadings::add(const Sightings& sightings) {
    for (const Sighting& seen : sightings) {
        Joined* joined = sameAs(seen);
        if (joined == nullptr) {
            joined = &joined_.emplace_back(Joined{.code = seen});
        }
        add(*joined, seen);
    }
}

bool JoinedReadings::isSure(const Joined& joined) {
    return !isUnchecked(joined.code.symbology) || (joined.zbar && joined.zxing) ||
           std::max(joined.zbarLines, joined.zxingLines) >= kLinesOfOneReader;
}

Sightings JoinedReadings::codes(SymbologySet wanted) const {
    Sightings codes;
    for (const Joined& joined : joined_) {
        if (contains(wanted, joined.code.symbology) && isSure(joined)) {
            codes.push_back(joined.code);
        }
    }
    std::stable_sort(codes.begin(), codes.end(), [](const Sighting& one, const Sighting& other) {
        return middleOf(one.corners).y < middleOf(other.corners).y;
    });
    return codes;
}

} // namespace doccam::codes
