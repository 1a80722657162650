// The desks that cameras have been calibrated on, kept in a file.
#pragma once

#include "documents/paper/desk.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace doccam::host {

struct Calibration {
    std::string camera; // as usbIdentityOf() names it
    Desk desk;
    std::int64_t made = 0; // in seconds since 1970

    bool operator==(const Calibration&) const = default;
};

std::string calibrationText(const std::vector<Calibration>& calibrations);

// None for damaged text, and for anything that calibrationText() would not have written.
std::optional<std::vector<Calibration>> parseCalibrations(std::string_view text);

// Processes that change the file at the same time wait for each other no longer than it takes to
// replace it: the last one to do so wins.
class CalibrationFile {
  public:
    explicit CalibrationFile(std::filesystem::path folder);

    // In the order in which they were made; none without a file. Throws Failure if it is damaged
    // or cannot be read.
    std::vector<Calibration> read() const;

    // Adds one in the place of that of the same camera and frame size; a damaged file is replaced.
    // Throws Failure.
    void keep(const Calibration& calibration) const;

    // Removes those of a camera, of one frame size if that is given; an empty name is that of all
    // cameras. Returns those removed. Throws Failure.
    std::vector<Calibration> forget(const std::string& camera, std::optional<cv::Size> frame) const;

  private:
    void write(const std::vector<Calibration>& calibrations) const;

    std::filesystem::path folder_;
};

// The desks that camera index has been calibrated on. Complains of a damaged file, as a page
// without its true size is better than none.
std::vector<Desk> desksOf(int index);

} // namespace doccam::host
