#include "camera/calibrations.h"

#include "camera/usb_identity.h"
#include "documents/paper/paper_json.h"
#include "host/failure.h"
#include "host/own_output.h"
#include "host/state_folder.h"
#include "pages/spool/private_folder.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <stdexcept>
#include <utility>

namespace doccam::host {
namespace {

using Json = nlohmann::ordered_json;

constexpr const char* kFile = "calibration.json";
constexpr int kVersion = 1;
constexpr std::size_t kMaximumBytes = 1 << 20;

Calibration calibrationIn(const Json& value) {
    const Json& made = value.at("made");
    if (!made.is_number_integer()) {
        throw std::invalid_argument("no calibration");
    }
    return {value.at("camera").get<std::string>(), deskIn(value.at("desk")),
            made.get<std::int64_t>()};
}

[[noreturn]] void failToKeep(const std::filesystem::path& folder) {
    throw Failure(kFileFailed, "Calibrations cannot be kept in " + folder.string() + " (" +
                                   std::strerror(errno) +
                                   "); let XDG_CONFIG_HOME name another place.");
}

} // namespace

std::string calibrationText(const std::vector<Calibration>& calibrations) {
    Json list = Json::array();
    for (const Calibration& calibration : calibrations) {
        list.push_back({{"camera", calibration.camera},
                        {"desk", asJson(calibration.desk)},
                        {"made", calibration.made}});
    }
    const Json object{{"version", kVersion}, {"calibrations", std::move(list)}};
    return object.dump(1, ' ', false, Json::error_handler_t::replace) + "\n";
}

std::optional<std::vector<Calibration>> parseCalibrations(std::string_view text) {
    try {
        const Json object = Json::parse(text);
        if (object.at("version") != kVersion) {
            return std::nullopt;
        }
        std::vector<Calibration> calibrations;
        for (const Json& value : object.at("calibrations")) {
            calibrations.push_back(calibrationIn(value));
        }
        return calibrations;
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

// The folder may be a link, which files of settings often are.
CalibrationFile::CalibrationFile(std::filesystem::path folder)
  : folder_(std::move(folder)) {
    std::error_code error;
    if (const auto place = std::filesystem::canonical(folder_, error); !error) {
        folder_ = place;
    }
}

std::vector<Calibration> CalibrationFile::read() const {
    std::error_code ignored;
    if (!std::filesystem::exists(folder_ / kFile, ignored)) {
        return {};
    }
    errno = 0;
    const PrivateFolder folder(folder_.string());
    const auto text = folder.isOpen() ? folder.read(kFile, kMaximumBytes) : std::nullopt;
    if (!text && errno == ENOENT) {
        return {};
    }
    auto calibrations = text ? parseCalibrations(*text) : std::nullopt;
    if (!calibrations) {
        throw Failure(kFileFailed, "The calibrations in " + (folder_ / kFile).string() +
                                       " cannot be read; run doccam calibrate anew.");
    }
    return *std::move(calibrations);
}

void CalibrationFile::write(const std::vector<Calibration>& calibrations) const {
    std::error_code ignored;
    std::filesystem::create_directories(folder_, ignored);
    const PrivateFolder folder(folder_.string());
    const std::string text = calibrationText(calibrations);
    const std::vector<unsigned char> bytes(text.begin(), text.end());
    if (!folder.isOpen() || !folder.write(kFile, bytes)) {
        failToKeep(folder_);
    }
}

void CalibrationFile::keep(const Calibration& calibration) const {
    std::vector<Calibration> calibrations;
    try {
        calibrations = read();
    } catch (const Failure&) { // nobody can read what it had
    }
    std::erase_if(calibrations, [&](const Calibration& other) {
        return other.camera == calibration.camera && other.desk.frame == calibration.desk.frame;
    });
    calibrations.push_back(calibration);
    write(calibrations);
}

std::vector<Calibration> CalibrationFile::forget(const std::string& camera,
                                                 std::optional<cv::Size> frame) const {
    std::vector<Calibration> calibrations = read();
    const auto gone = std::stable_partition(
        calibrations.begin(), calibrations.end(), [&](const Calibration& calibration) {
            return (!camera.empty() && calibration.camera != camera) ||
                   (frame && calibration.desk.frame != *frame);
        });
    std::vector<Calibration> forgotten(gone, calibrations.end());
    if (!forgotten.empty()) {
        calibrations.erase(gone, calibrations.end());
        write(calibrations);
    }
    return forgotten;
}

std::vector<Desk> desksOf(int index) {
    std::vector<Desk> desks;
    try {
        const std::string camera = usbIdentityOf(index);
        for (const Calibration& calibration : CalibrationFile(configFolder()).read()) {
            if (calibration.camera == camera) {
                desks.push_back(calibration.desk);
            }
        }
    } catch (const Failure& failure) {
        complain(failure.what());
    }
    return desks;
}

} // namespace doccam::host
