// One code of what the readers saw of it.
#pragma once

#include "codes/sighting.h"

#include <vector>

namespace doccam::codes {

// What is known of a code.
struct Joined {
    Sighting code;
    std::vector<Corners> places = {}; // of all its readings
    int zbarLines = 0;
    int zxingLines = 0;
    bool zbar = false;
    bool zxing = false;
    bool aligned = false;     // read straight across, from paper to paper
    bool zxingPlaced = false; // zbar knows of linear codes where its scan lines crossed parts
    bool alone = false;       // there is paper left and right of the bars
};

// Whether the readings of a code suffice to report it.
bool isSure(const Joined& joined);

// Gathers sightings of one picture, and says which codes they are of.
class JoinedReadings {
  public:
    void add(const Sightings& sightings);

    // All of them, doubtful ones, too.
    std::vector<Joined>& all() { return joined_; }

    // Whether a sure code is in the middle of the place.
    bool hasRead(const Corners& place) const;

    // The sure ones of the set, from top to bottom. Of several that lie over each other, the
    // surest.
    Sightings codes(SymbologySet wanted) const;

  private:
    Joined* sameAs(const Sighting& seen);
    bool isOutdone(const Joined& joined) const;

    std::vector<Joined> joined_;
};

} // namespace doccam::codes
