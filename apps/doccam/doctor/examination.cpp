#include "doctor/examination.h"

#include "base/files/file_placement.h"
#include "base/handles/udev_handles.h"
#include "base/unique_fd.h"
#include "host/texts.h"

#include <fcntl.h>
#include <grp.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <fstream>

namespace doccam::host {
namespace {

namespace fs = std::filesystem;

std::string textOrEmpty(const char* text) {
    return text != nullptr ? text : "";
}

std::string property(udev_device* device, const char* name) {
    return textOrEmpty(udev_device_get_property_value(device, name));
}

// Metadata nodes and codec nodes do not.
bool deliversPictures(udev_device* device) {
    return property(device, "ID_V4L_CAPABILITIES").find(":capture:") != std::string::npos;
}

std::string groupOf(const std::string& path) {
    const auto status = statusOf(path);
    const group* entry = status ? getgrgid(status->st_gid) : nullptr;
    return entry != nullptr ? entry->gr_name : "";
}

Node describe(udev_device* device) {
    Node node;
    node.path = textOrEmpty(udev_device_get_devnode(device));
    node.name = property(device, "ID_V4L_PRODUCT");
    node.vendor = property(device, "ID_VENDOR_ID");
    node.product = property(device, "ID_MODEL_ID");
    node.group = groupOf(node.path);
    return node;
}

// All nodes that deliver pictures; none if udev does not respond.
std::optional<std::vector<Node>> videoNodes() {
    const UdevContext context(udev_new());
    const UdevEnumerator enumerator(context ? udev_enumerate_new(context.get()) : nullptr);
    if (!enumerator || udev_enumerate_add_match_subsystem(enumerator.get(), "video4linux") < 0 ||
        udev_enumerate_scan_devices(enumerator.get()) < 0) {
        return std::nullopt;
    }
    std::vector<Node> nodes;
    for (udev_list_entry* entry = udev_enumerate_get_list_entry(enumerator.get()); entry != nullptr;
         entry = udev_list_entry_get_next(entry)) {
        const UdevDevice device(
            udev_device_new_from_syspath(context.get(), udev_list_entry_get_name(entry)));
        if (device && deliversPictures(device.get())) {
            nodes.push_back(describe(device.get()));
        }
    }
    return nodes;
}

bool holds(const fs::path& process, const std::string& node) {
    std::error_code error;
    for (fs::directory_iterator entry(process / "fd", error), end; !error && entry != end;
         entry.increment(error)) {
        std::error_code vanished;
        if (fs::read_symlink(entry->path(), vanished) == node) {
            return true;
        }
    }
    return false;
}

std::string commandOf(const fs::path& process) {
    std::ifstream file(process / "comm");
    std::string name;
    std::getline(file, name);
    return name.empty() ? "a program" : name;
}

int tryOpening(const std::string& node) {
    const UniqueFd opened(open(node.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC));
    return opened.isOpen() ? 0 : errno;
}

void examine(Node& node, const Interrupt& interrupt) {
    node.openError =
        node.supported ? tryStream(node.path, node.trial, interrupt) : tryOpening(node.path);
    if (node.openError != 0 || node.trial.error != 0) {
        node.holders = holdersOf(node.path);
    }
}

// Notes which nodes the library finds, the first of each model, and sorts them as it does: in the
// order of the table.
void arrange(std::vector<Node>& nodes, const std::vector<ModelId>& models) {
    int found = 0;
    for (const ModelId& model : models) {
        bool first = true;
        for (Node& node : nodes) {
            if (modelOf(node) != textOf(model) || node.supported) {
                continue;
            }
            node.supported = true;
            node.secondOfModel = !first;
            if (first) {
                node.index = found++;
            }
            first = false;
        }
    }
    const auto place = [&](const Node& node) { return node.index.value_or(found); };
    std::stable_sort(nodes.begin(), nodes.end(),
                     [&](const Node& a, const Node& b) { return place(a) < place(b); });
}

} // namespace

std::vector<Holder> holdersOf(const std::string& node, const std::string& processes) {
    std::vector<Holder> holders;
    std::error_code error;
    for (fs::directory_iterator entry(processes, error), end; !error && entry != end;
         entry.increment(error)) {
        const auto number = parseNumber<int>(entry->path().filename().string());
        if (number && *number != getpid() && holds(entry->path(), node)) {
            holders.push_back({*number, commandOf(entry->path())});
        }
    }
    std::sort(holders.begin(), holders.end(),
              [](const Holder& a, const Holder& b) { return a.process < b.process; });
    return holders;
}

Findings examine(const Interrupt& interrupt) {
    Findings findings;
    findings.table = tableInForce();
    auto nodes = videoNodes();
    findings.deviceManager = nodes.has_value();
    findings.nodes = std::move(nodes).value_or(std::vector<Node>());
    arrange(findings.nodes, parseModels(findings.table.text).models);
    for (Node& node : findings.nodes) {
        examine(node, interrupt);
    }
    return findings;
}

} // namespace doccam::host
