// Prints the table of read rates.
#include "read_rates.h"

#include <cstdio>

int main() {
    using namespace doccam::test;
    std::fputs(heading().c_str(), stdout);
    for (const Kind& kind : kinds()) {
        std::fputs(toRow(measure(kind)).c_str(), stdout);
        std::fflush(stdout);
    }
}
