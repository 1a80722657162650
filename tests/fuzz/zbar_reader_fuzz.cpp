// All codes that zbar sees in a small grey picture.
#include "code_pixels.h"
#include "codes/readers/reader.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace doccam;
    test::Input input(data, size);
    const codes::SymbologySet wanted =
        input.byte() % 2 == 0 ? codes::kEverySymbology : codes::kEveryMatrix;
    codes::readWithZbar(test::pictureOf(input), wanted);
    return 0;
}
