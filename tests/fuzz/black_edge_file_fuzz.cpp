// Whitening the dark margins of an image file in place.
#include "fuzz_target.h"
#include "input.h"
#include "scratch_file.h"

#include <doccam/doccam.hpp>

#include <array>

namespace {

constexpr std::array kNames = {"page.jpg", "page.png",  "page.bmp",
                               "page.tif", "page.webp", "page.ppm"};

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace doccam::test;
    Input input(data, size);
    const std::string name = kNames[input.byte() % kNames.size()];
    const auto content = input.takeRest();
    for (const auto clean : {FN_DeleteBlackEdgeEx, FN_DeleteBlackEdgeEx2}) {
        std::string path = writeScratchFile(name, content);
        allowImageErrors([&] { clean(path.data()); });
    }
    return 0;
}
