#include "barcode/threshold_ladder.h"

namespace doccam {
namespace {

constexpr int kStep = 20;
constexpr int kHighest = 239;

} // namespace

std::vector<int> thresholdLadder(int otsu) {
    std::vector<int> levels;
    for (int level = otsu; level <= kHighest; level += kStep) {
        levels.push_back(level);
    }
    return levels;
}

} // namespace doccam
