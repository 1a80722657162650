// The text of a table of camera models.
#include "base/files/model_table.h"
#include "fuzz_target.h"

#include <string>

namespace {

using namespace doccam;

constexpr std::size_t kMaximumModels = 9;

std::string textOf(const std::vector<ModelId>& models) {
    std::string text;
    for (const ModelId& model : models) {
        text.append(model.vendor.data()).append(":").append(model.product.data()).append("\n");
    }
    return text;
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const test::Bytes text(data, data + size);
    const ParsedModels parsed =
        parseModels({reinterpret_cast<const char*>(text.data()), text.size()});
    const bool failed = !parsed.error.empty();
    test::require(failed == (parsed.errorLine > 0));
    test::require(parsed.models.size() <= (failed ? 0 : kMaximumModels));
    test::require(parseModels(textOf(parsed.models)).models == parsed.models);
    return 0;
}
