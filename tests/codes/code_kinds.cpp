#include "code_kinds.h"

namespace doccam::test {

const std::vector<CodeKind>& codeKinds() {
    static const std::vector<CodeKind> all = [] {
        std::vector<CodeKind> kinds = matrixCodeKinds();
        const std::vector<CodeKind> linear = linearCodeKinds();
        kinds.insert(kinds.end(), linear.begin(), linear.end());
        return kinds;
    }();
    return all;
}

} // namespace doccam::test
