// Servers that are killed at any time: no page that a client was told of is lost.
#include "kept_tray.h"

#include <algorithm>
#include <memory>
#include <stdexcept>
#include <utility>

namespace doccam::test {
namespace {

using nlohmann::json;
using testing::AnyOf;
using testing::SizeIs;
using testing::StartsWith;

// The clients of one server after another, and what they were told.
class Clients {
  public:
    // False if the server was killed.
    bool take(const ServeHost& host) {
        int last = 0;
        for (const json& list : {stateOf(host)["pages"], stateOf(host)["removed"]}) {
            for (const json& page : list) {
                last = std::max<int>(last, page["id"]);
            }
        }
        expected_.emplace_back(last + 1, 0);
        const bool done = order(host, "capture", "{}");
        taken_ += done ? 1 : 0;
        return done;
    }

    // Takes pages and changes them in every way until the server is killed.
    void useUntilKilled(const ServeHost& host) {
        while (take(host) && reverse(host) && turnFirst(host) && removeFirst(host) &&
               restoreIt(host) && removeFirst(host)) {
        }
    }

    // The tray shows what was told last, or also what was not answered.
    void check(const ServeHost& host) {
        const Pages now = shown(host);
        EXPECT_THAT(now, AnyOf(told_, expected_)) << last_;
        told_ = expected_ = now;
    }

    std::size_t taken() const { return taken_; }

  private:
    using Pages = std::vector<std::pair<int, int>>; // id and turn

    static Pages shown(const ServeHost& host) {
        Pages pages;
        const json state = stateOf(host);
        for (const json& page : state["pages"]) {
            pages.emplace_back(page["id"], page["recipe"]["turn"]);
        }
        return pages;
    }

    // False if the server was killed.
    bool order(const ServeHost& host, const std::string& name, const std::string& fields) {
        last_ = name + fields;
        const std::string answer = host.order(name, fields);
        if (answer.empty()) {
            return false;
        }
        EXPECT_THAT(answer, StartsWith(kDone)) << last_;
        told_ = expected_;
        EXPECT_EQ(shown(host), told_) << last_;
        return true;
    }

    bool reverse(const ServeHost& host) {
        std::reverse(expected_.begin(), expected_.end());
        json ids = json::array();
        for (const auto& page : expected_) {
            ids.push_back(page.first);
        }
        return order(host, "pages/order", json{{"ids", ids}}.dump());
    }

    bool turnFirst(const ServeHost& host) {
        auto& [id, turn] = expected_.front();
        turn = (turn + 1) % 4;
        return order(host, "pages/recipe",
                     with(id, R"("look": "photo", "turn": )" + std::to_string(turn)));
    }

    bool removeFirst(const ServeHost& host) {
        removed_ = expected_.front();
        expected_.erase(expected_.begin());
        return order(host, "pages/delete", with(removed_.first));
    }

    bool restoreIt(const ServeHost& host) {
        expected_.insert(expected_.begin(), removed_);
        return order(host, "pages/restore", with(removed_.first));
    }

    Pages told_, expected_;
    Pages::value_type removed_;
    std::string last_;
    std::size_t taken_ = 0;
};

// Null if it is killed before it listens.
std::unique_ptr<ServeHost> serverThatMayFail(const ServeSetting& setting) {
    try {
        return std::make_unique<ServeHost>(setting);
    } catch (const std::runtime_error&) {
        return nullptr;
    }
}

class KilledTray : public KeptTray {
  protected:
    // Servers killed at every other change of the spool, each going on where the last one ended.
    // Going on with a document takes one change, a page taken ten, any other command five.
    void surviveKills(Clients clients, int from, int to) const {
        for (int at = from; at <= to; at += 2) {
            if (const auto host = serverThatMayFail(failing(kSpool, at, "kill"))) {
                clients.check(*host);
                clients.useUntilKilled(*host);
            }
        }
        const ServeHost last(kept());
        clients.check(last);
        EXPECT_GT(clients.taken(), 3U);
        EXPECT_THAT(documents(), SizeIs(1));
    }
};

TEST_F(KilledTray, KeepsWhatWasToldWhilePagesAreTaken) {
    Clients clients;
    {
        const ServeHost host(kept());
        EXPECT_TRUE(clients.take(host) && clients.take(host));
    }
    surviveKills(clients, 1, 21);
}

TEST_F(KilledTray, KeepsWhatWasToldWhilePagesAreChanged) {
    surviveKills({}, 23, 41);
}

} // namespace
} // namespace doccam::test
