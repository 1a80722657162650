// doccam-virtualcam: runs a program with virtual cameras attached.
#include "base/files/harmless_text.h"
#include "launcher/options.h"
#include "launcher/session.h"

#include <unistd.h>

#include <cstdio>
#include <exception>

int main(int argc, char** argv) {
    using namespace doccam::virtualcam;
    const std::optional<Options> options = parseOptions(argc, argv);
    if (!options) {
        std::fputs("usage: doccam-virtualcam [--scenario FILE] [--photo FILE] [--interval MS] "
                   "[--sheet-frames N] -- PROGRAM [ARGUMENT...]\n",
                   stderr);
        return 2;
    }
    try {
        return runSession(*options);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "doccam-virtualcam: %s\n", doccam::harmlessText(error.what()).c_str());
        return 2;
    }
}
