#include "doctor/advice.h"

#include <gmock/gmock.h>

#include <cerrno>

namespace {

using namespace doccam::host;
using testing::AllOf;
using testing::ElementsAre;
using testing::Field;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

Node goodNode() {
    Node node;
    node.path = "/dev/video0";
    node.name = "Doc Cam";
    node.vendor = "0c45";
    node.product = "6366";
    node.group = "video";
    node.supported = true;
    node.trial = {true, "mjpeg 640x480", "", 0, 6, 0, 0};
    return node;
}

std::vector<Advice> adviceOnNode(const Node& node) {
    Findings findings;
    findings.table.addTo = "/etc/doccam/supported_models.txt";
    findings.nodes = {node};
    return adviceOn(findings);
}

auto says(Level level, const std::string& what, const std::string& remedy) {
    return AllOf(Field(&Advice::level, level), Field(&Advice::what, HasSubstr(what)),
                 Field(&Advice::remedy, HasSubstr(remedy)));
}

TEST(Advice, NamesACameraThatWorks) {
    const auto advice = adviceOnNode(goodNode());
    ASSERT_THAT(advice, ElementsAre(says(Level::kWell, "6 sound frames of mjpeg 640x480", "")));
    EXPECT_EQ(advice[0].subject, "/dev/video0 (Doc Cam)");
    EXPECT_THAT(advice[0].remedy, IsEmpty());
}

TEST(Advice, AsksForACameraAndItsDriverWhenThereIsNoNode) {
    EXPECT_THAT(adviceOn({}),
                ElementsAre(says(Level::kTrouble, "no video node", "modprobe uvcvideo")));
}

TEST(Advice, SuggestsStartingUdevBeforeReportingMissingNodes) {
    Findings findings;
    findings.deviceManager = false;
    EXPECT_THAT(adviceOn(findings), ElementsAre(says(Level::kTrouble, "does not answer", "udevd")));
}

TEST(Advice, SuggestsJoiningTheNodesGroup) {
    Node node = goodNode();
    node.openError = EACCES;
    EXPECT_THAT(adviceOnNode(node),
                ElementsAre(says(Level::kTrouble, "group video", "usermod -aG video")));
}

TEST(Advice, NeverSuggestsJoiningRootsGroup) {
    Node node = goodNode();
    node.openError = EACCES;
    node.group = "root";
    const auto advice = adviceOnNode(node);
    ASSERT_THAT(advice, ElementsAre(says(Level::kTrouble, "root only", "uaccess")));
    EXPECT_THAT(advice[0].remedy, Not(HasSubstr("usermod")));
}

TEST(Advice, ShowsTheRowOfAModelThatIsNotSupported) {
    Node node = goodNode();
    node.supported = false;
    node.trial = {};
    EXPECT_THAT(
        adviceOnNode(node),
        ElementsAre(AllOf(says(Level::kNote, "not among the supported", "0c45:6366  # Doc Cam"),
                          Field(&Advice::remedy, HasSubstr("doctor --add 0c45:6366")))));
}

TEST(Advice, OffersAFileToEditOnlyIfOneIsInUse) {
    Findings findings;
    findings.nodes = {goodNode()};
    findings.nodes[0].supported = false;
    findings.nodes[0].trial = {};
    findings.table.addTo = "/etc/models";
    EXPECT_THAT(adviceOn(findings).at(0).remedy, Not(HasSubstr("/etc/models")));
    findings.table.file = "/etc/models";
    EXPECT_THAT(adviceOn(findings).at(0).remedy, HasSubstr("to /etc/models by hand"));
}

TEST(Advice, ReportsNoTroubleForAnUnsupportedCamera) {
    Node node = goodNode();
    node.supported = false;
    node.openError = EACCES;
    EXPECT_THAT(adviceOnNode(node),
                ElementsAre(says(Level::kNote, "not among the supported", "--add"),
                            says(Level::kNote, "may not be opened", "usermod")));
}

TEST(Advice, IgnoresANodeThatIsNoUsbDevice) {
    Node node = goodNode();
    node.supported = false;
    node.vendor = node.product = "";
    node.trial = {};
    EXPECT_THAT(adviceOnNode(node), IsEmpty());
}

TEST(Advice, NamesWhoUsesTheNode) {
    Node node = goodNode();
    node.trial.step = "VIDIOC_S_FMT";
    node.trial.error = EBUSY;
    node.holders = {{42, "cheese"}, {77, "ffmpeg"}};
    EXPECT_THAT(
        adviceOnNode(node),
        ElementsAre(says(Level::kTrouble, "cheese (process 42), ffmpeg (process 77)", "End")));
}

TEST(Advice, SuggestsRootForAProcessThatCannotBeSeen) {
    Node node = goodNode();
    node.openError = EBUSY;
    EXPECT_THAT(adviceOnNode(node), ElementsAre(says(Level::kTrouble, "cannot be seen", "sudo")));
}

TEST(Advice, BlamesTheBusForMissingBandwidth) {
    Node node = goodNode();
    node.trial.step = "VIDIOC_STREAMON";
    node.trial.error = ENOSPC;
    EXPECT_THAT(adviceOnNode(node), ElementsAre(says(Level::kTrouble, "USB bandwidth", "hub")));
}

TEST(Advice, NamesAnyOtherRequestThatFails) {
    Node node = goodNode();
    node.trial.step = "VIDIOC_REQBUFS";
    node.trial.error = ENOMEM;
    EXPECT_THAT(adviceOnNode(node),
                ElementsAre(says(Level::kTrouble, "VIDIOC_REQBUFS for mjpeg 640x480", "dmesg")));
}

TEST(Advice, CountsShortFramesAndThoseWithoutJpeg) {
    Node node = goodNode();
    node.trial.shortFrames = 2;
    node.trial.framesWithoutJpeg = 1;
    EXPECT_THAT(
        adviceOnNode(node),
        ElementsAre(says(Level::kTrouble, "2 of 6 frames of mjpeg 640x480 cut short", "cable"),
                    says(Level::kTrouble, "no JPEG in 1 of 6", "yuyv")));
}

TEST(Advice, NoticesASilentCamera) {
    Node node = goodNode();
    node.trial.frames = 0;
    EXPECT_THAT(adviceOnNode(node), ElementsAre(says(Level::kTrouble, "no frames", "cable")));
}

TEST(Advice, MentionsTheSecondCameraOfAModel) {
    Node node = goodNode();
    node.secondOfModel = true;
    EXPECT_THAT(adviceOnNode(node), ElementsAre(says(Level::kNote, "second camera", "Unplug"),
                                                says(Level::kWell, "works", "")));
}

TEST(Advice, NamesATableThatIsNotUsed) {
    Findings findings;
    findings.nodes = {goodNode()};
    findings.table.file = "/etc/models";
    findings.table.error = "line 3 is no row vvvv:pppp";
    const auto advice = adviceOn(findings);
    EXPECT_EQ(advice.at(0).subject, "/etc/models");
    EXPECT_THAT(advice.at(0), says(Level::kTrouble, "line 3", "Correct it"));
}

TEST(ModelRow, KeepsADevicesNameOnItsLine) {
    Node node = goodNode();
    node.name = "Cam\nffff:0001";
    EXPECT_EQ(modelRow(node), "0c45:6366  # Cam ffff:0001");
}

} // namespace
