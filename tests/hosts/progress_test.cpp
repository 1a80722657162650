#include "base/unique_fd.h"
#include "host/own_output.h"
#include "host/progress.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <unistd.h>

#include <array>
#include <cstdlib>

namespace {

using namespace doccam::host;
using doccam::UniqueFd;

// Puts a terminal in the place of standard error.
class ProgressOnTerminal : public testing::Test {
  protected:
    ProgressOnTerminal()
      : terminal_(posix_openpt(O_RDWR | O_NOCTTY))
      , kept_(dup(STDERR_FILENO)) {
        grantpt(terminal_.get());
        unlockpt(terminal_.get());
        const UniqueFd end(open(ptsname(terminal_.get()), O_RDWR | O_NOCTTY));
        dup2(end.get(), STDERR_FILENO);
    }

    ~ProgressOnTerminal() override { restore(); }

    // What the terminal has been given; standard error is then what it was.
    std::string shown() {
        restore();
        std::string text;
        std::array<char, 4096> chunk{};
        pollfd readable{terminal_.get(), POLLIN, 0};
        while (poll(&readable, 1, 0) == 1 && (readable.revents & POLLIN) != 0) {
            const ssize_t count = read(terminal_.get(), chunk.data(), chunk.size());
            text.append(chunk.data(), static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
        }
        return text;
    }

  private:
    void restore() {
        if (kept_.isOpen()) {
            dup2(kept_.get(), STDERR_FILENO);
            kept_.reset();
        }
    }

    UniqueFd terminal_;
    UniqueFd kept_;
};

constexpr std::chrono::milliseconds kAtOnce{0};

TEST_F(ProgressOnTerminal, RedrawsOneLineWhichGoesAtTheEnd) {
    {
        const Progress progress({}, "cleaning", 2, kAtOnce);
        progress.show(1);
        progress.show(2);
    }
    EXPECT_EQ(shown(), "\r\033[Kcleaning 1 of 2\r\033[Kcleaning 2 of 2\r\033[K");
}

TEST_F(ProgressOnTerminal, MakesWayForSentences) {
    const Progress progress({}, "cleaning", 2, kAtOnce);
    progress.show(1);
    complain("It failed.");
    EXPECT_EQ(shown(), "\r\033[Kcleaning 1 of 2\r\033[Kdoccam: It failed.\r\n");
}

TEST_F(ProgressOnTerminal, IsNotShownForShortWorkNorWhenUnwanted) {
    GlobalOptions quiet;
    quiet.quiet = true;
    GlobalOptions json;
    json.json = true;
    Progress({}, "cleaning", 2, std::chrono::hours(1)).show(1);
    Progress(quiet, "cleaning", 2, kAtOnce).show(1);
    Progress(json, "cleaning", 2, kAtOnce).show(1);
    EXPECT_EQ(shown(), "");
}

TEST(Progress, IsNotShownElsewhere) {
    std::array<int, 2> pipe{};
    ASSERT_EQ(::pipe(pipe.data()), 0);
    const UniqueFd kept(dup(STDERR_FILENO));
    dup2(pipe[1], STDERR_FILENO);
    Progress({}, "cleaning", 2, kAtOnce).show(1);
    dup2(kept.get(), STDERR_FILENO);
    close(pipe[1]);
    char letter = 0;
    EXPECT_EQ(read(pipe[0], &letter, 1), 0);
    close(pipe[0]);
}

} // namespace
