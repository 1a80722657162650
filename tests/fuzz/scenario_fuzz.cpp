// The file that describes virtual cameras.
#include "fuzz_target.h"
#include "scenario.h"

#include <exception>
#include <string>

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace doccam::virtualcam;
    try {
        for (const CameraDescription& camera :
             parseScenario({reinterpret_cast<const char*>(data), size})) {
            for (const FormatDescription& format : camera.formats) {
                doccam::test::require(!format.frameRates.empty() &&
                                      (!format.sizes.empty() || format.range));
            }
        }
    } catch (const std::exception&) { // as documented for an invalid file
        return 0;
    }
    return 0;
}
