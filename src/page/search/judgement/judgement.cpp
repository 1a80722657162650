#include "page/search/judgement/judgement.h"

#include <array>
#include <cmath>

namespace doccam::page {
namespace {

// Fitted by scripts/fit-judgement, so that in each of its drawn frames the sheet is surer than all
// else, and on a bare desk nothing is.
constexpr double kOffset = -23.83;
constexpr std::array kWeights{
    Weight{"support", &Traits::support, 1.47},
    Weight{"leastSupport", &Traits::leastSupport, 4.05},
    Weight{"beyond", &Traits::beyond, -4.03},
    Weight{"cornerSupport", &Traits::cornerSupport, 2.52},
    Weight{"leastConsistency", &Traits::leastConsistency, 0.59},
    Weight{"contrast", &Traits::contrast, 1.04},
    Weight{"leastContrast", &Traits::leastContrast, 1.42},
    Weight{"deepContrast", &Traits::deepContrast, 1.74},
    Weight{"evenness", &Traits::evenness, 2.28},
    Weight{"brighter", &Traits::brighter, 1.54},
    Weight{"sameness", &Traits::sameness, 1.17},
    Weight{"sameTint", &Traits::sameTint, 1.16},
    Weight{"background", &Traits::background, 2.10},
    Weight{"surroundings", &Traits::surroundings, 3.92},
    Weight{"smoothInside", &Traits::smoothInside, 3.11},
    Weight{"smoothOutside", &Traits::smoothOutside, 0.03},
    Weight{"calm", &Traits::calm, 4.08},
    Weight{"continuing", &Traits::continuing, -7.28},
    Weight{"leak", &Traits::leak, -0.92},
    Weight{"worstLeak", &Traits::worstLeak, -2.92},
    Weight{"hole", &Traits::hole, -1.52},
    Weight{"rectangle", &Traits::rectangle, 0.68},
    Weight{"size", &Traits::size, 2.06},
    Weight{"whole", &Traits::whole, 3.17},
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
