#include "doctor/examination.h"

#include "doctor/model_table.h"
#include "doctor/node_holders.h"
#include "doctor/stream_trial.h"
#include "doctor/video_nodes.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <set>

namespace doccam::host {
namespace {

int tryOpening(const std::string& node) {
    const int descriptor = open(node.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0) {
        return errno;
    }
    close(descriptor);
    return 0;
}

void examine(Node& node, const Interrupt& interrupt) {
    node.openError =
        node.supported ? tryStream(node.path, node.trial, interrupt) : tryOpening(node.path);
    if (node.openError != 0 || node.trial.error != 0) {
        node.holders = holdersOf(node.path);
    }
}

} // namespace

Findings examine(const Interrupt& interrupt) {
    Findings findings;
    findings.table = tableInForce();
    auto nodes = videoNodes();
    findings.deviceManager = nodes.has_value();
    findings.nodes = std::move(nodes).value_or(std::vector<Node>());
    const auto rows = parseModelRows(findings.table.text).rows;
    std::set<std::string> seen;
    for (Node& node : findings.nodes) {
        const std::string model = modelOf(node);
        node.supported = std::find(rows.begin(), rows.end(), model) != rows.end();
        node.secondOfModel = node.supported && !seen.insert(model).second;
        examine(node, interrupt);
    }
    return findings;
}

} // namespace doccam::host
