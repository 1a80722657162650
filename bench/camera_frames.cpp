// Counts what a program takes of its virtual camera's frames.
//   camera_frames SOCKET PROCESS FRAMES SECONDS
// Waits until the camera has delivered FRAMES frames, then counts for SECONDS. Prints the frames
// sent per second, those missed, the longest wait of a frame in milliseconds, and the milliseconds
// of processor time that PROCESS takes per frame sent.
#include "remote/line_socket.h"
#include "remote/plugging.h"

#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <optional>
#include <stdexcept>
#include <string>
#include <thread>

namespace {

using namespace doccam::virtualcam;
using Clock = std::chrono::steady_clock;
using Seconds = std::chrono::duration<double>;

// The program serves the socket only once it uses its camera.
std::optional<FrameCount> countedOn(const std::string& socket) {
    try {
        return parseFrameCount(ask(socket, "frames 0"));
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

bool isRunning(const std::string& process) {
    return access(("/proc/" + process).c_str(), F_OK) == 0;
}

void awaitFrames(const std::string& socket, const std::string& process, std::uint32_t frames) {
    while (isRunning(process)) {
        if (const auto count = countedOn(socket); count && count->sent - count->missed >= frames) {
            return;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
    }
    throw std::runtime_error("the program has ended");
}

// In user and system mode, the 14th and 15th field; the second may have blanks.
double processorMilliseconds(const std::string& process) {
    std::ifstream file("/proc/" + process + "/stat");
    std::string text;
    std::getline(file, text, ')');
    std::string skipped;
    for (int field = 3; field < 14; ++field) {
        file >> skipped;
    }
    double user = 0;
    double system = 0;
    file >> user >> system;
    return (user + system) * 1000 / static_cast<double>(sysconf(_SC_CLK_TCK));
}

void report(const std::string& socket, const std::string& process, double seconds) {
    const auto before = countedOn(socket);
    const auto started = Clock::now();
    const double spent = processorMilliseconds(process);
    std::this_thread::sleep_for(Seconds(seconds));
    const double spentNow = processorMilliseconds(process);
    const Seconds passed = Clock::now() - started;
    const auto after = countedOn(socket);
    if (!before || !after || after->sent <= before->sent) {
        throw std::runtime_error("the camera sends no frames");
    }
    const auto sent = static_cast<double>(after->sent - before->sent);
    std::printf("%.1f %u %d %.1f\n", sent / passed.count(), after->missed - before->missed,
                after->longestWait, (spentNow - spent) / sent);
}

} // namespace

int main(int count, char** arguments) {
    if (count != 5) {
        std::fputs("usage: camera_frames SOCKET PROCESS FRAMES SECONDS\n", stderr);
        return 2;
    }
    try {
        const std::string socket = arguments[1];
        const std::string process = arguments[2];
        awaitFrames(socket, process, static_cast<std::uint32_t>(std::atoi(arguments[3])));
        report(socket, process, std::atof(arguments[4]));
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "camera_frames: %s\n", error.what());
        return 1;
    }
}
