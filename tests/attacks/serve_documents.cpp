// PDFs requested from doccam serve that never finish.
#include "attacks/serve_host.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <thread>
#include <vector>

namespace doccam::test {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

// A page whose picture never ends once it is being read, so that a PDF with it never finishes.
class EndlessPage {
  public:
    explicit EndlessPage(const ServeHost& host) {
        EXPECT_THAT(host.order("capture", "{}"), StartsWith("HTTP/1.1 200 "));
        page_ = host.pagesFolder() + "/frame-000001.jpg";
        std::filesystem::remove(page_);
        EXPECT_EQ(mkfifo(page_.c_str(), 0600), 0);
    }

    // Waits until the document is being made.
    void awaitReader() {
        while (pipe_ < 0) {
            pipe_ = open(page_.c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC);
            std::this_thread::yield();
        }
    }

    ~EndlessPage() { close(pipe_); }

    EndlessPage(const EndlessPage&) = delete;
    EndlessPage& operator=(const EndlessPage&) = delete;

  private:
    std::string page_;
    int pipe_ = -1;
};

// Waits until the first document is being made before requesting the others.
std::vector<Visitor> askers(const ServeHost& host, EndlessPage& page, int count) {
    std::vector<Visitor> all;
    for (int i = 0; i < count; ++i) {
        all.push_back(host.visitor());
        all.back().say(host.ownHead("GET /pages.pdf") + "\r\n");
        page.awaitReader();
    }
    return all;
}

auto countOfWaiting(const std::vector<Visitor>& visitors) {
    return std::count_if(visitors.begin(), visitors.end(),
                         [](const Visitor& visitor) { return visitor.isWaiting(); });
}

} // namespace

TEST(ServeAttack, ManyDocumentsDelayNoCommand) {
    constexpr int kMadeOrWaiting = 4;
    const ServeHost host({.confined = false}); // which would not let it read a pipe
    EndlessPage page(host);
    const std::vector<Visitor> clients = askers(host, page, kMadeOrWaiting + 6);
    while (countOfWaiting(clients) > kMadeOrWaiting) {
        std::this_thread::yield();
    }
    EXPECT_THAT(host.order("zoom", R"({"to": "true"})"), StartsWith("HTTP/1.1 200 "));
    EXPECT_THAT(host.ask(host.ownHead("GET /api/state")), StartsWith("HTTP/1.1 200 "));
    EXPECT_EQ(countOfWaiting(clients), kMadeOrWaiting);
    for (const Visitor& client : clients) {
        if (!client.isWaiting()) {
            const std::string answer = client.hear();
            EXPECT_THAT(answer, StartsWith("HTTP/1.1 503 "));
            EXPECT_THAT(answer, HasSubstr("Retry-After: "));
        }
    }
}

TEST(ServeAttack, AnUnfinishedDocumentDoesNotDelayTheServersEnd) {
    ServeHost host({.confined = false});
    EndlessPage page(host);
    const std::vector<Visitor> clients = askers(host, page, 1);
    EXPECT_EQ(host.end(), 0);
    EXPECT_TRUE(std::filesystem::is_empty(host.temporaryFolder()));
}

} // namespace doccam::test
