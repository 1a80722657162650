#include "page/search/judgement/judgement.h"

#include <array>
#include <cmath>

namespace doccam::page {
namespace {

// Fitted by scripts/fit-judgement, so that in each of its drawn frames the sheet is surer than all
// else, and on a bare desk nothing is.
constexpr double kOffset = -22.99;
constexpr std::array kWeights{
    Weight{"support", &Traits::support, 1.21},
    Weight{"leastSupport", &Traits::leastSupport, 3.50},
    Weight{"beyond", &Traits::beyond, -3.87},
    Weight{"cornerSupport", &Traits::cornerSupport, 2.59},
    Weight{"leastConsistency", &Traits::leastConsistency, 1.05},
    Weight{"contrast", &Traits::contrast, 0.70},
    Weight{"leastContrast", &Traits::leastContrast, 1.28},
    Weight{"deepContrast", &Traits::deepContrast, 1.79},
    Weight{"evenness", &Traits::evenness, 1.99},
    Weight{"brighter", &Traits::brighter, 1.77},
    Weight{"sameness", &Traits::sameness, 1.18},
    Weight{"sameTint", &Traits::sameTint, 1.22},
    Weight{"background", &Traits::background, 2.50},
    Weight{"surroundings", &Traits::surroundings, 3.71},
    Weight{"smoothInside", &Traits::smoothInside, 2.70},
    Weight{"smoothOutside", &Traits::smoothOutside, 0.58},
    Weight{"calm", &Traits::calm, 3.01},
    Weight{"continuing", &Traits::continuing, -7.34},
    Weight{"leak", &Traits::leak, -0.89},
    Weight{"worstLeak", &Traits::worstLeak, -2.94},
    Weight{"hole", &Traits::hole, -1.65},
    Weight{"rectangle", &Traits::rectangle, 0.60},
    Weight{"size", &Traits::size, 2.10},
    Weight{"whole", &Traits::whole, 3.08},
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
