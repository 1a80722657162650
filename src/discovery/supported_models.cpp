// The table of camera models that the library looks for.
#include "base/files/harmless_text.h"
#include "base/files/model_table.h"
#include "state/library_state.h"
#include "supported_models_text.h"

#include <cstdio>

namespace doccam {
namespace {

// The table used for the life of the process; gpyVendor and gpyProduct point into it.
const std::vector<ModelId>& configuredModels() {
    static const std::vector<ModelId> models = [] {
        if (const std::string file = configuredModelFile(); !file.empty()) {
            ParsedModels read = readModels(file);
            if (read.error.empty()) {
                return read.models;
            }
            std::fprintf(stderr, "doccam: %s; using the built-in table\n",
                         harmlessText(read.error).c_str());
        }
        return parseModels(kBuiltInModels).models;
    }();
    return models;
}

[[maybe_unused]] const bool loaded = [] {
    const auto& models = configuredModels();
    for (std::size_t row = 0; row < models.size(); ++row) {
        state().discovery.gpyVendor[row] = models[row].vendor.data();
        state().discovery.gpyProduct[row] = models[row].product.data();
    }
    return true;
}();

} // namespace
} // namespace doccam
