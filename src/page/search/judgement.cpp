#include "page/search/judgement.h"

#include <array>
#include <cmath>

namespace doccam::page {
namespace {

// Fitted by scripts/fit-judgement, so that in each of its drawn frames the sheet is surer than all
// else, and on a bare desk nothing is.
constexpr double kOffset = -33.07;
constexpr std::array kWeights{
    Weight{"support", &Traits::support, 1.19},
    Weight{"leastSupport", &Traits::leastSupport, 4.19},
    Weight{"beyond", &Traits::beyond, -4.31},
    Weight{"cornerSupport", &Traits::cornerSupport, 2.87},
    Weight{"leastConsistency", &Traits::leastConsistency, 1.30},
    Weight{"contrast", &Traits::contrast, 1.38},
    Weight{"leastContrast", &Traits::leastContrast, 1.94},
    Weight{"deepContrast", &Traits::deepContrast, 2.70},
    Weight{"evenness", &Traits::evenness, 3.02},
    Weight{"brighter", &Traits::brighter, 2.21},
    Weight{"sameness", &Traits::sameness, 1.85},
    Weight{"sameTint", &Traits::sameTint, 2.35},
    Weight{"background", &Traits::background, 2.51},
    Weight{"surroundings", &Traits::surroundings, 3.88},
    Weight{"smoothInside", &Traits::smoothInside, 6.22},
    Weight{"smoothOutside", &Traits::smoothOutside, -0.49},
    Weight{"leak", &Traits::leak, -1.17},
    Weight{"worstLeak", &Traits::worstLeak, -4.49},
    Weight{"hole", &Traits::hole, -2.00},
    Weight{"rectangle", &Traits::rectangle, 0.81},
    Weight{"size", &Traits::size, 4.56},
    Weight{"whole", &Traits::whole, 4.21},
};

} // namespace

std::span<const Weight> weights() {
    return kWeights;
}

double surenessOf(const Traits& traits) {
    double sum = kOffset;
    for (const Weight& weight : kWeights) {
        sum += weight.weight * traits.*weight.trait;
    }
    return sum;
}

double confidenceOf(double sureness) {
    return 1 / (1 + std::exp(-sureness));
}

} // namespace doccam::page
