// The file of supported models as the doctor reads and edits it.
#include "doctor/model_table.h"
#include "fuzz_target.h"

#include <string>

namespace {

using namespace doccam;
using namespace doccam::host;

constexpr std::size_t kMaximumRows = 9;
constexpr const char* kRow = "0c45:6366";

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using doccam::test::require;
    const std::string text(reinterpret_cast<const char*>(data), size);
    const ParsedModels rows = parseModels(text);
    require(rows.models.size() <= kMaximumRows);
    require(rows.error.empty() || rows.models.empty());
    if (!rows.error.empty()) {
        return 0;
    }
    if (const auto longer = withRow(text, kRow)) {
        const ParsedModels again = parseModels(*longer);
        require(again.models.size() == rows.models.size() + 1 &&
                textOf(again.models.back()) == kRow);
    }
    const std::size_t fewer = rows.models.empty() ? 0 : rows.models.size() - 1;
    require(parseModels(withoutLastRow(text)).models.size() == fewer);
    return 0;
}
