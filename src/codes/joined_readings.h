// One code of what the readers saw of it.
#pragma once

#include "codes/sighting.h"

namespace doccam::codes {

// Gathers sightings of one picture, and says which codes they are of.
class JoinedReadings {
  public:
    void add(const Sightings& sightings);

    // The codes of the set, from top to bottom. What stays doubtful is not among them.
    Sightings codes(SymbologySet wanted) const;

  private:
    struct Joined {
        Sighting code;
        int zbarLines = 0;
        int zxingLines = 0;
        bool zbar = false;
        bool zxing = false;
    };

    static void add(Joined& joined, const Sighting& seen);
    static bool isSure(const Joined& joined);
    Joined* sameAs(const Sighting& seen);

    std::vector<Joined> joined_;
};

} // namespace doccam::codes
