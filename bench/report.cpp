#include "report.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <numeric>

namespace doccam::bench {
namespace {

nlohmann::json jsonOf(const Result& result) {
    auto places = nlohmann::json::array();
    for (const Allocation& allocation : result.allocations) {
        places.push_back({{"module", allocation.module},
                          {"place", allocation.place},
                          {"times", allocation.times},
                          {"bytes", allocation.bytes},
                          {"allowed", isAllowed(allocation)}});
    }
    return {{"row", result.row},
            {"against", result.peerName},
            {"unit", result.unit},
            {"ours", result.ours},
            {"peer", result.peer},
            {"ratio", result.ratio()},
            {"bound", result.bound},
            {"passed", result.passed()},
            {"failure", result.failure},
            {"allocatedBytesPerFrame", result.allocatedBytes()},
            {"unwantedAllocationsPerFrame", result.unwantedAllocations()},
            {"allocations", places}};
}

} // namespace

std::size_t Result::allocatedBytes() const {
    return std::accumulate(allocations.begin(), allocations.end(), std::size_t{0},
                           [](std::size_t sum, const auto& one) { return sum + one.bytes; });
}

std::size_t Result::unwantedAllocations() const {
    return std::accumulate(
        allocations.begin(), allocations.end(), std::size_t{0},
        [](std::size_t sum, const auto& one) { return sum + (isAllowed(one) ? 0 : one.times); });
}

void printTable(const std::vector<Result>& results) {
    std::printf("\n%-34s %-38s %10s %10s      %6s %6s %16s\n", "row", "against", "ours", "peer",
                "ratio", "bound", "bytes allocated");
    for (const Result& result : results) {
        if (!result.failure.empty()) {
            std::printf("%-34s FAILED: %s\n", result.row.c_str(), result.failure.c_str());
            continue;
        }
        std::printf("%-34s %-38s %10.2f %10.2f %-4s %6.2f %6.2f %16zu%s\n", result.row.c_str(),
                    result.peerName.c_str(), result.ours, result.peer, result.unit.c_str(),
                    result.ratio(), result.bound, result.allocatedBytes(),
                    result.passed() ? "" : "  OVER ITS BOUND");
    }
}

void writeJson(const std::vector<Result>& results, const std::string& path) {
    auto all = nlohmann::json::array();
    std::transform(results.begin(), results.end(), std::back_inserter(all), jsonOf);
    std::ofstream(path) << all.dump(2) << '\n';
}

} // namespace doccam::bench
