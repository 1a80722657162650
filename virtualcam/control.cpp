#include "control.h"

#include "preload/lookup.h"
#include "preload/registry.h"
#include "preload/sleeps.h"

namespace doccam::virtualcam {

namespace {

Registry& registry() {
    return Registry::instance();
}

} // namespace

void reset() {
    registry().clear();
    clearRecordedSleeps();
    changeSleepScale(1.0);
}

CameraId addCamera(const CameraDescription& description) {
    return registry().add(description);
}

void removeCamera(CameraId camera) {
    registry().remove(camera);
}

Nodes nodes(CameraId camera) {
    return registry().camera(camera).nodes;
}

std::string busInfo(CameraId camera) {
    return registry().camera(camera).identity.busInfo;
}

void unplug(CameraId camera) {
    registry().unplug(camera);
}

void plug(CameraId camera) {
    registry().plug(camera);
}

void addFault(CameraId camera, const Fault& fault) {
    registry().camera(camera).device->addFault(fault);
}

void clearFaults(CameraId camera) {
    registry().camera(camera).device->clearFaults();
}

void stall(CameraId camera) {
    registry().camera(camera).device->stall();
}

void resume(CameraId camera) {
    registry().camera(camera).device->resume();
}

void setInterval(CameraId camera, int milliseconds) {
    registry().camera(camera).device->setInterval(milliseconds);
}

SceneSettings scene(CameraId camera) {
    return registry().camera(camera).source->scene();
}

void setScene(CameraId camera, const SceneSettings& settings) {
    registry().camera(camera).source->setScene(settings);
}

void moveSheet(CameraId camera, double right, double down, double turn) {
    SceneSettings settings = scene(camera);
    settings.centreX += right;
    settings.centreY += down;
    settings.angle += turn;
    setScene(camera, settings);
}

std::optional<int> controlValue(CameraId camera, std::uint32_t id) {
    return registry().camera(camera).device->control(id);
}

int setControl(CameraId camera, std::uint32_t id, int value) {
    return registry().camera(camera).device->setControl(id, value);
}

bool streaming(CameraId camera) {
    return registry().camera(camera).device->streaming();
}

bool waitedFor(CameraId camera) {
    return registry().camera(camera).device->waitedFor();
}

std::optional<DeliveredFrame> lastFrame(CameraId camera) {
    return registry().camera(camera).device->lastFrame();
}

FrameCount frameCount(CameraId camera) {
    return registry().camera(camera).device->frameCount();
}

std::vector<Call> calls() {
    return registry().log().calls();
}

int callCount(const std::string& request) {
    return registry().log().count(request);
}

void clearCalls() {
    registry().log().clear();
}

int openHandles() {
    return registry().openHandles();
}

int liveMappings() {
    return virtualMappings.size();
}

void setSleepScale(double scale) {
    changeSleepScale(scale);
}

std::vector<Sleep> sleeps() {
    return recordedSleeps();
}

void clearSleeps() {
    clearRecordedSleeps();
}

} // namespace doccam::virtualcam
