#include "attacks/serve_host.h"

#include "remote/plugging.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <stdexcept>
#include <utility>

namespace doccam::test {
namespace {

constexpr const char* kCamera =
    R"({"cameras": [{"intervalMs": 40, "formats": [{"fourcc": "MJPG", "sizes": [[640, 480]]}],)"
    R"( "scene": {"noise": 0}}]})";

std::vector<std::string> command(const ScratchFolder& folder, const ServeSetting& setting) {
    std::filesystem::create_directory(folder.file("tmp"));
    const std::string scenario = folder.file("scenario.json");
    std::ofstream(scenario) << kCamera;
    const std::string script =
        "ulimit -s " + std::to_string(setting.stackKb) + "; echo process $$ >&2; exec \"$@\" >&2";
    std::vector<std::string> words{
        "/usr/bin/env",
        "XDG_STATE_HOME=" + (setting.state.empty() ? folder.file("state") : setting.state),
        "TMPDIR=" + folder.file("tmp"),
        std::string(virtualcam::kControlVariable) + "=" + folder.file("control"),
        "/bin/sh",
        "-c",
        script,
        "sh",
        DOCCAM_VIRTUALCAM_LAUNCHER,
        "--scenario",
        scenario,
        "--"};
    words.insert(words.end(), setting.within.begin(), setting.within.end());
    words.emplace_back(DOCCAM_PROGRAM);
    words.emplace_back("serve");
    words.insert(words.end(), setting.options.begin(), setting.options.end());
    if (!setting.confined) {
        words.emplace_back("--no-confinement");
    }
    return words;
}

std::string content(const std::string& path) {
    std::ifstream file(path);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::string match(const std::string& text, const std::string& pattern) {
    std::smatch found;
    if (!std::regex_search(text, found, std::regex(pattern))) {
        throw std::runtime_error("no " + pattern + " in: " + text);
    }
    return found[1];
}

} // namespace

Visitor::Visitor(int port)
  : socket_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_in server{};
    server.sin_family = AF_INET;
    server.sin_port = htons(static_cast<std::uint16_t>(port));
    server.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (connect(socket_, reinterpret_cast<const sockaddr*>(&server), sizeof server) != 0) {
        throw std::runtime_error("the server cannot be reached");
    }
}

Visitor::~Visitor() {
    if (socket_ >= 0) {
        close(socket_);
    }
}

Visitor::Visitor(Visitor&& other) noexcept
  : socket_(std::exchange(other.socket_, -1)) {}

bool Visitor::say(const std::string& text) const {
    return send(socket_, text.data(), text.size(), MSG_NOSIGNAL) ==
           static_cast<ssize_t>(text.size());
}

void Visitor::endSaying() const {
    shutdown(socket_, SHUT_WR);
}

std::string Visitor::hear(const std::string& text) const {
    std::string heard;
    std::array<char, 4096> bytes{};
    ssize_t count = 0;
    while ((text.empty() || heard.find(text) == std::string::npos) &&
           (count = recv(socket_, bytes.data(), bytes.size(), 0)) > 0) {
        heard.append(bytes.data(), static_cast<std::size_t>(count));
    }
    return heard;
}

bool Visitor::isWaiting() const {
    pollfd state{socket_, POLLIN, 0};
    return poll(&state, 1, 0) == 0;
}

ServeHost::ServeHost(const ServeSetting& setting)
  : program_(command(folder_, setting), folder_.path().string(), folder_.file("out")) {
    program_.says("process ");
    const std::string launcher = match(program_.lastLine(), "process ([0-9]+)");
    if (!program_.says("Open http")) {
        throw std::runtime_error("the server did not begin: " + program_.lastLine());
    }
    port_ = std::stoi(match(program_.lastLine(), "127\\.0\\.0\\.1:([0-9]+)"));
    token_ = match(program_.lastLine(), "token=([0-9a-f]+)");
    process_ = match(content("/proc/" + launcher + "/task/" + launcher + "/children"), "([0-9]+)");
}

std::string ServeHost::head(const std::string& line) const {
    return line + " HTTP/1.1\r\nHost: 127.0.0.1:" + std::to_string(port_) + "\r\n";
}

std::string ServeHost::ownHead(const std::string& line) const {
    return head(line) + "Authorization: Bearer " + token_ + "\r\n";
}

std::string ServeHost::ask(const std::string& head) const {
    const Visitor client = visitor();
    client.say(head + "\r\n");
    return client.hear();
}

std::string ServeHost::order(const std::string& name, const std::string& json) const {
    const Visitor client = visitor();
    client.say(ownHead("POST /api/" + name) + "Content-Type: application/json\r\nContent-Length: " +
               std::to_string(json.size()) + "\r\n\r\n" + json);
    return client.hear();
}

std::string ServeHost::pagesFolder() const {
    for (const auto& entry : std::filesystem::directory_iterator(temporaryFolder())) {
        if (entry.path().filename().string().starts_with(".doccam-")) {
            return entry.path();
        }
    }
    throw std::runtime_error("there are no pages");
}

std::string ServeHost::processFile(const std::string& name) const {
    return "/proc/" + process_ + "/" + name;
}

std::size_t ServeHost::residentKb() const {
    return std::stoul(match(content(processFile("status")), "VmRSS:\\s+([0-9]+)"));
}

std::size_t ServeHost::descriptors() const {
    return static_cast<std::size_t>(
        std::distance(std::filesystem::directory_iterator(processFile("fd")), {}));
}

void ServeHost::kill() {
    ::kill(std::stoi(process_), SIGKILL);
    program_.finish();
}

int ServeHost::end() {
    program_.signal(SIGTERM);
    return program_.finish();
}

} // namespace doccam::test
