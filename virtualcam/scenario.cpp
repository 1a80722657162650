#include "scenario.h"

#include "scenario/json_fields.h"
#include "scenario/scene_fields.h"

#include <cmath>
#include <fstream>
#include <limits>
#include <map>
#include <sstream>
#include <stdexcept>

namespace doccam::virtualcam {

namespace {

// Json converts a number to an int whether or not it fits.
void refuseHugeNumbers(const Json& document) {
    std::vector<const Json*> unchecked{&document};
    while (!unchecked.empty()) {
        const Json& value = *unchecked.back();
        unchecked.pop_back();
        if (value.is_number() &&
            !(std::abs(value.get<double>()) <= std::numeric_limits<int>::max())) {
            throw std::runtime_error("impossible number " + value.dump());
        }
        if (value.is_structured()) {
            for (const Json& element : value) {
                unchecked.push_back(&element);
            }
        }
    }
}

Size readSize(const Json& value) {
    const Size size{value.at(0).get<int>(), value.at(1).get<int>()};
    if (size.width < 2 || size.height < 2 || size.width % 2 != 0) {
        throw std::runtime_error("impossible size " + value.dump());
    }
    return size;
}

std::uint32_t readFourcc(const std::string& text) {
    char code[5] = "    ";
    if (text.empty() || text.size() > 4) {
        throw std::runtime_error("impossible fourcc \"" + text + "\"");
    }
    text.copy(code, text.size());
    return fourcc(code);
}

FormatDescription readFormat(const Json& object) {
    refuseUnknownFields(object, {"fourcc", "sizes", "stepwise", "rates"});
    FormatDescription format;
    format.pixelFormat = readFourcc(object.at("fourcc").get<std::string>());
    for (const Json& size : object.value("sizes", Json::array())) {
        format.sizes.push_back(readSize(size));
    }
    if (object.contains("stepwise")) {
        const Json& range = object.at("stepwise");
        format.range = SizeRange{readSize(range.at("from")), readSize(range.at("to")),
                                 readSize(range.at("step"))};
    }
    read(object, "rates", format.frameRates);
    if ((format.sizes.empty() && !format.range) || format.frameRates.empty()) {
        throw std::runtime_error("a format needs sizes or stepwise, and rates");
    }
    return format;
}

int readErrno(const Json& value) {
    static const std::map<std::string, int> kErrors{
        {"EIO", EIO},       {"EINVAL", EINVAL}, {"ENODEV", ENODEV}, {"EBUSY", EBUSY},
        {"ENOMEM", ENOMEM}, {"EAGAIN", EAGAIN}, {"EINTR", EINTR},   {"ERANGE", ERANGE},
        {"EACCES", EACCES}, {"ENOTTY", ENOTTY}, {"ENOENT", ENOENT}, {"EMFILE", EMFILE},
        {"ENOSPC", ENOSPC}, {"EPROTO", EPROTO}, {"EPERM", EPERM},   {"ETIMEDOUT", ETIMEDOUT}};
    if (value.is_number_integer()) {
        return value.get<int>();
    }
    const auto found = kErrors.find(value.get<std::string>());
    if (found == kErrors.end()) {
        throw std::runtime_error("unknown errno " + value.dump());
    }
    return found->second;
}

FaultKind readFaultKind(const std::string& name) {
    static const std::map<std::string, FaultKind> kKinds{
        {"call", FaultKind::kCall},       {"grant", FaultKind::kGrant},
        {"index", FaultKind::kIndex},     {"bufferBytes", FaultKind::kBufferBytes},
        {"corrupt", FaultKind::kCorrupt}, {"truncated", FaultKind::kTruncated},
        {"empty", FaultKind::kEmpty},     {"wrongSize", FaultKind::kWrongSize},
        {"stall", FaultKind::kStall},     {"unplug", FaultKind::kUnplug}};
    const auto found = kKinds.find(name);
    if (found == kKinds.end()) {
        throw std::runtime_error("unknown fault \"" + name + "\"");
    }
    return found->second;
}

Fault readFault(const Json& object) {
    refuseUnknownFields(object, {"fault", "request", "at", "errno", "value", "onwards"});
    Fault fault;
    fault.kind = readFaultKind(object.at("fault").get<std::string>());
    read(object, "request", fault.request);
    read(object, "at", fault.at);
    read(object, "value", fault.value);
    read(object, "onwards", fault.onwards);
    if (object.contains("errno")) {
        fault.error = readErrno(object.at("errno"));
    }
    if (fault.kind == FaultKind::kCall && fault.request.empty()) {
        throw std::runtime_error("a call fault needs a request");
    }
    return fault;
}

// A control in the list replaces the default one of the same name; "remove" removes it.
void readControl(const Json& object, std::vector<ControlDescription>& controls) {
    refuseUnknownFields(object, {"name", "minimum", "maximum", "step", "default", "remove"});
    const auto name = object.at("name").get<std::string>();
    const auto found = std::find_if(controls.begin(), controls.end(),
                                    [&](const auto& control) { return control.name == name; });
    if (found == controls.end()) {
        throw std::runtime_error("unknown control \"" + name + "\"");
    }
    if (object.value("remove", false)) {
        controls.erase(found);
        return;
    }
    read(object, "minimum", found->minimum);
    read(object, "maximum", found->maximum);
    read(object, "step", found->step);
    read(object, "default", found->defaultValue);
}

CameraDescription readCamera(const Json& object) {
    refuseUnknownFields(object, {"vendor", "product", "card", "busInfo", "formats", "intervalMs",
                                 "picture", "scene", "controls", "strictControls", "faults"});
    CameraDescription camera = documentCamera();
    read(object, "vendor", camera.vendor);
    read(object, "product", camera.product);
    read(object, "card", camera.card);
    read(object, "busInfo", camera.busInfo);
    read(object, "picture", camera.picture);
    read(object, "strictControls", camera.strictControls);
    if (object.contains("intervalMs") && !object.at("intervalMs").is_null()) {
        camera.intervalMs = object.at("intervalMs").get<int>();
    }
    if (object.contains("formats")) {
        camera.formats.clear();
        for (const Json& format : object.at("formats")) {
            camera.formats.push_back(readFormat(format));
        }
    }
    if (object.contains("scene")) {
        camera.scene = readScene(object.at("scene"));
    }
    for (const Json& control : object.value("controls", Json::array())) {
        readControl(control, camera.controls);
    }
    for (const Json& fault : object.value("faults", Json::array())) {
        camera.faults.push_back(readFault(fault));
    }
    return camera;
}

} // namespace

std::vector<CameraDescription> parseScenario(const std::string& text) {
    const Json document = Json::parse(text);
    refuseHugeNumbers(document);
    refuseUnknownFields(document, {"cameras"});
    std::vector<CameraDescription> cameras;
    for (const Json& camera : document.at("cameras")) {
        cameras.push_back(readCamera(camera));
    }
    return cameras;
}

std::vector<CameraDescription> readScenario(const std::string& path) {
    std::ifstream file(path);
    std::ostringstream text;
    if (!file || !(text << file.rdbuf())) {
        throw std::runtime_error(path + ": cannot be read");
    }
    try {
        return parseScenario(text.str());
    } catch (const std::exception& error) {
        throw std::runtime_error(path + ": " + error.what());
    }
}

std::string defaultBusInfo(int position) {
    return "usb-0000:00:14.0-" + std::to_string(position + 1);
}

} // namespace doccam::virtualcam
