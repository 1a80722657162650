#include "page/search/judgement.h"

#include <array>
#include <cmath>

namespace doccam::page {
namespace {

// Fitted by scripts/fit-judgement, so that in each of its drawn frames the sheet is surer than all
// else, and on a bare desk nothing is.
constexpr double kOffset = -25.92;
constexpr std::array kWeights{
    Weight{"support", &Traits::support, 1.14},
    Weight{"leastSupport", &Traits::leastSupport, 4.25},
    Weight{"beyond", &Traits::beyond, -2.80},
    Weight{"cornerSupport", &Traits::cornerSupport, 3.26},
    Weight{"leastConsistency", &Traits::leastConsistency, 1.57},
    Weight{"contrast", &Traits::contrast, 0.32},
    Weight{"leastContrast", &Traits::leastContrast, 1.43},
    Weight{"deepContrast", &Traits::deepContrast, 1.56},
    Weight{"evenness", &Traits::evenness, 2.31},
    Weight{"brighter", &Traits::brighter, 2.59},
    Weight{"sameness", &Traits::sameness, 1.26},
    Weight{"sameTint", &Traits::sameTint, 1.73},
    Weight{"background", &Traits::background, 2.51},
    Weight{"surroundings", &Traits::surroundings, 3.81},
    Weight{"smoothInside", &Traits::smoothInside, 4.40},
    Weight{"smoothOutside", &Traits::smoothOutside, -1.49},
    Weight{"continuing", &Traits::continuing, -7.99},
    Weight{"leak", &Traits::leak, -0.60},
    Weight{"worstLeak", &Traits::worstLeak, -2.83},
    Weight{"hole", &Traits::hole, -2.99},
    Weight{"rectangle", &Traits::rectangle, 1.08},
    Weight{"size", &Traits::size, 3.75},
    Weight{"whole", &Traits::whole, 3.73},
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
