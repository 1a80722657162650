#include "bed/test_bed.h"

#include <umockdev.h>

#include <stdexcept>

namespace doccam::virtualcam {

TestBed::TestBed() {
    if (umockdev_in_mock_environment() == 0) {
        throw std::runtime_error("libumockdev-preload.so.0 is not preloaded");
    }
    reset();
}

TestBed::~TestBed() {
    reset();
}

CameraId TestBed::add(const CameraDescription& description) {
    CameraDescription placed = description;
    const int place = nextPlace_++;
    if (placed.busInfo.empty()) {
        placed.busInfo = "usb-0000:00:14.0-" + std::to_string(place + 1);
    }
    const CameraId camera = addCamera(placed);
    tree_.add(placed, place, nodes(camera));
    places_[camera] = {place, placed, nodes(camera)};
    return camera;
}

void TestBed::remove(CameraId camera) {
    unplug(camera);
    removeCamera(camera);
    places_.erase(camera);
}

void TestBed::unplug(CameraId camera) {
    Place& place = places_.at(camera);
    if (place.nodes) {
        virtualcam::unplug(camera);
        tree_.remove(place.number, *place.nodes);
        place.nodes.reset();
    }
}

void TestBed::plug(CameraId camera) {
    Place& place = places_.at(camera);
    if (!place.nodes) {
        virtualcam::plug(camera);
        place.nodes = nodes(camera);
        tree_.add(place.description, place.number, *place.nodes, UdevTree::Order::kMetadataFirst);
    }
}

std::string TestBed::path(CameraId camera) const {
    const Place& place = places_.at(camera);
    return place.nodes ? "/dev/video" + std::to_string(place.nodes->capture) : std::string();
}

} // namespace doccam::virtualcam
