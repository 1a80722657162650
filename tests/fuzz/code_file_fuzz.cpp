// Reading a code from an image file.
#include "fuzz_target.h"
#include "input.h"
#include "scratch_file.h"

#include <doccam/doccam.hpp>

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace doccam::test;
    Input input(data, size);
    const int mode = static_cast<int>(input.byte() % 2);
    const std::string path = writeScratchFile("code", input.takeRest());
    RecogBarQrCodeFromFile(path.c_str(), mode);
    return 0;
}
