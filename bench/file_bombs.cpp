// Measures what picture files of up to a megabyte cost each command that reads them:
//   file_bombs [PART...]    only files whose names contain one of the parts; default: all
// Fails when one takes more than twenty seconds of processor time or a gigabyte of memory.
#include "attacks/bombs.h"
#include "attacks/measured_run.h"

#include <algorithm>
#include <cstdio>
#include <sstream>

namespace {

using namespace doccam::test;

constexpr double kMaximumSeconds = 20;
constexpr long kMaximumMegabytes = 1000;
constexpr std::size_t kLargestFile = 1000000;

struct Worst {
    double processorSeconds = 0;
    double wallSeconds = 0;
    long megabytes = 0;
    bool held = true;
};

bool isWanted(const std::string& name, int count, char** parts) {
    return count == 1 || std::any_of(parts + 1, parts + count, [&](const char* part) {
               return name.find(part) != std::string::npos;
           });
}

// The command without the file's name.
std::string labelOf(const std::vector<std::string>& words, const std::string& name) {
    std::ostringstream label;
    for (const std::string& word : words) {
        label << word.substr(0, word.find(name)) << ' ';
    }
    return label.str();
}

void measure(const Bomb& bomb, Worst& worst) {
    for (const std::vector<std::string>& words : commandsOn(bomb.name)) {
        const MeasuredRun program;
        program.write(bomb.name, bomb.bytes);
        const Cost cost = program.run(words);
        const bool held =
            cost.processorSeconds <= kMaximumSeconds && cost.megabytes <= kMaximumMegabytes;
        std::printf("%-24s %7zu  %-20s %4d %8.2f %8.2f %8ld%s\n", bomb.name.c_str(),
                    bomb.bytes.size(), labelOf(words, bomb.name).c_str(), cost.status,
                    cost.processorSeconds, cost.wallSeconds, cost.megabytes,
                    held ? "" : "  TOO MUCH");
        std::fflush(stdout);
        worst.processorSeconds = std::max(worst.processorSeconds, cost.processorSeconds);
        worst.wallSeconds = std::max(worst.wallSeconds, cost.wallSeconds);
        worst.megabytes = std::max(worst.megabytes, cost.megabytes);
        worst.held = worst.held && held;
    }
}

} // namespace

int main(int count, char** parts) {
    std::printf("%-24s %7s  %-20s %4s %8s %8s %8s\n", "file", "bytes", "command", "exit", "cpu s",
                "wall s", "MB");
    Worst worst;
    for (const auto& list : {bombs(), bombsWithinLimits()}) {
        for (const Bomb& bomb : list) {
            if (bomb.bytes.size() > kLargestFile) {
                std::printf("%s has %zu bytes\n", bomb.name.c_str(), bomb.bytes.size());
                return 2;
            }
            if (isWanted(bomb.name, count, parts)) {
                measure(bomb, worst);
            }
        }
    }
    std::printf("maxima: %.1f s of processor time, %.1f s, %ld MB\n%s\n", worst.processorSeconds,
                worst.wallSeconds, worst.megabytes, worst.held ? "held" : "NOT HELD");
    return worst.held ? 0 : 1;
}
