// Measures what a crowd of connections costs the users of doccam serve:
//   serve_crowd PORT TOKEN PROCESS    the server's port, access token and process
// One viewer watches, without and with 200 slow and 300 silent connections, which reconnect
// whenever they are dropped; then newcomers request the state. Fails beyond the limits below.
#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sched.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr int kSlow = 200;
constexpr int kSilent = 300;
constexpr std::chrono::milliseconds kBetweenBytes{100};
constexpr std::chrono::seconds kWatched{10};
constexpr int kNewcomers = 40;
constexpr std::chrono::milliseconds kBetweenNewcomers{250};
constexpr double kMinimumRatio = 0.9;
constexpr Milliseconds kLongestWait{500};
constexpr long kMaximumGrowthKb = 8192;

struct Server {
    int port = 0;
    std::string token;
    std::string process;
};

class Connection {
  public:
    explicit Connection(int port)
      : socket_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        sockaddr_in server{};
        server.sin_family = AF_INET;
        server.sin_port = htons(static_cast<std::uint16_t>(port));
        server.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        if (connect(socket_, reinterpret_cast<const sockaddr*>(&server), sizeof server) != 0) {
            std::perror("connect");
        }
    }

    ~Connection() {
        if (socket_ >= 0) {
            close(socket_);
        }
    }

    Connection(Connection&& other) noexcept
      : socket_(std::exchange(other.socket_, -1)) {}

    Connection& operator=(Connection&& other) noexcept {
        std::swap(socket_, other.socket_);
        return *this;
    }

    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    bool say(const std::string& text) const {
        return send(socket_, text.data(), text.size(), MSG_NOSIGNAL) ==
               static_cast<ssize_t>(text.size());
    }

    // The next bytes received; empty at the end.
    std::string hear() const {
        std::array<char, std::size_t{64} * 1024> bytes;
        const ssize_t count = recv(socket_, bytes.data(), bytes.size(), 0);
        return {bytes.data(), static_cast<std::size_t>(std::max<ssize_t>(count, 0))};
    }

    bool isOpen() const {
        pollfd state{socket_, POLLIN, 0};
        return poll(&state, 1, 0) == 0;
    }

  private:
    int socket_;
};

std::string request(const Server& server, const std::string& path) {
    return "GET " + path + " HTTP/1.1\r\nHost: 127.0.0.1:" + std::to_string(server.port) +
           "\r\nAuthorization: Bearer " + server.token + "\r\n\r\n";
}

void runOn(int processor) {
    cpu_set_t set;
    CPU_ZERO(&set);
    CPU_SET(processor % static_cast<int>(std::thread::hardware_concurrency()), &set);
    sched_setaffinity(0, sizeof set, &set);
}

// Keeps the connections up until stops is set.
void crowd(const Server& server, const std::atomic<bool>& stops) {
    runOn(1);
    const std::string start = "GET / HTTP/1.1\r\nX-Slow: ";
    std::vector<Connection> all;
    for (int i = 0; i < kSlow + kSilent; ++i) {
        all.emplace_back(server.port);
    }
    while (!stops) {
        for (std::size_t i = 0; i < all.size(); ++i) {
            const bool slow = i < kSlow;
            const bool open = all[i].isOpen();
            if (!open) {
                all[i] = Connection(server.port);
            }
            if (slow) {
                all[i].say(open ? "x" : start);
            }
        }
        std::this_thread::sleep_for(kBetweenBytes);
    }
}

// Pictures per second over the time watched.
double frameRate(const Server& server) {
    constexpr const char* kPart = "Content-Type: image/jpeg";
    const Connection viewer(server.port);
    viewer.say(request(server, "/preview"));
    std::string rest;
    int pictures = 0;
    Clock::time_point first{};
    Clock::time_point last{};
    while (last - first < kWatched) {
        const std::string heard = viewer.hear();
        if (heard.empty()) {
            std::puts("the viewer was sent away");
            std::exit(1); // NOLINT(concurrency-mt-unsafe)
        }
        rest += heard;
        for (std::size_t at = 0; (at = rest.find(kPart)) != std::string::npos; ++pictures) {
            rest.erase(0, at + 1);
            last = Clock::now();
            first = pictures == 0 ? last : first;
        }
        rest.erase(0, rest.size() - std::min(rest.size(), std::string(kPart).size()));
    }
    return (pictures - 1) / std::chrono::duration<double>(last - first).count();
}

std::vector<Milliseconds> newcomers(const Server& server) {
    std::vector<Milliseconds> waits;
    for (int i = 0; i < kNewcomers; ++i) {
        const auto start = Clock::now();
        const Connection client(server.port);
        client.say(request(server, "/api/state"));
        std::string answer;
        for (std::string heard = client.hear(); !heard.empty(); heard = client.hear()) {
            answer += heard;
        }
        const bool answered = answer.starts_with("HTTP/1.1 200");
        waits.push_back(answered ? Milliseconds(Clock::now() - start) : Milliseconds::max());
        std::this_thread::sleep_for(kBetweenNewcomers);
    }
    std::sort(waits.begin(), waits.end());
    return waits;
}

long descriptors(const Server& server) {
    return std::distance(std::filesystem::directory_iterator("/proc/" + server.process + "/fd"),
                         {});
}

long residentKb(const Server& server) {
    std::ifstream status("/proc/" + server.process + "/status");
    std::string word;
    while (status >> word && word != "VmRSS:") {
    }
    long value = 0;
    status >> value;
    return value;
}

struct Costs {
    long descriptors;
    long residentKb;
};

Costs costs(const Server& server) {
    return {descriptors(server), residentKb(server)};
}

void print(const char* when, double rate, const Costs& cost) {
    std::printf("%-12s %8.1f %12ld %12ld\n", when, rate, cost.descriptors, cost.residentKb);
    std::fflush(stdout);
}

bool measure(const Server& server) {
    std::printf("%-12s %8s %12s %12s\n", "crowd", "frames/s", "descriptors", "resident kB");
    const double alone = frameRate(server);
    const Costs before = costs(server);
    print("none", alone, before);

    std::atomic<bool> stops{false};
    std::thread attackers([&] { crowd(server, stops); });
    std::this_thread::sleep_for(std::chrono::seconds(2)); // until all are connected
    const double crowded = frameRate(server);
    print("200 + 300", crowded, costs(server));
    const std::vector<Milliseconds> waits = newcomers(server);
    stops = true;
    attackers.join();

    const double afterwards = frameRate(server);
    const Costs after = costs(server);
    print("gone again", afterwards, after);
    std::printf("frames kept: %.0f %%\n", 100 * crowded / alone);
    std::printf("newcomers answered within: median %.1f ms, longest %.1f ms\n",
                waits[waits.size() / 2].count(), waits.back().count());
    return crowded >= kMinimumRatio * alone && waits.back() <= kLongestWait &&
           after.descriptors <= before.descriptors &&
           after.residentKb <= before.residentKb + kMaximumGrowthKb;
}

} // namespace

int main(int count, char** arguments) {
    if (count != 4) {
        std::fputs("serve_crowd PORT TOKEN PROCESS\n", stderr);
        return 2;
    }
    runOn(0);
    const bool held = measure({std::atoi(arguments[1]), arguments[2], arguments[3]});
    std::puts(held ? "held" : "NOT HELD");
    return held ? 0 : 1;
}
